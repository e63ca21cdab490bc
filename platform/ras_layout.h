// The Windows 95 layouts of the two dial-up service records the probe passes.
// They are declared here, without windows.h, so the probe can be built and tested
// on any platform; the stand-in rasapi32.dll uses the same declarations.
#pragma once
#include <cstddef>
#include <cstdint>

namespace ras {

using ConnectionHandle = void*;  // HRASCONN: pointer-sized on every Windows

constexpr uint32_t kEntryNameLength = 256;   // RAS_MaxEntryName
constexpr uint32_t kDeviceTypeLength = 16;   // RAS_MaxDeviceType
constexpr uint32_t kDeviceNameLength = 128;  // RAS_MaxDeviceName

constexpr uint32_t kStateConnected = 0x2000;     // RASCS_Connected
constexpr uint32_t kStateDisconnected = 0x2001;  // RASCS_Disconnected

constexpr uint32_t kErrorInvalidHandle = 6;    // ERROR_INVALID_HANDLE
constexpr uint32_t kErrorBufferTooSmall = 603; // ERROR_BUFFER_TOO_SMALL
constexpr uint32_t kErrorInvalidSize = 632;    // ERROR_INVALID_SIZE

// RASCONNA as Windows 95 defines it (no phonebook or sub-entry fields).
struct Connection95 {
  uint32_t dwSize;
  ConnectionHandle hrasconn;
  char szEntryName[kEntryNameLength + 1];
  char szDeviceType[kDeviceTypeLength + 1];
  char szDeviceName[kDeviceNameLength + 1];
};

// RASCONNSTATUSA as Windows 95 defines it.
struct ConnectionStatus95 {
  uint32_t dwSize;
  uint32_t rasconnstate;
  uint32_t dwError;
  char szDeviceType[kDeviceTypeLength + 1];
  char szDeviceName[kDeviceNameLength + 1];
};

static_assert(sizeof(ConnectionStatus95) == 160, "RASCONNSTATUS (Windows 95) is 160 bytes");
static_assert(offsetof(Connection95, szEntryName) == 2 * sizeof(void*),
              "entry name follows size and handle");
#if INTPTR_MAX == INT32_MAX
static_assert(sizeof(Connection95) == 412, "RASCONN (Windows 95) is 412 bytes on 32-bit Windows");
#else
static_assert(sizeof(Connection95) == 424, "RASCONN (Windows 95 layout) on 64-bit Windows");
#endif

}  // namespace ras

#include <windows.h>

#include "platform/ras_service.h"

namespace {

constexpr uint32_t kRasNotAvailable = 711;  // ERROR_RASMAN_CANNOT_INITIALIZE

using EnumConnectionsFn = DWORD(WINAPI*)(ras::Connection95*, DWORD*, DWORD*);
using GetConnectStatusFn = DWORD(WINAPI*)(ras::ConnectionHandle, ras::ConnectionStatus95*);

// rasapi32 is loaded on first use rather than imported: a Windows 95 machine
// without Dial-Up Networking has no rasapi32.dll, and the program must still
// start there (every poll then answers "not connected").
class WindowsRas : public RasService {
 public:
  uint32_t EnumConnections(ras::Connection95* connections, uint32_t* bufferSize,
                           uint32_t* connectionCount) override {
    if (!Load()) return kRasNotAvailable;
    DWORD size = *bufferSize;
    DWORD count = *connectionCount;
    const DWORD result = enumConnections_(connections, &size, &count);
    *bufferSize = size;
    *connectionCount = count;
    return result;
  }

  uint32_t GetConnectStatus(ras::ConnectionHandle handle, ras::ConnectionStatus95* status) override {
    if (!Load()) return kRasNotAvailable;
    return getConnectStatus_(handle, status);
  }

 private:
  bool Load() {
    if (!triedLoading_) {
      triedLoading_ = true;
      if (HMODULE library = LoadLibraryA("rasapi32.dll")) {
        enumConnections_ = reinterpret_cast<EnumConnectionsFn>(
            reinterpret_cast<void*>(GetProcAddress(library, "RasEnumConnectionsA")));
        getConnectStatus_ = reinterpret_cast<GetConnectStatusFn>(
            reinterpret_cast<void*>(GetProcAddress(library, "RasGetConnectStatusA")));
      }
    }
    return enumConnections_ != nullptr && getConnectStatus_ != nullptr;
  }

  bool triedLoading_ = false;
  EnumConnectionsFn enumConnections_ = nullptr;
  GetConnectStatusFn getConnectStatus_ = nullptr;
};

}  // namespace

RasService& SystemRas() {
  static WindowsRas service;
  return service;
}

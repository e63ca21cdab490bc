// A stand-in rasapi32.dll for testing under Wine. It reports whatever dial-up
// session the file C:\orvalen-dialup.txt describes, for example:
//
//   [session]
//   state=connected
//   name=Home ISP
//   handle=7
//
// state is one of none, dialing, connected, disconnected, vanished. A test can
// change the session while the program polls: the file is read again whenever its
// time stamp or size changed, and at least every two seconds in case a change
// kept both; the two calls of one poll, made in the same millisecond, share one
// look at the file (so the program's idle cost is not mostly ours). A missing,
// unreadable or malformed file simply means "no connection". scripts/dialup writes
// it (atomically, so a poll never sees half a file). Records of the wrong size are
// refused with ERROR_INVALID_SIZE, as Windows 95 refuses them.
//
// When C:\orvalen-dialup-calls.txt exists as the DLL is loaded, the stand-in
// counts the calls made to it and rewrites that file at most every five seconds with
// "enum=N status=M tick=T" (T the tick count of the write), so a measurement can
// tell how often the program asks the service (scripts/measure-idle-cpu.sh).
#include <windows.h>

#include <cstdint>
#include <cstring>

#include "platform/ras_layout.h"

namespace {

constexpr char kStateFile[] = "C:\\orvalen-dialup.txt";
constexpr char kCallCountFile[] = "C:\\orvalen-dialup-calls.txt";
constexpr uint32_t kStateAuthenticate = 5;  // RASCS_Authenticate: still dialling

struct Session {
  uint32_t state = 0;    // 0: not listed (none, vanished or unknown)
  uintptr_t handle = 1;  // HRASCONN values are never 0
  char name[ras::kEntryNameLength + 1] = {};
};

// The [session] section's keys; the system trims their values.
Session ReadSession() {
  Session session;
  char state[16] = {};
  GetPrivateProfileStringA("session", "state", "", state, sizeof state, kStateFile);
  session.state = !lstrcmpA(state, "connected")      ? ras::kStateConnected
                  : !lstrcmpA(state, "disconnected") ? ras::kStateDisconnected
                  : !lstrcmpA(state, "dialing")      ? kStateAuthenticate
                                                     : 0;  // none, vanished, or not ours
  session.handle = GetPrivateProfileIntA("session", "handle", 1, kStateFile);
  session.handle += session.handle == 0 ? 1 : 0;
  GetPrivateProfileStringA("session", "name", "", session.name, sizeof session.name, kStateFile);  // cut to 256
  return session;
}

// The session the file describes, read again only when the file may have changed.
Session CurrentSession() {
  static struct {
    bool valid = false;
    FILETIME written = {};
    DWORD size = 0, readAt = 0, checkedAt = 0;
    Session session;
  } cache;
  const DWORD now = GetTickCount();
  if (cache.valid && now == cache.checkedAt) return cache.session;
  WIN32_FILE_ATTRIBUTE_DATA file;
  if (!GetFileAttributesExA(kStateFile, GetFileExInfoStandard, &file)) return cache.valid = false, Session();
  cache.checkedAt = now;
  if (!cache.valid || CompareFileTime(&cache.written, &file.ftLastWriteTime) != 0 || cache.size != file.nFileSizeLow ||
      now - cache.readAt >= 2000) {
    cache = {true, file.ftLastWriteTime, file.nFileSizeLow, now, now, ReadSession()};
  }
  return cache.session;
}

const bool countCalls = GetFileAttributesA(kCallCountFile) != INVALID_FILE_ATTRIBUTES;
struct {
  unsigned long enumCalls = 0, statusCalls = 0;
  DWORD writtenAt = 0;
} callCounts;

// Appends the digits of value; the DLL keeps to kernel32, so no printf.
char* Digits(char* out, unsigned long value) {
  if (value >= 10) out = Digits(out, value / 10);
  *out = static_cast<char>('0' + value % 10);
  return out + 1;
}

// One more call of the given counter; the file follows every five seconds.
void CountCall(unsigned long& counter) {
  const DWORD now = GetTickCount();
  if (!countCalls || (++counter, now - callCounts.writtenAt < 5000)) return;
  callCounts.writtenAt = now;
  char text[96] = "enum=", *end = Digits(text + 5, callCounts.enumCalls);
  end = Digits(std::strcpy(end, " status=") + 8, callCounts.statusCalls);
  end = Digits(std::strcpy(end, " tick=") + 6, now);
  *end++ = '\n';
  HANDLE file = CreateFileA(kCallCountFile, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  DWORD written = 0;
  WriteFile(file, text, static_cast<DWORD>(end - text), &written, nullptr);
  CloseHandle(file);
}

}  // namespace

extern "C" DWORD WINAPI RasEnumConnectionsA(ras::Connection95* connections, DWORD* bufferSize, DWORD* connectionCount) {
  CountCall(callCounts.enumCalls);
  if (connections == nullptr || bufferSize == nullptr || connectionCount == nullptr) return ERROR_INVALID_PARAMETER;
  if (connections->dwSize != sizeof(ras::Connection95)) return ras::kErrorInvalidSize;
  const Session session = CurrentSession();
  *connectionCount = session.state != 0 ? 1 : 0;
  const DWORD needed = *connectionCount * static_cast<DWORD>(sizeof(ras::Connection95));
  const bool fits = *bufferSize >= needed;
  *bufferSize = needed;
  if (!fits) return ras::kErrorBufferTooSmall;
  if (*connectionCount != 0) {
    std::memset(connections, 0, sizeof *connections);
    connections->dwSize = sizeof(ras::Connection95);
    connections->hrasconn = reinterpret_cast<ras::ConnectionHandle>(session.handle);
    std::strcpy(connections->szEntryName, session.name);
  }
  return 0;
}

extern "C" DWORD WINAPI RasGetConnectStatusA(ras::ConnectionHandle connection, ras::ConnectionStatus95* status) {
  CountCall(callCounts.statusCalls);
  if (status == nullptr) return ERROR_INVALID_PARAMETER;
  if (status->dwSize != sizeof(ras::ConnectionStatus95)) return ras::kErrorInvalidSize;
  const Session session = CurrentSession();
  // A handle from an earlier session, or one that is gone, is simply invalid.
  if (session.state == 0 || reinterpret_cast<uintptr_t>(connection) != session.handle) return ras::kErrorInvalidHandle;
  status->rasconnstate = session.state;
  status->dwError = 0;
  return 0;
}

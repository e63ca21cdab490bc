// A stand-in rasapi32.dll for testing under Wine. It reports whatever dial-up
// session the text file C:\orvalen-dialup.txt describes, for example:
//
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
// it (atomically, so a poll never sees half a file).
//
// When C:\orvalen-dialup-calls.txt exists as the first call is made, the stand-in
// counts the calls made to it and rewrites that file at most every five seconds with
// "enum=N status=M tick=T" (T the tick count of the write), so a measurement can
// tell how often the program asks the service (scripts/measure-idle-cpu.sh).
#include <windows.h>

#include <cstdint>
#include <cstring>

#include "platform/ras_layout.h"

namespace {

constexpr char kStateFile[] = "C:\\orvalen-dialup.txt";
constexpr DWORD kLargestStateFile = 4096;  // anything longer is not ours: ignore the rest
constexpr DWORD kErrorInvalidParameter = 87;
constexpr uint32_t kStateAuthenticate = 5;  // RASCS_Authenticate: still dialling
constexpr char kDeviceType[] = "modem";
constexpr char kDeviceName[] = "Orvalen Stand-in Modem";

enum class Phase { kNone, kDialing, kConnected, kDisconnected, kVanished };

struct Session {
  Phase phase = Phase::kNone;
  uintptr_t handle = 1;  // HRASCONN values are never 0
  uint32_t error = 0;    // dwError reported with the status
  char name[ras::kEntryNameLength + 1] = {};
};

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// [begin, end) trimmed of surrounding white space.
void Trim(const char*& begin, const char*& end) {
  while (begin < end && IsSpace(*begin)) ++begin;
  while (end > begin && IsSpace(end[-1])) --end;
}

bool Equals(const char* begin, const char* end, const char* word) {
  const size_t length = std::strlen(word);
  return static_cast<size_t>(end - begin) == length && std::memcmp(begin, word, length) == 0;
}

// Decimal number; false for anything else, including overflow past 32 bits
// (handles are 32-bit on the Windows this stands in for).
bool ParseNumber(const char* begin, const char* end, uint32_t* value) {
  if (begin == end) return false;
  uint64_t result = 0;
  for (const char* p = begin; p < end; ++p) {
    if (*p < '0' || *p > '9') return false;
    result = result * 10 + static_cast<uint64_t>(*p - '0');
    if (result > 0xFFFFFFFFull) return false;
  }
  *value = static_cast<uint32_t>(result);
  return true;
}

Phase ParsePhase(const char* begin, const char* end) {
  if (Equals(begin, end, "dialing")) return Phase::kDialing;
  if (Equals(begin, end, "connected")) return Phase::kConnected;
  if (Equals(begin, end, "disconnected")) return Phase::kDisconnected;
  if (Equals(begin, end, "vanished")) return Phase::kVanished;
  return Phase::kNone;  // "none" and anything we do not understand
}

void ApplyLine(const char* begin, const char* end, Session* session) {
  const char* equals = begin;
  while (equals < end && *equals != '=') ++equals;
  if (equals == end) return;
  const char* keyBegin = begin;
  const char* keyEnd = equals;
  const char* valueBegin = equals + 1;
  const char* valueEnd = end;
  Trim(keyBegin, keyEnd);
  Trim(valueBegin, valueEnd);

  uint32_t number = 0;
  if (Equals(keyBegin, keyEnd, "state")) {
    session->phase = ParsePhase(valueBegin, valueEnd);
  } else if (Equals(keyBegin, keyEnd, "handle")) {
    if (ParseNumber(valueBegin, valueEnd, &number) && number != 0) session->handle = number;
  } else if (Equals(keyBegin, keyEnd, "error")) {
    if (ParseNumber(valueBegin, valueEnd, &number)) session->error = number;
  } else if (Equals(keyBegin, keyEnd, "name")) {
    // RAS entry names hold at most 256 characters; longer ones are cut.
    size_t length = static_cast<size_t>(valueEnd - valueBegin);
    if (length > ras::kEntryNameLength) length = ras::kEntryNameLength;
    std::memcpy(session->name, valueBegin, length);
    session->name[length] = '\0';
  }
}

Session ReadSession() {
  Session session;
  HANDLE file = CreateFileA(kStateFile, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return session;
  char text[kLargestStateFile];
  DWORD length = 0;
  const BOOL ok = ReadFile(file, text, sizeof text, &length, nullptr);
  CloseHandle(file);
  if (!ok) return session;

  const char* const end = text + length;
  const char* line = text;
  while (line < end) {
    const char* lineEnd = line;
    while (lineEnd < end && *lineEnd != '\n') ++lineEnd;
    ApplyLine(line, lineEnd, &session);
    line = lineEnd + 1;
  }
  return session;
}

constexpr DWORD kLongestReuseMs = 2000;

struct CachedSession {
  bool valid = false;
  FILETIME written = {};
  DWORD sizeLow = 0;
  DWORD readAt = 0;
  DWORD checkedAt = 0;
  Session session;
};

// The session the file describes, read again only when the file may have changed.
Session CurrentSession() {
  static CachedSession cache;
  const DWORD now = GetTickCount();
  if (cache.valid && now == cache.checkedAt) return cache.session;
  WIN32_FILE_ATTRIBUTE_DATA attributes;
  if (!GetFileAttributesExA(kStateFile, GetFileExInfoStandard, &attributes)) {
    cache.valid = false;
    return Session();
  }
  cache.checkedAt = now;
  if (cache.valid && CompareFileTime(&cache.written, &attributes.ftLastWriteTime) == 0 &&
      cache.sizeLow == attributes.nFileSizeLow && now - cache.readAt < kLongestReuseMs) {
    return cache.session;
  }
  cache.session = ReadSession();
  cache.written = attributes.ftLastWriteTime;
  cache.sizeLow = attributes.nFileSizeLow;
  cache.readAt = now;
  cache.valid = true;
  return cache.session;
}

constexpr char kCallCountFile[] = "C:\\orvalen-dialup-calls.txt";
constexpr DWORD kCallCountPeriodMs = 5000;

struct CallCounts {
  bool checked = false;
  bool wanted = false;
  unsigned long enumCalls = 0;
  unsigned long statusCalls = 0;
  DWORD writtenAt = 0;
};

CallCounts callCounts;

// Appends "key=value" and a separator; the DLL keeps to kernel32, so no printf.
char* AppendCount(char* out, const char* key, unsigned long value, char separator) {
  while (*key) *out++ = *key++;
  char digits[24];
  int count = 0;
  do {
    digits[count++] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  while (count > 0) *out++ = digits[--count];
  *out++ = separator;
  return out;
}

void WriteCallCounts(DWORD now) {
  char text[96];
  char* end = AppendCount(text, "enum=", callCounts.enumCalls, ' ');
  end = AppendCount(end, "status=", callCounts.statusCalls, ' ');
  end = AppendCount(end, "tick=", now, '\n');
  const DWORD length = static_cast<DWORD>(end - text);
  HANDLE file = CreateFileA(kCallCountFile, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  DWORD written = 0;
  WriteFile(file, text, length, &written, nullptr);
  CloseHandle(file);
}

// One more call of the given counter; the file follows every five seconds.
void CountCall(unsigned long& counter) {
  if (!callCounts.checked) {
    callCounts.checked = true;
    callCounts.wanted = GetFileAttributesA(kCallCountFile) != INVALID_FILE_ATTRIBUTES;
  }
  if (!callCounts.wanted) return;
  ++counter;
  const DWORD now = GetTickCount();
  if (now - callCounts.writtenAt < kCallCountPeriodMs) return;
  callCounts.writtenAt = now;
  WriteCallCounts(now);
}

bool IsListed(const Session& session) {
  return session.phase == Phase::kDialing || session.phase == Phase::kConnected ||
         session.phase == Phase::kDisconnected;
}

uint32_t ConnectionState(Phase phase) {
  switch (phase) {
    case Phase::kConnected:
      return ras::kStateConnected;
    case Phase::kDisconnected:
      return ras::kStateDisconnected;
    default:
      return kStateAuthenticate;
  }
}

void CopyText(char* target, size_t capacity, const char* text) {
  size_t length = std::strlen(text);
  if (length >= capacity) length = capacity - 1;
  std::memcpy(target, text, length);
  target[length] = '\0';
}

}  // namespace

extern "C" DWORD WINAPI RasEnumConnectionsA(ras::Connection95* connections, DWORD* bufferSize,
                                            DWORD* connectionCount) {
  CountCall(callCounts.enumCalls);
  if (bufferSize == nullptr || connectionCount == nullptr) return kErrorInvalidParameter;
  if (connections == nullptr) {
    if (*bufferSize != 0) return kErrorInvalidParameter;
  } else if (connections->dwSize != sizeof(ras::Connection95)) {
    return ras::kErrorInvalidSize;
  }

  const Session session = CurrentSession();
  const DWORD count = IsListed(session) ? 1 : 0;
  const DWORD needed = count * static_cast<DWORD>(sizeof(ras::Connection95));
  if (*bufferSize < needed) {
    *bufferSize = needed;
    *connectionCount = count;
    return ras::kErrorBufferTooSmall;
  }
  if (count != 0) {
    ras::Connection95& entry = connections[0];
    std::memset(&entry, 0, sizeof entry);
    entry.dwSize = sizeof(ras::Connection95);
    entry.hrasconn = reinterpret_cast<ras::ConnectionHandle>(session.handle);
    CopyText(entry.szEntryName, sizeof entry.szEntryName, session.name);
    CopyText(entry.szDeviceType, sizeof entry.szDeviceType, kDeviceType);
    CopyText(entry.szDeviceName, sizeof entry.szDeviceName, kDeviceName);
  }
  *bufferSize = needed;
  *connectionCount = count;
  return 0;
}

extern "C" DWORD WINAPI RasGetConnectStatusA(ras::ConnectionHandle connection,
                                             ras::ConnectionStatus95* status) {
  CountCall(callCounts.statusCalls);
  if (status == nullptr) return kErrorInvalidParameter;
  if (status->dwSize != sizeof(ras::ConnectionStatus95)) return ras::kErrorInvalidSize;

  const Session session = CurrentSession();
  // A handle from an earlier session, or one that is gone, is simply invalid.
  if (!IsListed(session) || reinterpret_cast<uintptr_t>(connection) != session.handle) {
    return ras::kErrorInvalidHandle;
  }
  status->rasconnstate = ConnectionState(session.phase);
  status->dwError = session.error;
  CopyText(status->szDeviceType, sizeof status->szDeviceType, kDeviceType);
  CopyText(status->szDeviceName, sizeof status->szDeviceName, kDeviceName);
  return 0;
}

// dialup_query: asks rasapi32.dll about the dial-up session once, the way the
// program does (loaded at run time, Windows 95 record sizes), and prints
//
//   enum=0 count=1 handle=7 status=0 state=0x2000 error=0 name=Home ISP
//
// The name comes last so it may contain spaces. The status asked is that of the
// listed connection, or of the handle given as the argument (to check what a
// stale handle gets); with neither, status, state and error print as "-".
//
//   dialup_query --errors   checks the size and buffer errors instead:
//   enum_badsize=632 enum_small=603 needed=412 status_badsize=632
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/ras_layout.h"

namespace {

using EnumConnectionsFn = DWORD(WINAPI*)(ras::Connection95*, DWORD*, DWORD*);
using GetConnectStatusFn = DWORD(WINAPI*)(ras::ConnectionHandle, ras::ConnectionStatus95*);

EnumConnectionsFn enumConnections = nullptr;
GetConnectStatusFn getConnectStatus = nullptr;

bool Load() {
  HMODULE library = LoadLibraryA("rasapi32.dll");
  if (library == nullptr) return false;
  char path[MAX_PATH] = {};
  GetModuleFileNameA(library, path, sizeof path);
  std::fprintf(stderr, "dll=%s\n", path);  // shows whether the stand-in was the one loaded
  enumConnections = reinterpret_cast<EnumConnectionsFn>(
      reinterpret_cast<void*>(GetProcAddress(library, "RasEnumConnectionsA")));
  getConnectStatus = reinterpret_cast<GetConnectStatusFn>(
      reinterpret_cast<void*>(GetProcAddress(library, "RasGetConnectStatusA")));
  return enumConnections != nullptr && getConnectStatus != nullptr;
}

int CheckErrors() {
  ras::Connection95 connections[1] = {};
  DWORD size = sizeof connections;
  DWORD count = 0;
  connections[0].dwSize = sizeof(ras::Connection95) + 4;
  const DWORD enumBadSize = enumConnections(connections, &size, &count);

  // Too small a buffer only fails while a connection is listed; "needed" tells
  // the caller what to allocate.
  connections[0].dwSize = sizeof(ras::Connection95);
  size = sizeof(ras::Connection95) - 1;
  count = 0;
  const DWORD enumSmall = enumConnections(connections, &size, &count);

  ras::ConnectionStatus95 status = {};
  status.dwSize = sizeof status - 4;
  const DWORD statusBadSize = getConnectStatus(connections[0].hrasconn, &status);

  std::printf("enum_badsize=%lu enum_small=%lu needed=%lu status_badsize=%lu\n",
              static_cast<unsigned long>(enumBadSize), static_cast<unsigned long>(enumSmall),
              static_cast<unsigned long>(size), static_cast<unsigned long>(statusBadSize));
  return 0;
}

int Query(const char* askedHandle) {
  ras::Connection95 connections[4] = {};
  connections[0].dwSize = sizeof(ras::Connection95);
  DWORD size = sizeof connections;
  DWORD count = 0;
  const DWORD enumResult = enumConnections(connections, &size, &count);

  ras::ConnectionHandle listed = nullptr;
  const char* name = "";
  if (enumResult == 0 && count > 0) {
    listed = connections[0].hrasconn;
    name = connections[0].szEntryName;
  }
  ras::ConnectionHandle asked = listed;
  if (askedHandle != nullptr) {
    asked = reinterpret_cast<ras::ConnectionHandle>(
        static_cast<uintptr_t>(std::strtoul(askedHandle, nullptr, 10)));
  }

  std::printf("enum=%lu count=%lu handle=%lu ", static_cast<unsigned long>(enumResult),
              static_cast<unsigned long>(count),
              static_cast<unsigned long>(reinterpret_cast<uintptr_t>(listed)));
  if (asked == nullptr) {
    std::printf("status=- state=- error=- ");
  } else {
    ras::ConnectionStatus95 status = {};
    status.dwSize = sizeof status;
    const DWORD statusResult = getConnectStatus(asked, &status);
    if (statusResult == 0) {
      std::printf("status=0 state=0x%lX error=%lu ", static_cast<unsigned long>(status.rasconnstate),
                  static_cast<unsigned long>(status.dwError));
    } else {
      std::printf("status=%lu state=- error=- ", static_cast<unsigned long>(statusResult));
    }
  }
  std::printf("name=%s\n", name);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (!Load()) {
    std::fprintf(stderr, "dialup_query: rasapi32.dll or its functions not found\n");
    return 2;
  }
  if (argc > 1 && std::strcmp(argv[1], "--errors") == 0) return CheckErrors();
  return Query(argc > 1 ? argv[1] : nullptr);
}

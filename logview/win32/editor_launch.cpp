#include "logview/win32/editor_launch.h"

#include <string>
#include <vector>

#if !defined(_WIN64)
static_assert(sizeof(STARTUPINFOA) == 68, "STARTUPINFO is 68 bytes on 32-bit Windows");
#endif

HANDLE LaunchEditor(const char* applicationPath, const char* commandLine) {
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW | STARTF_USEPOSITION;
  startup.wShowWindow = SW_SHOWNORMAL;
  startup.dwX = 50;
  startup.dwY = 180;
  // CreateProcessA may write into its command line.
  std::vector<char> line(commandLine, commandLine + lstrlenA(commandLine) + 1);
  PROCESS_INFORMATION process = {};
  if (!CreateProcessA(applicationPath, line.data(), nullptr, nullptr, FALSE, CREATE_DEFAULT_ERROR_MODE, nullptr,
                      nullptr, &startup, &process)) {
    return nullptr;
  }
  CloseHandle(process.hThread);  // never used: the editor runs on its own
  return process.hProcess;
}

void StartReportEditor(const char* applicationPath, const char* commandLine) {
  // Nobody waits for the editor, so its handle would only leak with every report.
  HANDLE process = LaunchEditor(applicationPath, commandLine);
  if (process != nullptr) CloseHandle(process);
}

// Starts the system's text editor on the report.
#pragma once
#include <windows.h>

// Starts applicationPath with the command line as a separate process, its window at
// 50, 180. The new process's handle, or nullptr on failure; nothing waits for it.
HANDLE LaunchEditor(const char* applicationPath, const char* commandLine);

// The report's hook: starts the editor and lets go of the process at once.
void StartReportEditor(const char* applicationPath, const char* commandLine);

// The Log page of the settings sheet (IDD_LOG_PAGE): how View Log first filters
// the log, and its colours.
#pragma once
#include <windows.h>

INT_PTR CALLBACK LogPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

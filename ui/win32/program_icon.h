// The program's icon in a window's caption and on its taskbar button.
#pragma once
#include <windows.h>

#include "resources/resource_ids.h"
#include "ui/win32/app_state.h"

inline void ShowProgramIcon(HWND window) {
  HICON icon = LoadIconA(appWindows.instanceHandle, MAKEINTRESOURCEA(IDI_PROGRAM));
  SendMessageA(window, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
  SendMessageA(window, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
}

// Switching a dialog's controls, shared by every dialog and page.
#pragma once
#include <windows.h>

// Enables or disables the window's control id; an id the window lacks is skipped.
inline void EnableControl(HWND window, int id, bool enable) {
  HWND control = GetDlgItem(window, id);
  if (control != nullptr) EnableWindow(control, enable ? TRUE : FALSE);
}

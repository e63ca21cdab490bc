// Switching a dialog's controls, shared by every dialog and page.
#pragma once
#include <windows.h>

// The top-level window a control belongs to (the window itself when it is one):
// the dialog that owns the keyboard, also for a property sheet's pages.
inline HWND TopLevelWindow(HWND window) {
  while (window != nullptr && (GetWindowLongA(window, GWL_STYLE) & WS_CHILD) != 0 && GetParent(window) != nullptr) {
    window = GetParent(window);
  }
  return window;
}

// Enables or disables a control. A disabled control cannot keep the keyboard
// focus: left there, the focus is nowhere and Tab, Enter and Esc do nothing until
// a click, so the dialog first moves it to its next control. Pages of a property
// sheet are child dialogs: the top dialog owns the focus and the tab order.
inline void EnableWindowKeepingFocus(HWND control, bool enable) {
  if (!enable && GetFocus() == control) SendMessageA(TopLevelWindow(control), WM_NEXTDLGCTL, 0, FALSE);
  EnableWindow(control, enable ? TRUE : FALSE);
}

// Enables or disables the window's control id; an id the window lacks is skipped.
inline void EnableControl(HWND window, int id, bool enable) {
  HWND control = GetDlgItem(window, id);
  if (control != nullptr) EnableWindowKeepingFocus(control, enable);
}

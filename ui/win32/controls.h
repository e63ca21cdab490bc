// Switching a dialog's controls, shared by every dialog and page.
#pragma once
#include <windows.h>

// Enables or disables a control. A disabled control cannot keep the keyboard
// focus: left there, the focus is nowhere and Tab, Enter and Esc do nothing until
// a click, so the dialog first moves it to its next control. Pages of a property
// sheet are child dialogs: the top dialog owns the focus and the tab order.
inline void EnableWindowKeepingFocus(HWND control, bool enable) {
  if (!enable && GetFocus() == control) {
    HWND dialog = GetParent(control);
    while (dialog != nullptr && (GetWindowLongA(dialog, GWL_STYLE) & WS_CHILD) != 0 && GetParent(dialog) != nullptr) {
      dialog = GetParent(dialog);
    }
    if (dialog != nullptr) SendMessageA(dialog, WM_NEXTDLGCTL, 0, FALSE);
  }
  EnableWindow(control, enable ? TRUE : FALSE);
}

// Enables or disables the window's control id; an id the window lacks is skipped.
inline void EnableControl(HWND window, int id, bool enable) {
  HWND control = GetDlgItem(window, id);
  if (control != nullptr) EnableWindowKeepingFocus(control, enable);
}

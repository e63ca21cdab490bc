// Small helpers shared by the pages of the settings sheet.
#pragma once
#include <windows.h>
#include <commctrl.h>

#include <string>

// The notification code of a WM_NOTIFY message.
inline UINT NotificationCode(LPARAM lParam) { return reinterpret_cast<const NMHDR*>(lParam)->code; }

// A page answers PSN_APPLY and PSN_RESET through DWLP_MSGRESULT: no objection.
inline INT_PTR AcceptNotification(HWND page) {
  SetWindowLongPtrA(page, DWLP_MSGRESULT, PSNRET_NOERROR);
  return TRUE;
}

// A page's WM_NOTIFY: OK (PSN_APPLY) stores the page, then OK and Cancel
// (PSN_RESET) both release what the page holds; the sheet hears no objection.
template <typename Store, typename Release>
INT_PTR AnswerSheetNotification(HWND page, LPARAM lParam, Store store, Release release) {
  switch (NotificationCode(lParam)) {
    case PSN_APPLY:
      store();
      release();
      return AcceptNotification(page);
    case PSN_RESET:
      release();
      return AcceptNotification(page);
    default:
      return FALSE;
  }
}

inline bool IsChecked(HWND page, int id) { return IsDlgButtonChecked(page, id) == BST_CHECKED; }

inline void SetChecked(HWND page, int id, bool checked) {
  CheckDlgButton(page, id, checked ? BST_CHECKED : BST_UNCHECKED);
}

inline void EnableControl(HWND page, int id, bool enable) {
  HWND control = GetDlgItem(page, id);
  if (control != nullptr) EnableWindow(control, enable ? TRUE : FALSE);
}

inline void ShowControl(HWND page, int id, bool show) {
  HWND control = GetDlgItem(page, id);
  if (control != nullptr) ShowWindow(control, show ? SW_SHOW : SW_HIDE);
}

// The whole text of a control, however long.
inline std::string ControlText(HWND page, int id) {
  HWND control = GetDlgItem(page, id);
  if (control == nullptr) return std::string();
  const int length = GetWindowTextLengthA(control);
  if (length <= 0) return std::string();
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  const int copied = GetWindowTextA(control, &text[0], length + 1);
  text.resize(copied > 0 ? static_cast<std::size_t>(copied) : 0);
  return text;
}

// Releases a page's brush once; later colour messages then get the system's.
inline void ReleaseBrush(HBRUSH& brush) {
  if (brush != nullptr) DeleteObject(brush);
  brush = nullptr;
}

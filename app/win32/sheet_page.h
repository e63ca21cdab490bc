// Small helpers shared by the pages of the settings sheet.
#pragma once
#include <windows.h>
#include <commctrl.h>

#include <string>

#include "ui/win32/controls.h"

class Storage;

// The storage the sheet's pages show and change comes as each page's lParam; a
// page keeps it behind its DWLP_USER from WM_INITDIALOG, whose lParam is the page.
inline Storage* PageStorageOf(LPARAM initParam) {
  return reinterpret_cast<Storage*>(reinterpret_cast<const PROPSHEETPAGEA*>(initParam)->lParam);
}
inline void KeepPageStorage(HWND page, LPARAM initParam) {
  SetWindowLongPtrA(page, DWLP_USER, reinterpret_cast<LONG_PTR>(PageStorageOf(initParam)));
}
inline Storage& PageStorage(HWND page) { return *reinterpret_cast<Storage*>(GetWindowLongPtrA(page, DWLP_USER)); }

// The notification code of a WM_NOTIFY message.
inline UINT NotificationCode(LPARAM lParam) { return reinterpret_cast<const NMHDR*>(lParam)->code; }

// A page answers PSN_APPLY and PSN_RESET through DWLP_MSGRESULT: no objection.
inline INT_PTR AcceptNotification(HWND page) {
  SetWindowLongPtrA(page, DWLP_MSGRESULT, PSNRET_NOERROR);
  return TRUE;
}

// A page's WM_NOTIFY: OK (PSN_APPLY) stores the page; the sheet hears no
// objection to OK or Cancel (PSN_RESET).
template <typename Store>
INT_PTR AnswerSheetNotification(HWND page, LPARAM lParam, Store store) {
  switch (NotificationCode(lParam)) {
    case PSN_APPLY:
      store();
      return AcceptNotification(page);
    case PSN_RESET:
      return AcceptNotification(page);
    default:
      return FALSE;
  }
}

inline bool IsChecked(HWND page, int id) { return IsDlgButtonChecked(page, id) == BST_CHECKED; }

inline void SetChecked(HWND page, int id, bool checked) {
  CheckDlgButton(page, id, checked ? BST_CHECKED : BST_UNCHECKED);
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

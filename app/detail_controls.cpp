#include "app/detail_controls.h"

#include "monitor/alarm.h"

void EnableDetailControls(HWND page, bool enable) {
  for (const int id : kDetailControlIds) {
    HWND control = GetDlgItem(page, id);
    if (control != nullptr) EnableWindow(control, enable ? TRUE : FALSE);
  }
}

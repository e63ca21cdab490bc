#include "app/win32/alarm_notice_dialog.h"

#include "ui/win32/app_state.h"
#include "ui/win32/dialog_colours.h"
#include "monitor/alarm.h"
#include "monitor/usage_warning.h"
#include "resources/resource_ids.h"

namespace {

constexpr UINT_PTR kCloseTimer = 1;

// What the window shows, passed as its creation parameter.
struct NoticeText {
  const char* text;
  bool usageWarning;  // captioned as a usage warning
};

INT_PTR Close(HWND dialog, INT_PTR result) {
  KillTimer(dialog, kCloseTimer);
  EndDialog(dialog, result);
  return TRUE;
}

}  // namespace

INT_PTR CALLBACK AlarmNoticeProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      if (reinterpret_cast<const NoticeText*>(lParam)->usageWarning) SetWindowTextA(dialog, kUsageWarningCaption);
      SetDlgItemTextA(dialog, IDC_NOTICE_MESSAGE, reinterpret_cast<const NoticeText*>(lParam)->text);
      SetTimer(dialog, kCloseTimer, kAlarmNoticeLifetimeMs, nullptr);
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDC_NOTICE_CLOSE) return Close(dialog, 1);
      return FALSE;
    case WM_TIMER:
      if (wParam == kCloseTimer) return Close(dialog, 0);
      return FALSE;
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLOREDIT:
      return PaintControl(wParam, kDialogGrey);
    default:
      return FALSE;
  }
}

void ShowUsageWarningNotice(const char* text) {
  const NoticeText notice{text, true};
  DialogBoxParamA(appWindows.instanceHandle, MAKEINTRESOURCEA(IDD_ALARM_NOTICE), nullptr, AlarmNoticeProc,
                  reinterpret_cast<LPARAM>(&notice));
}

void ShowAlarmNotice(const char* text) {
  const NoticeText notice{text, false};
  DialogBoxParamA(appWindows.instanceHandle, MAKEINTRESOURCEA(IDD_ALARM_NOTICE), nullptr, AlarmNoticeProc,
                  reinterpret_cast<LPARAM>(&notice));
}

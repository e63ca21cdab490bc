#include "app/greeting_dialogs.h"

#include "app/dialog_colours.h"

namespace {

constexpr UINT_PTR kSplashTimer = 1;
constexpr UINT kSplashMs = 2400;

// Each of these dialogs is modal and only one of each is open at a time.
HBRUSH splashBrush = nullptr;
HBRUSH aboutBrush = nullptr;
HBRUSH welcomeBrush = nullptr;

void Release(HBRUSH* brush) {
  if (*brush) DeleteObject(*brush);
  *brush = nullptr;
}

}  // namespace

INT_PTR CALLBACK SplashDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  switch (message) {
    case WM_INITDIALOG:
      SetTimer(dialog, kSplashTimer, kSplashMs, nullptr);
      splashBrush = CreateSolidBrush(kDialogGrey);
      return FALSE;
    case WM_TIMER:
      // The splash closes only by its timer: clicks and keys are left to the default.
      Release(&splashBrush);
      KillTimer(dialog, kSplashTimer);
      EndDialog(dialog, 1);
      return TRUE;
    default:
      return AnswerGreyColours(message, wParam, splashBrush);
  }
}

INT_PTR CALLBACK AboutDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  switch (message) {
    case WM_INITDIALOG:
      aboutBrush = CreateSolidBrush(kDialogGrey);
      return FALSE;
    case WM_COMMAND:  // Close, or Esc
    case WM_CLOSE:
      Release(&aboutBrush);
      EndDialog(dialog, 1);
      return TRUE;
    default:
      return AnswerGreyColours(message, wParam, aboutBrush);
  }
}

INT_PTR CALLBACK WelcomeDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  switch (message) {
    case WM_INITDIALOG:
      welcomeBrush = CreateSolidBrush(kDialogGrey);
      return TRUE;
    case WM_COMMAND:
      // Only Proceed closes the welcome; Esc is ignored.
      if (LOWORD(wParam) != IDOK) return FALSE;
      Release(&welcomeBrush);
      EndDialog(dialog, 1);
      return TRUE;
    default:
      return AnswerGreyColours(message, wParam, welcomeBrush);
  }
}

#include "app/win32/greeting_dialogs.h"

#include "ui/win32/dialog_colours.h"

namespace {

constexpr UINT_PTR kSplashTimer = 1;
constexpr UINT kSplashMs = 2400;

// Each of these dialogs is modal and only one of each is open at a time.
HBRUSH splashBrush = nullptr;
HBRUSH aboutBrush = nullptr;
HBRUSH welcomeBrush = nullptr;

// Releases the dialog's brush and ends the modal dialog.
INT_PTR Close(HWND dialog, HBRUSH* brush) {
  if (*brush) DeleteObject(*brush);
  *brush = nullptr;
  EndDialog(dialog, 1);
  return TRUE;
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
      KillTimer(dialog, kSplashTimer);
      return Close(dialog, &splashBrush);
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
      return Close(dialog, &aboutBrush);
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
      return Close(dialog, &welcomeBrush);
    default:
      return AnswerGreyColours(message, wParam, welcomeBrush);
  }
}

#include "app/win32/greeting_dialogs.h"

#include "ui/win32/dialog_colours.h"

namespace {

constexpr UINT_PTR kSplashTimer = 1;
constexpr UINT kSplashMs = 2400;

// Ends the modal dialog.
INT_PTR Close(HWND dialog) {
  EndDialog(dialog, 1);
  return TRUE;
}

}  // namespace

INT_PTR CALLBACK SplashDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  switch (message) {
    case WM_INITDIALOG:
      SetTimer(dialog, kSplashTimer, kSplashMs, nullptr);
      return FALSE;
    case WM_TIMER:
      // The splash closes only by its timer: clicks and keys are left to the default.
      KillTimer(dialog, kSplashTimer);
      return Close(dialog);
    default:
      return AnswerGreyColours(message, wParam);
  }
}

INT_PTR CALLBACK AboutDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  switch (message) {
    case WM_INITDIALOG:
      return FALSE;
    case WM_COMMAND:  // Close, or Esc
    case WM_CLOSE:
      return Close(dialog);
    default:
      return AnswerGreyColours(message, wParam);
  }
}

INT_PTR CALLBACK WelcomeDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  switch (message) {
    case WM_INITDIALOG:
      // The first window after the splash: its owner, the main window, is hidden,
      // so nothing would activate it and it would open with a grey caption.
      SetForegroundWindow(dialog);
      return TRUE;
    case WM_COMMAND:
      // Only Proceed closes the welcome; Esc is ignored.
      if (LOWORD(wParam) != IDOK) return FALSE;
      return Close(dialog);
    default:
      return AnswerGreyColours(message, wParam);
  }
}

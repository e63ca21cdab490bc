// Orvalen: the entry point. One instance per session; the hidden main window
// drives everything from its timers.
#include <windows.h>
#include <commctrl.h>

#include "ui/win32/app_state.h"
#include "ui/win32/controls.h"
#include "ui/win32/dialog_colours.h"
#include "app/win32/greeting_dialogs.h"
#include "app/win32/main_window.h"
#include "app/win32/win_exception.h"
#include "app/win32/window_class.h"
#include "app/win32/window_creator.h"
#include "monitor/monitor.h"
#include "resources/resource_ids.h"

namespace {

constexpr char kClassName[] = "Orvalen";

constexpr char kInstanceMutexName[] = "Orvalen.OneInstance";
constexpr DWORD kWaitForRunningMs = 10000;

// Asks the running instance to show its main status dialog. It names the window
// to bring forward, which this process (the one the user just started) is
// allowed to make the foreground window. False when it did not answer.
bool HandOverTo(HWND running) {
  DWORD_PTR answer = 0;
  if (!SendMessageTimeoutA(running, kActivateMessage, 0, 0, SMTO_ABORTIFHUNG, 5000, &answer)) return false;
  HWND target = reinterpret_cast<HWND>(answer);
  if (IsWindow(target)) {
    SetForegroundWindow(target);
    if (IsIconic(target)) ShowWindow(target, SW_SHOWNORMAL);
  }
  return true;
}

// True when this start is the one instance; false when a running one took over
// (or never answered). A start that finds the mutex taken lets go of it at once
// and asks again while it waits: an instance that is quitting or has crashed
// leaves no mutex behind, and this start takes its place, so that one of the
// starts always runs. The running instance may still be in its splash: its
// window comes after it.
bool TakeTheOneInstance() {
  const DWORD start = GetTickCount();
  for (;;) {
    // Kept for the process's life: the system releases it when the process ends.
    HANDLE mutex = CreateMutexA(nullptr, FALSE, kInstanceMutexName);
    if (GetLastError() != ERROR_ALREADY_EXISTS) return true;
    CloseHandle(mutex);
    HWND running = FindWindowA(kClassName, nullptr);
    if (IsWindow(running) && HandOverTo(running)) return false;
    if (GetTickCount() - start >= kWaitForRunningMs) return false;
    Sleep(100);
  }
}

// Dispatches a message, giving the modeless dialogs (the main status dialog,
// View Log) their keyboard first: Tab, Enter and Esc. Modal dialogs run their
// own loop, so a dialog here is always a modeless one.
void Dispatch(MSG& message) {
  HWND top = TopLevelWindow(message.hwnd);
  char className[8] = {};
  if (top != nullptr && GetClassNameA(top, className, sizeof className) > 0 && lstrcmpA(className, "#32770") == 0) {
    // Esc does what the dialog's close box does (in View Log, the Cancel id
    // belongs to Manage Log), unless the control wants the key itself (an open
    // drop-down list).
    if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE &&
        (SendMessageA(message.hwnd, WM_GETDLGCODE, message.wParam, reinterpret_cast<LPARAM>(&message)) &
         DLGC_WANTMESSAGE) == 0) {
      PostMessageA(top, WM_CLOSE, 0, 0);
      return;
    }
    if (IsDialogMessageA(top, &message)) return;
  }
  TranslateMessage(&message);
  DispatchMessageA(&message);
}

int Run(HINSTANCE instance) {
  InitCommonControls();
  appWindows.instanceHandle = instance;
  Win::WindowClass windowClass(instance, kClassName, MainWindowProc);
  // Taken before the splash: the main window, which a later start looks for,
  // exists only after it.
  if (!TakeTheOneInstance()) return 0;
  windowClass.Register();
  Win::WindowCreator creator(instance, windowClass.GetName());
  Monitor monitor;  // the one monitor: the main window drives it, and it outlives the message loop
  creator.SetCreationData(&monitor);
  creator.SetPosition(350, 290, 135, 100);
  // The splash is a tool window, which Windows keeps off the taskbar; Wine's
  // taskbar gives every visible unowned window a blank button all the same. An
  // owned window gets none on either, so a hidden window owns the splash.
  HWND splashOwner = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, instance, nullptr);
  DialogBoxParamA(instance, MAKEINTRESOURCEA(IDD_SPLASH), splashOwner, SplashDialogProc, 0);
  if (splashOwner != nullptr) DestroyWindow(splashOwner);
  HWND window = creator.Create("Orvalen");
  ShowWindow(window, SW_HIDE);
  UpdateWindow(window);

  MSG message;
  BOOL result;
  while ((result = GetMessageA(&message, nullptr, 0, 0)) != 0) {
    if (result == -1) break;
    Dispatch(message);
  }
  ReleasePalette();  // every window is gone
  return result == -1 ? -1 : static_cast<int>(message.wParam);
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  // Start-up failures end the program; the user is told why rather than seeing a
  // runtime abort.
  try {
    return Run(instance);
  } catch (const Win::WinException& error) {
    MessageBoxA(nullptr, error.GetMessage(), "Orvalen", MB_OK | MB_ICONSTOP);
  } catch (const char* error) {
    MessageBoxA(nullptr, error, "Orvalen", MB_OK | MB_ICONSTOP);
  }
  return 1;
}

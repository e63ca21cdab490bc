// Orvalen: the entry point. One instance per session; the hidden main window
// drives everything from its timers.
#include <windows.h>
#include <commctrl.h>

#include "ui/win32/app_state.h"
#include "ui/win32/controls.h"
#include "ui/win32/dialog_colours.h"
#include "app/win32/greeting_dialogs.h"
#include "app/win32/main_window.h"
#include "monitor/monitor.h"
#include "storage/storage.h"
#include "resources/resource_ids.h"

#if !defined(_WIN64)
static_assert(sizeof(WNDCLASSEXA) == 48, "Windows 95 expects the 48-byte WNDCLASSEX");
#endif

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

// The one way a start that cannot go on tells the user why: the step that failed
// and the system's error number, in a box of its own (no window is left to own it).
void ReportFatal(const char* what) {
  char text[160];
  wsprintfA(text, "%s\n\nError %lu.", what, GetLastError());
  // A refused main window's clean-up has posted the quit, which would close the
  // box at once: it is taken off the queue first.
  MSG quit;
  PeekMessageA(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
  MessageBoxA(nullptr, text, "Orvalen", MB_OK | MB_ICONSTOP);
}

bool RegisterMainWindowClass(HINSTANCE instance) {
  WNDCLASSEXA windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = MainWindowProc;
  windowClass.hInstance = instance;
  windowClass.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
  windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  windowClass.lpszClassName = kClassName;
  return RegisterClassExA(&windowClass) != 0;
}

int Run(HINSTANCE instance) {
  InitCommonControls();
  appWindows.instanceHandle = instance;
  // Taken before the splash: the main window, which a later start looks for,
  // exists only after it.
  if (!TakeTheOneInstance()) return 0;
  if (!RegisterMainWindowClass(instance)) {
    ReportFatal("Internal error: RegisterClassEx failed.");
    return 1;
  }
  // The splash before the main window is deliberate: the older release started so,
  // and a second start meanwhile waits for the window (TakeTheOneInstance).
  // The splash is a tool window, which Windows keeps off the taskbar; Wine's
  // taskbar gives every visible unowned window a blank button all the same. An
  // owned window gets none on either, so a hidden window owns the splash.
  HWND splashOwner = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, instance, nullptr);
  DialogBoxParamA(instance, MAKEINTRESOURCEA(IDD_SPLASH), splashOwner, SplashDialogProc, 0);
  if (splashOwner != nullptr) DestroyWindow(splashOwner);
  // Hidden: the tray icon is the program's face. Its WM_CREATE refuses the window
  // (and CreateWindowExA gives NULL) when the icon cannot be added.
  // The one storage and the one monitor: the main window drives them, and they
  // outlive the message loop.
  Storage storage;
  Monitor monitor(storage);
  MainWindowStart start{monitor};
  HWND window = CreateWindowExA(0, kClassName, "Orvalen", WS_OVERLAPPEDWINDOW, 350, 290, 135, 100, nullptr,
                                nullptr, instance, &start);
  if (window == nullptr && !start.ended) {
    ReportFatal("Window Creation Failed");
    return 1;
  }
  if (window != nullptr) {
    ShowWindow(window, SW_HIDE);
    UpdateWindow(window);
  }

  MSG message;
  BOOL result;
  while ((result = GetMessageA(&message, nullptr, 0, 0)) != 0) {
    if (result == -1) {
      // The loop cannot go on: the window's own clean-up ends the program.
      if (IsWindow(window)) DestroyWindow(window);
      break;
    }
    Dispatch(message);
  }
  ReleasePalette();  // every window is gone
  return result == -1 ? -1 : static_cast<int>(message.wParam);
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) { return Run(instance); }

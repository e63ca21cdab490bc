// Orvalen: the entry point. One instance per session; the hidden main window
// drives everything from its timers.
#include <windows.h>
#include <commctrl.h>

#include "app/app_state.h"
#include "app/greeting_dialogs.h"
#include "app/main_window.h"
#include "app/win_exception.h"
#include "app/window_class.h"
#include "app/window_creator.h"
#include "resources/resource_ids.h"

namespace {

constexpr char kClassName[] = "Orvalen";

// A second start brings the running instance forward and ends silently.
bool ActivateRunningInstance() {
  HWND running = FindWindowA(kClassName, nullptr);
  if (!IsWindow(running)) return false;
  HWND popup = GetLastActivePopup(running);
  HWND target = IsWindow(popup) ? popup : running;
  SetForegroundWindow(target);
  if (IsIconic(target)) ShowWindow(target, SW_SHOWNORMAL);
  return true;
}

int Run(HINSTANCE instance) {
  InitCommonControls();
  instanceHandle = instance;
  Win::WindowClass windowClass(instance, kClassName, MainWindowProc);
  if (ActivateRunningInstance()) return 0;
  windowClass.Register();
  Win::WindowCreator creator(instance, windowClass.GetName());
  creator.SetPosition(350, 290, 135, 100);
  DialogBoxParamA(instance, MAKEINTRESOURCEA(IDD_SPLASH), nullptr, SplashDialogProc, 0);
  HWND window = creator.Create("Orvalen");
  ShowWindow(window, SW_HIDE);
  UpdateWindow(window);

  // Plain dispatch: the modeless dialogs get their messages without IsDialogMessage.
  MSG message;
  BOOL result;
  while ((result = GetMessageA(&message, nullptr, 0, 0)) != 0) {
    if (result == -1) return -1;
    DispatchMessageA(&message);
  }
  return static_cast<int>(message.wParam);
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

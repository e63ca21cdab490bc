#include "app/win32/main_window.h"

#include "ui/win32/app_state.h"
#include "app/win32/greeting_dialogs.h"
#include "app/win32/main_dialog.h"
#include "app/win32/main_timers.h"
#include "app/win32/quit_question.h"
#include "app/shell_rules.h"
#include "app/status_text.h"
#include "app/win32/tray_icon.h"
#include "app/win32/window_shell.h"
#include "logview/win32/view_log_dialog.h"
#include "monitor/monitor.h"
#include "monitor/unconfigured_connections.h"
#include "monitor/usage_warning.h"
#include "resources/resource_ids.h"
#include "storage/storage.h"

namespace {

constexpr LPARAM kTrayDoubleClick = WM_LBUTTONDBLCLK;
constexpr LPARAM kTrayRightButton = WM_RBUTTONDOWN;

// The monitor the program made for this window (main.cpp), kept in its user data.
Monitor& MonitorOf(HWND window) { return *reinterpret_cast<Monitor*>(GetWindowLongPtrA(window, GWLP_USERDATA)); }

// Every timer shows what its step queued once the step has returned: a box's
// message loop runs the next ticks, which must not find a step half done.
void ShowNotices(Monitor& monitor) {
  WindowShell shell(monitor.Store());
  monitor.ShowPendingNotices(shell);
}

void CALLBACK CheckpointTimerProc(HWND window, UINT, UINT_PTR, DWORD) {
  MonitorOf(window).OnCheckpointTimer();
  ShowNotices(MonitorOf(window));
}

void CALLBACK AlarmTimerProc(HWND window, UINT, UINT_PTR, DWORD) {
  MonitorOf(window).OnAlarmTimer();
  ShowNotices(MonitorOf(window));
}

void CALLBACK UsageWarningTimerProc(HWND window, UINT, UINT_PTR, DWORD) {
  MonitorOf(window).OnUsageWarningTimer();
  ShowNotices(MonitorOf(window));
}

// The alarm period is taken once per session: Alarm page changes count from the
// next session, and the reminders keep counting from this session's start.
void FollowSession(HWND window, SessionChange change) {
  if (change == SessionChange::kOpened) {
    SetTimer(window, kCheckpointTimer, kCheckpointPeriodMs, CheckpointTimerProc);
    SetTimer(window, kAlarmTimer, MonitorOf(window).AlarmPeriodMs(), AlarmTimerProc);
    SetTimer(window, kUsageWarningTimer, kUsageWarningCheckMs, UsageWarningTimerProc);
  } else if (change == SessionChange::kClosed) {
    KillTimer(window, kCheckpointTimer);
    KillTimer(window, kAlarmTimer);
    KillTimer(window, kUsageWarningTimer);
  }
}

bool startupDone = false;  // storage ready and the start-up notices answered

// False refuses the window (WM_CREATE answers -1): without the tray icon the
// program could not be reached.
bool OnCreate(HWND window, Monitor& monitor) {
  appWindows.mainWindow = window;
  SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&monitor));
  Storage& store = monitor.Store();
  store.installHooks.markFirstRun = [] { appWindows.showMainDialogOnce = true; };
  store.startupHooks = PlatformStartupHooks();  // the system's installation actions
  store.startupHooks.showWelcome = [](void* owner) {
    DialogBoxParamA(appWindows.instanceHandle, MAKEINTRESOURCEA(IDD_WELCOME), static_cast<HWND>(owner),
                    WelcomeDialogProc, 0);
  };
  store.startupHooks.showAlert = [](void* owner, const char* text, const char* caption) {
    MessageBoxA(static_cast<HWND>(owner), text, caption, MB_OK | MB_ICONEXCLAMATION);
  };
  store.InitialiseStorage(window);
  monitor.RecoverInterruptedSession();
  ShowNotices(monitor);  // what the start found, before the poll runs
  // The boxes above run message loops: a way out taken meanwhile has destroyed the
  // window, and nothing more starts.
  if (!IsWindow(window)) return true;
  if (!AddTrayIcon(window)) return false;
  // The poll runs before the notice about connections without an account can
  // open: a session made while it waits for an answer is timed and recorded. The
  // status timers run only while the main status dialog is shown (main_dialog.cpp).
  SetTimer(window, kPollTimer, kPollPeriodMs, nullptr);
  WindowShell shell(store);
  (void)CheckUnconfiguredConnections(store, shell);  // a failed save was told by the save
  if (!IsWindow(window)) return true;  // ended while the notice waited
  if (store.settings.showMainWindowAtStart != 0 || appWindows.showMainDialogOnce) ShowMainDialog();
  startupDone = true;
  return true;
}

void OnTimer(HWND window, UINT_PTR timer) {
  Monitor& monitor = MonitorOf(window);
  FollowSession(window, OnMainWindowTimer(timer == kPollTimer, appWindows.mainDialogVisible, monitor));
  ShowNotices(monitor);  // also what a save of a dialog queued since the last tick
}

// Returns true when the user confirmed the quit.
bool ConfirmQuit() {
  HWND shown = appWindows.mainDialogVisible ? appWindows.mainDialog : nullptr;
  return AskToQuit(MonitorOf(appWindows.mainWindow).PollNow(), shown, appWindows.mainWindow, kWindowQuitQuestion);
}

// The one clean-up, whichever way the program ends. An open session is not
// recorded here: the settings file still says a session is open, so the next
// start records it from its checkpoint (a shutdown recorded it already).
void OnDestroy(HWND window) {
  if (appWindows.mainDialogVisible) DestroyWindow(appWindows.mainDialog);  // stops the status timers
  KillTimer(window, kPollTimer);
  FollowSession(window, SessionChange::kClosed);  // the session timers
  RemoveTrayIcon(window);
  PostQuitMessage(0);
}

// The system is shutting down or the user logging off: the open session is
// recorded as it stands now, without any box that would hold the shutdown up,
// and the program ends.
void OnEndSession(HWND window) {
  MonitorOf(window).Shutdown(ShutdownMode::kQuiet);
  DestroyWindow(window);
}

// A second start asks for the program; the window to bring forward (an open
// modal box first) is returned to the new process, which may make it the
// foreground window.
LRESULT OnActivateRequest() {
  HWND popup = GetLastActivePopup(appWindows.mainWindow);
  const bool boxWaiting = popup != appWindows.mainWindow && IsWindowVisible(popup);
  const ActivateAnswer answer = AnswerActivate(startupDone, boxWaiting, appWindows.mainDialogVisible);
  if (answer.showMainDialog) ShowMainDialog();
  switch (answer.forward) {
    case ForwardWindow::kWaitingBox:
      return reinterpret_cast<LRESULT>(popup);
    case ForwardWindow::kMainDialog:
      return reinterpret_cast<LRESULT>(GetLastActivePopup(appWindows.mainDialog));
    default:
      return 0;
  }
}

LRESULT OnCommand(HWND window, WPARAM wParam) {
  switch (MenuActionFor(LOWORD(wParam))) {
    case MenuAction::kShowMainDialog:
      ShowMainDialog();
      return 1;
    case MenuAction::kShowAbout:
      DialogBoxParamA(appWindows.instanceHandle, MAKEINTRESOURCEA(IDD_ABOUT), window, AboutDialogProc, 0);
      return 1;
    case MenuAction::kOpenViewLog:
      OpenViewLog(appWindows.mainDialogVisible ? appWindows.mainDialog : nullptr, MonitorOf(window));
      return 1;
    case MenuAction::kHideMainDialog:
      if (appWindows.mainDialogVisible) DestroyWindow(appWindows.mainDialog);
      return 1;
    case MenuAction::kAskToQuit:
      if (!ConfirmQuit()) return 0;
      DestroyWindow(window);
      return 0;
  }
  return 0;
}

}  // namespace

void ShowMainDialog() {
  if (appWindows.mainDialogVisible) {
    SetForegroundWindow(appWindows.mainDialog);
    return;
  }
  appWindows.mainDialog = CreateDialogParamA(appWindows.instanceHandle, MAKEINTRESOURCEA(IDD_MAIN_STATUS), nullptr,
                                             MainDialogProc,
                                             reinterpret_cast<LPARAM>(&MonitorOf(appWindows.mainWindow)));
}

LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  // Sent to every top-level window when the taskbar starts again (Explorer
  // restarted): the icon is the only way to the program, so it is added again.
  static const UINT taskbarCreated = RegisterWindowMessageA("TaskbarCreated");
  appWindows.mainWindow = window;
  if (message == taskbarCreated && taskbarCreated != 0) {
    AddTrayIcon(window);
    return 0;
  }
  switch (message) {
    case WM_CREATE: {
      auto& start = *static_cast<MainWindowStart*>(reinterpret_cast<const CREATESTRUCTA*>(lParam)->lpCreateParams);
      if (!OnCreate(window, start.monitor)) return -1;
      start.ended = !IsWindow(window);
      return 0;
    }
    case WM_TIMER:
      OnTimer(window, wParam);
      break;
    case kTrayCallbackMessage: {
      // Kept as the older release had it, which its users rely on: every event
      // reads the cursor and is answered 1; a double click shows the main status
      // dialog, the right button opens the menu.
      POINT cursor = {};
      GetCursorPos(&cursor);
      if (lParam == kTrayDoubleClick) ShowMainDialog();
      else if (lParam == kTrayRightButton) ShowTrayMenu(window, cursor.x, cursor.y);
      return 1;
    }
    case kActivateMessage:
      return OnActivateRequest();
    case WM_COMMAND:
      return OnCommand(window, wParam);
    case WM_QUERYENDSESSION:
      return TRUE;
    case WM_ENDSESSION:
      if (wParam) OnEndSession(window);
      return 0;
    case WM_DESTROY:
      // The window is already going, so a "No" could not keep the program alive:
      // no question here, whichever way out led to it.
      OnDestroy(window);
      return 0;
    default:
      break;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

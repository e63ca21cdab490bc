#include "app/win32/main_dialog.h"

#include <cstring>
#include <string>

#include "ui/win32/app_state.h"
#include "ui/win32/controls.h"
#include "ui/win32/program_icon.h"
#include "ui/win32/dialog_colours.h"
#include "app/win32/greeting_dialogs.h"
#include "app/win32/main_timers.h"
#include "app/win32/quit_question.h"
#include "app/win32/settings_sheet.h"
#include "app/status_text.h"
#include "logview/win32/view_log_dialog.h"
#include "monitor/monitor.h"
#include "platform/system_clock.h"
#include "resources/resource_ids.h"
#include "storage/session_log.h"
#include "storage/storage.h"

namespace {

constexpr UINT_PTR kRefreshTimer = 1;

class MainDialogState {
 public:
  MainDialogState(HWND dialog, Monitor& monitor)
      : dialog(dialog),
        monitor(monitor),
        hide(GetDlgItem(dialog, IDC_MAIN_HIDE)),
        configure(GetDlgItem(dialog, IDC_MAIN_CONFIGURE)),
        viewLog(GetDlgItem(dialog, IDC_MAIN_VIEW_LOG)),
        about(GetDlgItem(dialog, IDC_MAIN_ABOUT)),
        date(GetDlgItem(dialog, IDC_MAIN_DATE)),
        time(GetDlgItem(dialog, IDC_MAIN_TIME)),
        connectionCaption(GetDlgItem(dialog, IDC_MAIN_CONNECTION_CAPTION)),
        connectionName(GetDlgItem(dialog, IDC_MAIN_CONNECTION_NAME)),
        firstCaption(GetDlgItem(dialog, IDC_MAIN_FIRST_CAPTION)),
        firstValue(GetDlgItem(dialog, IDC_MAIN_FIRST_VALUE)),
        secondCaption(GetDlgItem(dialog, IDC_MAIN_SECOND_CAPTION)),
        secondValue(GetDlgItem(dialog, IDC_MAIN_SECOND_VALUE)),
        accountStatus(GetDlgItem(dialog, IDC_MAIN_ACCOUNT_STATUS)),
        previousSession(GetDlgItem(dialog, IDC_MAIN_PREVIOUS_SESSION)) {}
  virtual ~MainDialogState() = default;

  HWND dialog;
  Monitor& monitor;  // the program's, which the main window drives
  HWND hide, configure, viewLog, about, date, time, connectionCaption, connectionName, firstCaption, firstValue,
      secondCaption, secondValue, accountStatus, previousSession;
  DialUpProbe probe;
};

// Behind DWLP_USER from WM_INITDIALOG to WM_DESTROY; null in a refused duplicate
// and for the messages before WM_INITDIALOG.
MainDialogState* StateOf(HWND dialog) {
  return reinterpret_cast<MainDialogState*>(GetWindowLongPtrA(dialog, DWLP_USER));
}

// The refresh writes only what changed: a control given the text it already
// shows, the state it already has or the icon it already holds would be redrawn
// for nothing, every second.
void SetText(HWND control, const char* text) {
  char shown[kStatusTextSize + 1];
  const int length = GetWindowTextA(control, shown, sizeof shown);
  if (length >= 0 && static_cast<std::size_t>(length) < kStatusTextSize && std::strcmp(shown, text) == 0) return;
  SetWindowTextA(control, text);
}

void Enable(HWND control, BOOL enable) {
  if (!IsWindowEnabled(control) != !enable) EnableWindowKeepingFocus(control, enable != FALSE);
}

void SetIcon(HWND dialog, int control, HICON icon) {
  if (reinterpret_cast<HICON>(SendDlgItemMessageA(dialog, control, STM_GETIMAGE, IMAGE_ICON, 0)) == icon) return;
  SendDlgItemMessageA(dialog, control, STM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon));
}

void ShowSessionTexts(MainDialogState& state) {
  // The answer of the latest poll tick, which the status text shown here was
  // built on too.
  Monitor& monitor = state.monitor;
  const bool connected = monitor.TickConnected();
  if (!IsWindowVisible(state.connectionCaption)) ShowWindow(state.connectionCaption, SW_SHOW);
  Enable(state.connectionCaption, TRUE);
  Enable(state.connectionName, TRUE);
  if (connected && monitor.Probe().OnLine()) {
    Enable(state.configure, FALSE);
    if (!IsWindowVisible(state.firstCaption)) ShowWindow(state.firstCaption, SW_SHOW);
    SetText(state.firstCaption, "You've Been Logged on since:");
    SetText(state.secondCaption, "Your've Been Logged on for:");
    SetText(state.secondValue, monitor.ElapsedText());
    SetText(state.firstValue, monitor.LogOnText());
    SetText(state.accountStatus, statusState.statusText);
    SetText(state.connectionCaption, "Active Connection :");
    SetText(state.connectionName, monitor.Probe().ConnectionName());
    return;
  }
  // Whenever no session is open, also after a connection vanished from the list
  // without a "disconnected" state.
  if (!monitor.SessionOpen()) Enable(state.configure, TRUE);
  if (monitor.Probe().NoConnectionSeen()) return;  // nothing to tell until a first connection
  SetText(state.firstCaption, "Your Last Logon was at :");
  SetText(state.secondCaption, "Your Last Logon Took Up :");
  SetText(state.firstValue, monitor.LogOnText());
  SetText(state.secondValue, monitor.LastDurationText());
  SetText(state.connectionCaption, "Last Connection :");
  SetText(state.connectionName, monitor.Probe().ConnectionName());
  SetText(state.accountStatus, statusState.statusText);
}

void FillPreviousSession(MainDialogState& state) {
  Enable(state.previousSession, TRUE);
  SendMessageA(state.previousSession, LB_RESETCONTENT, 0, 0);
  for (const std::string& line : PreviousSessionLines(state.monitor.Store())) {
    SendMessageA(state.previousSession, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
  }
}

void OnRefreshTimer(HWND dialog, MainDialogState& state) {
  ShowSessionTexts(state);
  const Settings& settings = state.monitor.Store().settings;
  SetIcon(dialog, IDC_MAIN_ALARM_ICON,
          LoadIconA(appWindows.instanceHandle, MAKEINTRESOURCEA(settings.alarmOn ? IDI_ALARM_ON : IDI_ALARM_OFF)));
  SetText(state.time, state.monitor.ClockText());
  const LocalTime today = ReadLocalTime();
  char date[kDateTextSize];
  FormatDate(date, today.dayOfWeek, today.month, today.day, today.year);
  SetText(state.date, date);
  if (settings.previousSessionValid != 0 && state.monitor.PreviousSessionChanged()) {
    FillPreviousSession(state);
    state.monitor.SetPreviousSessionChanged(false);
  }
}

// The main window's status timers only rebuild the text this dialog shows, so they
// run only while it exists: hidden and off-line, the program wakes for the poll alone.
void StartStatusTimers() {
  SetTimer(appWindows.mainWindow, kStatusTimer, kStatusPeriodMs, nullptr);
  SetTimer(appWindows.mainWindow, kSlowStatusTimer, kSlowStatusPeriodMs, nullptr);
}

void StopStatusTimers() {
  KillTimer(appWindows.mainWindow, kStatusTimer);
  KillTimer(appWindows.mainWindow, kSlowStatusTimer);
}

BOOL OnInitDialog(HWND dialog, Monitor& monitor) {
  if (appWindows.mainDialogVisible) {  // only one main status dialog exists
    DestroyWindow(dialog);
    return TRUE;
  }
  MainDialogState* state = new MainDialogState(dialog, monitor);
  SetWindowLongPtrA(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(state));
  ShowProgramIcon(dialog);
  SetText(state->connectionName, "");
  SetText(state->accountStatus, kInitialStatusText);
  appWindows.mainDialog = dialog;
  appWindows.mainDialogVisible = true;
  // The timers rebuild the status text only while this dialog shows it: it is
  // rebuilt now, so it is right at once.
  RefreshStatusText(monitor);
  StartStatusTimers();
  SetTimer(dialog, kRefreshTimer, 1000, nullptr);
  if (monitor.Store().settings.previousSessionValid != 0) monitor.SetPreviousSessionChanged(true);
  if (monitor.Store().IsLogEmpty()) monitor.SetPreviousSessionChanged(false);
  appWindows.showMainDialogOnce = false;
  return TRUE;
}

// Every way the dialog goes (Hide, the tray menu, the quit) destroys it.
void ReleaseState(HWND dialog) {
  MainDialogState* state = StateOf(dialog);
  if (state == nullptr) return;  // a refused duplicate
  KillTimer(dialog, kRefreshTimer);
  StopStatusTimers();
  SetWindowLongPtrA(dialog, DWLP_USER, 0);
  delete state;
  appWindows.mainDialogVisible = false;
}

void OnButton(HWND dialog, MainDialogState& state, WORD id) {
  switch (id) {
    case IDC_MAIN_CONFIGURE:
      ShowSettingsSheet(dialog, state.monitor.Store());
      (void)state.monitor.Store().SaveSettings();  // a failure is told by the save; the choices stay in memory
      break;
    case IDC_MAIN_ABOUT:
      DialogBoxParamA(appWindows.instanceHandle, MAKEINTRESOURCEA(IDD_ABOUT), dialog, AboutDialogProc, 0);
      break;
    case IDC_MAIN_VIEW_LOG:
      if (!appWindows.viewLogOpen) OpenViewLog(dialog, state.monitor);
      break;
    case IDC_MAIN_HIDE:
      appWindows.viewLogOpen = false;  // the View Log dialog is owned by this one and goes with it
      DestroyWindow(dialog);
      break;
    default:
      break;
  }
}

void OnClose(HWND dialog, MainDialogState& state) {
  const bool onLine = state.probe.IsConnected();
  if (!AskToQuit(onLine, dialog, dialog, kDialogQuitQuestion)) return;
  // The program ends as from the tray's Exit: the main window's WM_DESTROY does
  // the clean-up, this dialog included. The session is not recorded: the
  // settings file still says it is open.
  state.monitor.SetPreviousSessionChanged(true);
  DestroyWindow(appWindows.mainWindow);
}

}  // namespace

INT_PTR CALLBACK MainDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) return OnInitDialog(dialog, *reinterpret_cast<Monitor*>(lParam));
  MainDialogState* state = StateOf(dialog);
  if (state == nullptr) return FALSE;  // before WM_INITDIALOG, or a refused duplicate
  switch (message) {
    case WM_TIMER:
      if (wParam == kRefreshTimer) OnRefreshTimer(dialog, *state);
      return TRUE;
    case WM_COMMAND:
      if (HIWORD(wParam) == BN_CLICKED) OnButton(dialog, *state, LOWORD(wParam));
      return FALSE;
    case WM_CLOSE:
      OnClose(dialog, *state);
      return TRUE;
    case WM_DESTROY:
      ReleaseState(dialog);
      return FALSE;
    case WM_CTLCOLORLISTBOX:
      return PaintControl(wParam, kLightGreen);
    case WM_CTLCOLOREDIT:
      return PaintControl(wParam, kGreen);
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
      return PaintControl(wParam, kDialogGrey);
    default:
      return FALSE;
  }
}

#include "logview/win32/view_log_dialog.h"

#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "ui/win32/app_state.h"
#include "ui/win32/controls.h"
#include "ui/win32/dialog_colours.h"
#include "ui/win32/program_icon.h"
#include "logview/win32/connection_name_box.h"
#include "logview/win32/log_export.h"
#include "logview/win32/editor_launch.h"
#include "logview/log_view_lines.h"
#include "logview/win32/manage_log_dialog.h"
#include "logview/manage_log_summary.h"
#include "logview/text_report.h"
#include "monitor/monitor.h"
#include "platform/system_clock.h"
#include "resources/resource_ids.h"
#include "storage/fixed_text.h"
#include "storage/storage.h"

namespace {

// The dialog's own state, behind DWLP_USER from WM_INITDIALOG to WM_DESTROY.
struct ViewLogState {
  explicit ViewLogState(Storage& storage) : store(storage) {}
  Storage& store;      // the log it lists, the accounts it sums up
  LogListing listing;  // kept from one filling to the next, so a long log reuses its buffers
};

ViewLogState* StateOf(HWND dialog) { return reinterpret_cast<ViewLogState*>(GetWindowLongPtrA(dialog, DWLP_USER)); }
Storage& StoreOf(HWND dialog) { return StateOf(dialog)->store; }

void SetText(HWND dialog, int id, const char* text) { SetDlgItemTextA(dialog, id, text); }

// Selects the item that is exactly the text (letter case counts, so "home isp" never
// lands on "Home ISP"); no selection when there is none.
void SelectItem(HWND dialog, int id, const char* text) {
  HWND box = GetDlgItem(dialog, id);
  const LRESULT count = SendMessageA(box, CB_GETCOUNT, 0, 0);
  LRESULT found = CB_ERR;
  std::string item;
  for (LRESULT i = 0; i < count && found == CB_ERR; ++i) {
    const LRESULT length = SendMessageA(box, CB_GETLBTEXTLEN, static_cast<WPARAM>(i), 0);
    if (length < 0) continue;
    item.assign(static_cast<std::size_t>(length) + 1, '\0');
    SendMessageA(box, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item[0]));
    if (std::strcmp(item.c_str(), text) == 0) found = i;
  }
  SendMessageA(box, CB_SETCURSEL, static_cast<WPARAM>(found), 0);
}

void AddItems(HWND dialog, int id, const std::vector<std::string>& items) {
  for (const std::string& item : items) {
    SendDlgItemMessageA(dialog, id, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item.c_str()));
  }
}

struct BoxTexts {
  char connection[kFilterConnectionSize] = {};
  char month[kFilterMonthSize] = {};
  char year[kFilterYearSize] = {};
};

// A drop-down list without a selection reads as an empty text.
BoxTexts ReadBoxes(HWND dialog) {
  BoxTexts texts;
  GetDlgItemTextA(dialog, IDC_VIEWLOG_CONNECTION, texts.connection, sizeof texts.connection);
  GetDlgItemTextA(dialog, IDC_VIEWLOG_MONTH, texts.month, sizeof texts.month);
  GetDlgItemTextA(dialog, IDC_VIEWLOG_YEAR, texts.year, sizeof texts.year);
  return texts;
}

void RememberBoxes(HWND dialog) {
  const BoxTexts texts = ReadBoxes(dialog);
  RememberFilter(texts.connection, texts.month, texts.year);
}

void ShowAccount(HWND dialog, const char* connection) {
  SetText(dialog, IDC_VIEWLOG_ACCOUNT, AccountSummaryText(StoreOf(dialog), connection).c_str());
}

void EmptyList(HWND dialog) { SendDlgItemMessageA(dialog, IDC_VIEWLOG_LIST, LB_RESETCONTENT, 0, 0); }

// Everything but Close: nothing is left to filter, report or manage.
void DisableLogControls(HWND dialog) {
  for (int id : {IDC_VIEWLOG_MANAGE, IDC_VIEWLOG_CONNECTION, IDC_VIEWLOG_MONTH, IDC_VIEWLOG_YEAR,
                 IDC_VIEWLOG_ACCOUNT, IDC_VIEWLOG_REPORT, IDC_VIEWLOG_EXPORT}) {
    EnableControl(dialog, id, false);
  }
}

void ShowEmptyLog(HWND dialog) {
  DisableLogControls(dialog);
  HWND list = GetDlgItem(dialog, IDC_VIEWLOG_LIST);
  for (std::size_t i = 0; i < kEmptyLogBlankLines; ++i) {
    SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(""));
  }
  SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(kEmptyLogLine));
}

BOOL OnInitDialog(HWND dialog, Monitor& monitor) {
  Storage& store = monitor.Store();
  SetWindowLongPtrA(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(new ViewLogState(store)));
  reportHooks.launchEditor = StartReportEditor;
  appWindows.viewLogOpen = true;
  ShowProgramIcon(dialog);

  FillConnectionNames(dialog, store, kAllConnections);
  SelectItem(dialog, IDC_VIEWLOG_CONNECTION, kAllConnections);

  const LocalTime now = ReadLocalTime();
  AddItems(dialog, IDC_VIEWLOG_MONTH, std::vector<std::string>(std::begin(kMonthChoices), std::end(kMonthChoices)));
  const char* month = MonthAbbreviation(now.month);
  SelectItem(dialog, IDC_VIEWLOG_MONTH, month);
  CopyFixedText(logViewState.LastFilter.month, month);

  AddItems(dialog, IDC_VIEWLOG_YEAR, YearChoices(now.year));
  const std::string year = CurrentYearText();
  SelectItem(dialog, IDC_VIEWLOG_YEAR, year.c_str());

  std::string connection = kAllConnections;
  if (store.settings.logInitialFilter == 2) {
    connection = InitialConnectionFilter(store.settings, monitor.PollNow(), monitor.Probe());
    SelectItem(dialog, IDC_VIEWLOG_CONNECTION, connection.c_str());
  }

  if (!store.IsLogEmpty()) {
    char yearText[kFilterYearSize] = {};
    CopyFixedText(yearText, year.c_str());
    FillLogList(dialog, connection.c_str(), month, yearText);
    if (!EqualsIgnoringCase(connection.c_str(), kAllConnections)) ShowAccount(dialog, connection.c_str());
  } else {
    ShowEmptyLog(dialog);
  }
  RememberBoxes(dialog);
  return TRUE;
}

void OnFilterChange(HWND dialog) {
  EmptyList(dialog);
  BoxTexts texts = ReadBoxes(dialog);
  if (FillLogList(dialog, texts.connection, texts.month, texts.year)) {
    if (std::strcmp(texts.connection, kAllConnections) != 0) ShowAccount(dialog, texts.connection);
    RememberBoxes(dialog);
    return;
  }
  MessageBoxA(dialog, kNoMatchingEntries, "", MB_OK);
  // Back to the last filter that showed something. Its empty year (a box left
  // without a selection) now holds the current year.
  EmptyList(dialog);
  FillLogList(dialog, logViewState.LastFilter.connection, logViewState.LastFilter.month, logViewState.LastFilter.year);
  SelectItem(dialog, IDC_VIEWLOG_CONNECTION, logViewState.LastFilter.connection);
  SelectItem(dialog, IDC_VIEWLOG_MONTH, logViewState.LastFilter.month);
  SelectItem(dialog, IDC_VIEWLOG_YEAR, logViewState.LastFilter.year);
}

void OnManageLog(HWND dialog) {
  const int result = RunManageLog(dialog, StoreOf(dialog));
  if (result == kLogUnchanged) return;
  EmptyList(dialog);
  if (result == kLogCleared) DisableLogControls(dialog);
  FillConnectionNames(dialog, StoreOf(dialog), kAllConnections);
  char year[kFilterYearSize] = {};
  CopyFixedText(year, CurrentYearText().c_str());
  FillLogList(dialog, kAllConnections, kAllMonths, year);
  SelectItem(dialog, IDC_VIEWLOG_CONNECTION, kAllConnections);
  SelectItem(dialog, IDC_VIEWLOG_MONTH, kAllMonths);
  SelectItem(dialog, IDC_VIEWLOG_YEAR, year);
}

void CloseViewLog(HWND dialog) {
  DestroyWindow(dialog);
  appWindows.viewLogOpen = false;
}

// Also destroyed with its owner, the main status dialog, however that closes.
void OnDestroy(HWND dialog) {
  appWindows.viewLogOpen = false;
  delete StateOf(dialog);
  SetWindowLongPtrA(dialog, DWLP_USER, 0);
}

INT_PTR OnCommand(HWND dialog, WORD id, WORD code) {
  switch (id) {
    case IDC_VIEWLOG_CONNECTION:
    case IDC_VIEWLOG_MONTH:
    case IDC_VIEWLOG_YEAR:
      if (code == CBN_SELCHANGE) OnFilterChange(dialog);
      return TRUE;
    case IDC_VIEWLOG_LIST:
      return TRUE;
    case IDC_VIEWLOG_REPORT:
      GenerateTextReport();
      return TRUE;
    case IDC_VIEWLOG_MANAGE:
      OnManageLog(dialog);
      return TRUE;
    case IDC_VIEWLOG_EXPORT: {
      BoxTexts texts = ReadBoxes(dialog);
      ExportLog(dialog, StoreOf(dialog), texts.connection, texts.month, texts.year);
      return TRUE;
    }
    default:  // Close, and any other command
      CloseViewLog(dialog);
      return TRUE;
  }
}

INT_PTR ListBoxColours(HWND dialog, WPARAM deviceContext) {
  const ViewLogState* state = StateOf(dialog);
  if (state != nullptr && state->store.settings.logSystemColours != 0) return TRUE;  // the system's own colours
  return PaintControl(deviceContext, kGreen);
}

}  // namespace

void OpenViewLog(HWND owner, Monitor& monitor) {
  if (appWindows.viewLogOpen) return;
  CreateDialogParamA(appWindows.instanceHandle, MAKEINTRESOURCEA(IDD_VIEW_LOG), owner, ViewLogDialogProc,
                     reinterpret_cast<LPARAM>(&monitor));
}

bool FillLogList(HWND dialog, const char* connection, const char* month, char* year) {
  ViewLogState* state = StateOf(dialog);
  if (state == nullptr) return false;
  LogListing& listing = state->listing;
  SetCursor(LoadCursor(nullptr, IDC_WAIT));
  const bool listed = BuildLogListing(state->store, connection, month, year, listing);

  // Tens of thousands of lines: storage sized once and no redraw per line, or
  // opening a long log would visibly freeze the dialog.
  HWND list = GetDlgItem(dialog, IDC_VIEWLOG_LIST);
  const TextLines& lines = listing.lines;
  SendMessageA(list, WM_SETREDRAW, FALSE, 0);
  SendMessageA(list, LB_INITSTORAGE, lines.size(), static_cast<LPARAM>(lines.bytes()));
  for (std::size_t i = 0; i < lines.size(); ++i) {
    SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(lines.Line(i)));
  }
  SendMessageA(list, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list, nullptr, TRUE);

  ShowLogTotals(dialog, listing.count, listing.totalSeconds);
  SetCursor(LoadCursor(nullptr, IDC_ARROW));
  if (listing.clearTexts) {
    SetText(dialog, IDC_VIEWLOG_COUNT, "");
    SetText(dialog, IDC_VIEWLOG_ACCOUNT, "");
    SetText(dialog, IDC_VIEWLOG_TOTAL, "");
  }
  return listed;
}

void ShowLogTotals(HWND dialog, int count, float totalSeconds) {
  SetText(dialog, IDC_VIEWLOG_COUNT, CountText(count).c_str());
  HWND list = GetDlgItem(dialog, IDC_VIEWLOG_LIST);
  const LRESULT lineCount = SendMessageA(list, LB_GETCOUNT, 0, 0);
  if (lineCount > 0) SendMessageA(list, LB_SETTOPINDEX, static_cast<WPARAM>(lineCount - 1), 0);
  SetText(dialog, IDC_VIEWLOG_TOTAL, TotalHoursText(totalSeconds).c_str());
}

INT_PTR CALLBACK ViewLogDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      return OnInitDialog(dialog, *reinterpret_cast<Monitor*>(lParam));
    case WM_COMMAND:
      return OnCommand(dialog, LOWORD(wParam), HIWORD(wParam));
    case WM_CLOSE:
      CloseViewLog(dialog);
      return TRUE;
    case WM_DESTROY:
      OnDestroy(dialog);
      return FALSE;
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
      return PaintControl(wParam, kDialogGrey);
    case WM_CTLCOLORBTN:
      return PaintControl(wParam, kGreen);
    case WM_CTLCOLORLISTBOX:
      return ListBoxColours(dialog, wParam);
    default:
      return FALSE;
  }
}

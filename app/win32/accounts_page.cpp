#include "app/win32/accounts_page.h"

#include <string>
#include <vector>

#include "ui/win32/app_state.h"
#include "app/win32/detail_controls.h"
#include "ui/win32/dialog_colours.h"
#include "app/win32/sheet_page.h"
#include "logview/win32/connection_name_box.h"
#include "logview/log_view_lines.h"
#include "monitor/unconfigured_connections.h"
#include "resources/resource_ids.h"
#include "storage/account_figures.h"
#include "storage/accounts.h"
#include "platform/system_clock.h"
#include "storage/storage.h"

namespace {

constexpr char kAccountsCaptionFor[] = "Orvalen....Configure Account Details For --";  // + the name
constexpr char kAccountsCaptionAll[] = "Orvalen....Configure  Account Details For Dial-Up Connections";
constexpr char kAccountsBanner[] =
    "Choose a Connection to enter account details.\nPrevious accounts can also be reconfigured here";
constexpr char kAccountsComboPrompt[] = "Select One";
constexpr char kAccountsFirstItem[] = "Connection";

// The combo box gives at most this many characters of a name.
constexpr std::size_t kChosenNameLength = 49;

constexpr int kCardControls[] = {IDC_ACCOUNTS_CARD_HOURS_LABEL, IDC_ACCOUNTS_CARD_HOURS};
constexpr int kKindRadios[] = {IDC_ACCOUNTS_CARD, IDC_ACCOUNTS_LIMITED, IDC_ACCOUNTS_UNLIMITED};
constexpr int kFigureEdits[] = {IDC_ACCOUNTS_CARD_HOURS, IDC_ACCOUNTS_MONTHLY_CHARGE, IDC_ACCOUNTS_BASIC_HOURS,
                                IDC_ACCOUNTS_EXCESS_PER_MINUTE, IDC_ACCOUNTS_VAT, IDC_ACCOUNTS_PERIOD_DAY,
                                IDC_ACCOUNTS_WARN_PERCENT, IDC_ACCOUNTS_WARN_COST};
// The controls added after the first release, by the kind that uses them.
constexpr int kLimitedOnlyControls[] = {IDC_ACCOUNTS_PERIOD_DAY_LABEL, IDC_ACCOUNTS_PERIOD_DAY,
                                        IDC_ACCOUNTS_WARN_COST_LABEL, IDC_ACCOUNTS_WARN_COST};
constexpr int kWarnPercentControls[] = {IDC_ACCOUNTS_WARN_PERCENT_LABEL, IDC_ACCOUNTS_WARN_PERCENT};
constexpr char kRechargedBanner[] = "Card recharged: the card's hours count from now on once the details are saved.";

// Each shown page or dialog keeps its own state. The sheet is owned by the main
// status dialog, which no notice disables, so the sheet's page and the notice's
// dialog can be open at once; each therefore saves the connection it chose itself.
struct PageState {
  explicit PageState(Storage& storage) : store(storage) {}
  Storage& store;           // the account table it shows and changes
  bool standAlone = false;  // opened from the notice, with its own OK and Cancel
  std::string chosen;       // the connection whose entry is edited; empty: none
  bool recharged = false;   // Card Recharged was pressed for the chosen connection
  LocalTime rechargedAt{};
};

PageState* StateOf(HWND page) { return reinterpret_cast<PageState*>(GetWindowLongPtrA(page, DWLP_USER)); }

void SetCaptionFor(HWND page, const std::string& name) {
  SetWindowTextA(page, (std::string(kAccountsCaptionFor) + name).c_str());
}

void EnableCardControls(HWND page, bool enable) {
  for (const int id : kCardControls) EnableControl(page, id, enable);
}

// The added controls follow the checked kind: period and cost for limited access,
// the warning percent for a card too, Recharged for a card.
void EnableAddedControls(HWND page, int kindId) {
  for (const int id : kLimitedOnlyControls) EnableControl(page, id, kindId == IDC_ACCOUNTS_LIMITED);
  for (const int id : kWarnPercentControls) {
    EnableControl(page, id, kindId == IDC_ACCOUNTS_LIMITED || kindId == IDC_ACCOUNTS_CARD);
  }
  EnableControl(page, IDC_ACCOUNTS_RECHARGED, kindId == IDC_ACCOUNTS_CARD);
}

void CheckKind(HWND page, int checked) {
  for (const int id : kKindRadios) SetChecked(page, id, id == checked);
}

// The storage comes as the page's lParam on the sheet, as the dialog's own
// parameter when opened from the notice.
BOOL OnInitDialog(HWND page, LPARAM lParam) {
  // A sheet page is a child window; only the dialog of its own is a popup.
  const bool isChild = (GetWindowLongPtrA(page, GWL_STYLE) & WS_CHILD) != 0;
  Storage* store = isChild ? PageStorageOf(lParam) : reinterpret_cast<Storage*>(lParam);
  PageState* state = new PageState(*store);
  state->standAlone = unconfiguredState.OpenedFromNotice == 1 && !isChild;
  if (state->standAlone) state->chosen = unconfiguredState.ConnectionToConfigure;
  SetWindowLongPtrA(page, DWLP_USER, reinterpret_cast<LONG_PTR>(state));

  // "Connection" first, then the log's connection names; the combo box sorts them.
  FillConnectionNames(page, *store, kAccountsFirstItem);
  if (!state->chosen.empty()) SetCaptionFor(page, state->chosen);
  else SetWindowTextA(page, kAccountsCaptionAll);
  for (const int id : kFigureEdits) SetDlgItemTextA(page, id, "");
  EnableCardControls(page, false);
  EnableControl(page, IDC_ACCOUNTS_CHOOSE_LABEL, false);
  CheckKind(page, IDC_ACCOUNTS_LIMITED);

  if (state->standAlone) {
    EnableAddedControls(page, IDC_ACCOUNTS_LIMITED);
    EnableControl(page, IDC_ACCOUNTS_CONNECTION, false);
    EnableControl(page, IDC_ACCOUNTS_HELP, true);
    ShowControl(page, IDC_ACCOUNTS_APPLY, false);
    EnableControl(page, IDC_ACCOUNTS_OK, true);
    EnableControl(page, IDC_ACCOUNTS_CANCEL, true);
  } else {
    EnableControl(page, IDC_ACCOUNTS_CONNECTION, true);
    EnableControl(page, IDC_ACCOUNTS_CHOOSE_LABEL, true);
    ShowControl(page, IDC_ACCOUNTS_HELP, false);
    for (const int id : kKindRadios) EnableControl(page, id, false);
    // The sheet has its own buttons.
    ShowControl(page, IDC_ACCOUNTS_OK, false);
    ShowControl(page, IDC_ACCOUNTS_APPLY, false);
    ShowControl(page, IDC_ACCOUNTS_CANCEL, false);
    EnableDetailControls(page, false);
    EnableAddedControls(page, 0);
    SetDlgItemTextA(page, IDC_ACCOUNTS_BANNER, kAccountsBanner);
  }
  SetDlgItemTextA(page, IDC_ACCOUNTS_CONNECTION, kAccountsComboPrompt);
  return TRUE;
}

std::string SelectedConnection(HWND page) {
  HWND combo = GetDlgItem(page, IDC_ACCOUNTS_CONNECTION);
  const LRESULT index = SendMessageA(combo, CB_GETCURSEL, 0, 0);
  if (index == CB_ERR) return std::string();
  const LRESULT length = SendMessageA(combo, CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0);
  if (length == CB_ERR || length < 0) return std::string();
  std::vector<char> text(static_cast<std::size_t>(length) + 1, '\0');
  SendMessageA(combo, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
  std::string name(text.data());
  if (name.size() > kChosenNameLength) name.resize(kChosenNameLength);
  return name;
}

void ShowEntry(HWND page, const AccountEntryView& view) {
  const int radio = view.radio == PrePaidCard       ? IDC_ACCOUNTS_CARD
                    : view.radio == UnlimitedAccess ? IDC_ACCOUNTS_UNLIMITED
                                                    : IDC_ACCOUNTS_LIMITED;
  CheckKind(page, radio);
  EnableCardControls(page, view.cardControlsEnabled);
  EnableDetailControls(page, view.limitedControlsEnabled);
  EnableAddedControls(page, radio == IDC_ACCOUNTS_UNLIMITED ? 0 : radio);
  SetDlgItemTextA(page, IDC_ACCOUNTS_PERIOD_DAY, view.periodDay);
  SetDlgItemTextA(page, IDC_ACCOUNTS_WARN_PERCENT, view.warnPercent);
  SetDlgItemTextA(page, IDC_ACCOUNTS_WARN_COST, view.warnCost);
  if (view.fillCard) SetDlgItemTextA(page, IDC_ACCOUNTS_CARD_HOURS, view.cardHours);
  if (view.fillLimited) {
    SetDlgItemTextA(page, IDC_ACCOUNTS_BASIC_HOURS, view.basicHours);
    SetDlgItemTextA(page, IDC_ACCOUNTS_MONTHLY_CHARGE, view.monthlyCharge);
    SetDlgItemTextA(page, IDC_ACCOUNTS_EXCESS_PER_MINUTE, view.excessPerMinute);
    SetDlgItemTextA(page, IDC_ACCOUNTS_VAT, view.vatPercent);
  }
}

void OnConnectionChosen(HWND page, PageState& state) {
  const std::string name = SelectedConnection(page);
  EnableControl(page, IDC_ACCOUNTS_OK, true);
  EnableControl(page, IDC_ACCOUNTS_CANCEL, true);
  const int k = state.store.AccountIndexByName(name.c_str());
  if (k == kNoAccount) return;  // "Connection", or a name the table has no room for
  SetCaptionFor(page, name);
  state.chosen = name;
  state.recharged = false;
  for (const int id : kKindRadios) EnableControl(page, id, true);
  const AccountEntryView view = ViewAccountEntry(state.store.settings.accounts[k]);
  if (view.known) ShowEntry(page, view);
}

void OnKindChosen(HWND page, int id) {
  EnableCardControls(page, id == IDC_ACCOUNTS_CARD);
  EnableDetailControls(page, id == IDC_ACCOUNTS_LIMITED);
  EnableAddedControls(page, id == IDC_ACCOUNTS_UNLIMITED ? 0 : id);
  EnableControl(page, IDC_ACCOUNTS_OK, true);
  EnableControl(page, IDC_ACCOUNTS_CANCEL, true);
}

enum class Stored { NoChoice, NoEntry, Saved };

// The chosen connection's entry from the page's boxes; the choice is then used up.
Stored StoreChosenEntry(HWND page, PageState& state) {
  if (state.chosen.empty()) return Stored::NoChoice;
  const std::string cardHours = ControlText(page, IDC_ACCOUNTS_CARD_HOURS);
  const std::string basicHours = ControlText(page, IDC_ACCOUNTS_BASIC_HOURS);
  const std::string monthlyCharge = ControlText(page, IDC_ACCOUNTS_MONTHLY_CHARGE);
  const std::string excessPerMinute = ControlText(page, IDC_ACCOUNTS_EXCESS_PER_MINUTE);
  const std::string vatPercent = ControlText(page, IDC_ACCOUNTS_VAT);
  const std::string periodDay = ControlText(page, IDC_ACCOUNTS_PERIOD_DAY);
  const std::string warnPercent = ControlText(page, IDC_ACCOUNTS_WARN_PERCENT);
  const std::string warnCost = ControlText(page, IDC_ACCOUNTS_WARN_COST);
  AccountPageInput input;
  input.checked = IsChecked(page, IDC_ACCOUNTS_UNLIMITED) ? UnlimitedAccess
                  : IsChecked(page, IDC_ACCOUNTS_CARD)    ? PrePaidCard
                  : IsChecked(page, IDC_ACCOUNTS_LIMITED) ? LimitedAccess
                                                          : NotChosen;
  input.cardHours = cardHours.c_str();
  input.basicHours = basicHours.c_str();
  input.monthlyCharge = monthlyCharge.c_str();
  input.excessPerMinute = excessPerMinute.c_str();
  input.vatPercent = vatPercent.c_str();
  input.periodDay = periodDay.c_str();
  input.warnPercent = warnPercent.c_str();
  input.warnCost = warnCost.c_str();
  if (state.recharged) input.rechargedAt = &state.rechargedAt;
  if (!state.store.SaveAccountInput(state.chosen.c_str(), input)) return Stored::NoEntry;
  state.chosen.clear();
  state.recharged = false;
  if (state.standAlone) unconfiguredState.ConnectionToConfigure[0] = '\0';
  return Stored::Saved;
}

void OnStandAloneButton(HWND page, PageState& state, int id) {
  switch (id) {
    case IDC_ACCOUNTS_OK:
    case IDC_ACCOUNTS_APPLY:
      // An entry that is gone meanwhile cannot be saved: the dialog stays for Cancel.
      if (StoreChosenEntry(page, state) == Stored::NoEntry) break;
      (void)state.store.SaveSettings();  // a failure is told by the save; the account stays in memory
      if (id == IDC_ACCOUNTS_OK) {
        EndDialog(page, 1);
      }
      unconfiguredState.OpenedFromNotice = 0;
      EnableControl(page, IDC_ACCOUNTS_OK, false);
      EnableControl(page, IDC_ACCOUNTS_CANCEL, false);
      break;
    case IDC_ACCOUNTS_CANCEL:  // also Esc and the close box
      state.chosen.clear();
      unconfiguredState.ConnectionToConfigure[0] = '\0';
      EndDialog(page, 0);
      unconfiguredState.OpenedFromNotice = 0;
      break;
    default:
      break;
  }
}

void OnCommand(HWND page, PageState& state, WORD id, WORD code) {
  if (id == IDC_ACCOUNTS_CONNECTION) {
    if (code == CBN_SELCHANGE) OnConnectionChosen(page, state);
    return;
  }
  if (code != BN_CLICKED) return;
  if (id == IDC_ACCOUNTS_RECHARGED) {
    // Taken with the card's hours when the details are saved; the banner says so.
    state.recharged = true;
    state.rechargedAt = ReadLocalTime();
    SetDlgItemTextA(page, IDC_ACCOUNTS_BANNER, kRechargedBanner);
    EnableControl(page, IDC_ACCOUNTS_OK, true);
    EnableControl(page, IDC_ACCOUNTS_CANCEL, true);
    return;
  }
  if (id == IDC_ACCOUNTS_CARD || id == IDC_ACCOUNTS_LIMITED || id == IDC_ACCOUNTS_UNLIMITED) {
    OnKindChosen(page, id);
    return;
  }
  // On the sheet these buttons are hidden: the sheet's own OK and Cancel rule.
  if (state.standAlone) OnStandAloneButton(page, state, id);
}

}  // namespace

INT_PTR CALLBACK AccountsPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) return OnInitDialog(page, lParam);
  PageState* state = StateOf(page);
  if (state == nullptr) return FALSE;  // messages before WM_INITDIALOG
  switch (message) {
    case WM_COMMAND:
      OnCommand(page, *state, LOWORD(wParam), HIWORD(wParam));
      return TRUE;
    case WM_NOTIFY:  // on OK the sheet's caller saves the settings
      return AnswerSheetNotification(page, lParam, [page, state] {
        StoreChosenEntry(page, *state);
        state->chosen.clear();
      });
    case WM_DESTROY:
      SetWindowLongPtrA(page, DWLP_USER, 0);
      delete state;
      return FALSE;
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
      return PaintControl(wParam, kDialogGrey);
    default:
      return FALSE;
  }
}

INT_PTR RunAccountDialog(Storage& store) {
  unconfiguredState.OpenedFromNotice = 1;
  const INT_PTR result = DialogBoxParamA(appWindows.instanceHandle, MAKEINTRESOURCEA(IDD_ACCOUNTS),
                                         appWindows.mainWindow, AccountsPageProc, reinterpret_cast<LPARAM>(&store));
  unconfiguredState.OpenedFromNotice = 0;
  // -1: the dialog could not be created, so nothing was saved.
  return result == -1 ? 0 : result;
}

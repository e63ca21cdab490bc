#include "app/win32/general_page.h"

#include "ui/win32/dialog_colours.h"
#include "app/win32/sheet_page.h"
#include "app/sheet_settings.h"
#include "resources/resource_ids.h"
#include "storage/fixed_text.h"
#include "storage/win32/installation.h"
#include "storage/storage.h"

namespace {

BOOL OnInitDialog(HWND page, LPARAM lParam) {
  KeepPageStorage(page, lParam);
  const Settings& settings = PageStorage(page).settings;
  HWND currency = GetDlgItem(page, IDC_GENERAL_CURRENCY);
  for (const char* name : kCurrencyNames) SendMessageA(currency, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name));
  SendMessageA(currency, CB_SETCURSEL, 0, 0);
  // The stored name may lack its terminator in a damaged file.
  const std::string stored(settings.currencyName, FixedTextLength(settings.currencyName, kCurrencyNameSize));
  if (!stored.empty()) SetWindowTextA(currency, stored.c_str());
  SetChecked(page, IDC_GENERAL_24_HOUR_CLOCK, settings.use24HourClock != 0);
  SetChecked(page, IDC_GENERAL_SHOW_MAIN_WINDOW, settings.showMainWindowAtStart != 0);
  SetChecked(page, IDC_GENERAL_RUN_AT_STARTUP, settings.runAtStartup != 0);
  return TRUE;
}

void OnApply(HWND page) {
  Settings& settings = PageStorage(page).settings;
  const std::string currency = ControlText(page, IDC_GENERAL_CURRENCY);
  GeneralPageInput input;
  input.currency = currency.c_str();
  input.use24HourClock = IsChecked(page, IDC_GENERAL_24_HOUR_CLOCK);
  input.showMainWindowAtStart = IsChecked(page, IDC_GENERAL_SHOW_MAIN_WINDOW);
  input.runAtStartup = IsChecked(page, IDC_GENERAL_RUN_AT_STARTUP);
  StoreGeneralPage(settings, input);
  SetAutoStart(settings.runAtStartup != 0);
}

}  // namespace

INT_PTR CALLBACK GeneralPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      return OnInitDialog(page, lParam);
    case WM_NOTIFY:
      return AnswerSheetNotification(page, lParam, [page] { OnApply(page); });
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:  // the combo box keeps the system's colours
      return PaintControl(wParam, kDialogGrey);
    default:
      return FALSE;
  }
}

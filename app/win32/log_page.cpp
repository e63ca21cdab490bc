#include "app/win32/log_page.h"

#include "ui/win32/dialog_colours.h"
#include "app/win32/sheet_page.h"
#include "app/sheet_settings.h"
#include "resources/resource_ids.h"
#include "storage/storage.h"

namespace {

BOOL OnInitDialog(HWND page, LPARAM lParam) {
  KeepPageStorage(page, lParam);
  const Settings& settings = PageStorage(page).settings;
  const bool showAll = LogPageShowsAllConnections(settings);
  SetChecked(page, IDC_LOGPAGE_SHOW_ALL, showAll);
  SetChecked(page, IDC_LOGPAGE_FILTER_PREVIOUS, !showAll);
  SetChecked(page, IDC_LOGPAGE_SYSTEM_COLOURS, settings.logSystemColours != 0);
  return FALSE;
}

}  // namespace

INT_PTR CALLBACK LogPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      return OnInitDialog(page, lParam);
    case WM_NOTIFY:
      return AnswerSheetNotification(page, lParam, [page] {
        StoreLogPage(PageStorage(page).settings, IsChecked(page, IDC_LOGPAGE_SHOW_ALL),
                     IsChecked(page, IDC_LOGPAGE_FILTER_PREVIOUS), IsChecked(page, IDC_LOGPAGE_SYSTEM_COLOURS));
      });
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
      return PaintControl(wParam, kDialogGrey);
    default:
      return FALSE;
  }
}

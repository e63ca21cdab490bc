#include "app/win32/settings_sheet.h"

#include <commctrl.h>

#include <cstddef>

#include "app/win32/accounts_page.h"
#include "app/win32/alarm_page.h"
#include "ui/win32/app_state.h"
#include "app/win32/general_page.h"
#include "app/win32/log_page.h"
#include "resources/resource_ids.h"

// The header and page descriptions of the IE4 common controls that Windows 95/98
// install: 52 and 48 bytes on 32-bit Windows. The pages are an array whose stride
// is their dwSize, so the array is of exactly that type.
using SheetPage = PROPSHEETPAGEA_V2;
static_assert(sizeof(PROPSHEETHEADERA) == offsetof(PROPSHEETHEADERA, hbmHeader) + sizeof(HBITMAP),
              "the header ends with hbmHeader");
static_assert(sizeof(SheetPage) == offsetof(SheetPage, pszHeaderSubTitle) + sizeof(LPCSTR),
              "the page ends with pszHeaderSubTitle");
#if !defined(_WIN64)
static_assert(sizeof(PROPSHEETHEADERA) == 52, "32-bit PROPSHEETHEADERA");
static_assert(sizeof(SheetPage) == 48, "32-bit PROPSHEETPAGEA");
#endif
static_assert((PSH_PROPSHEETPAGE | PSH_NOAPPLYNOW) == 0x88, "pages as an array, no Apply button");

namespace {

struct PageDescription {
  const char* title;
  int templateId;
  DLGPROC procedure;
};

constexpr int kPageCount = 4;

}  // namespace

void ShowSettingsSheet(HWND owner, Storage& store) {
  const PageDescription described[kPageCount] = {
      {"General", IDD_GENERAL_PAGE, GeneralPageProc},
      {"Accounts", IDD_ACCOUNTS, AccountsPageProc},
      {"Log", IDD_LOG_PAGE, LogPageProc},
      {"Alarm", IDD_ALARM_PAGE, AlarmPageProc},
  };
  SheetPage pages[kPageCount] = {};
  for (int i = 0; i < kPageCount; ++i) {
    pages[i].dwSize = sizeof(SheetPage);
    pages[i].dwFlags = PSP_USETITLE;
    pages[i].hInstance = appWindows.instanceHandle;
    pages[i].pszTemplate = MAKEINTRESOURCEA(described[i].templateId);
    pages[i].pszTitle = described[i].title;
    pages[i].pfnDlgProc = described[i].procedure;
    pages[i].lParam = reinterpret_cast<LPARAM>(&store);  // each page keeps it (sheet_page.h)
  }
  PROPSHEETHEADERA header = {};
  header.dwSize = sizeof header;
  header.dwFlags = PSH_PROPSHEETPAGE | PSH_NOAPPLYNOW;
  header.hwndParent = owner;
  header.hInstance = appWindows.instanceHandle;
  header.pszCaption = "Configure Orvalen";
  header.nPages = kPageCount;
  header.nStartPage = 0;
  header.ppsp = reinterpret_cast<LPCPROPSHEETPAGEA>(pages);
  PropertySheetA(&header);
}

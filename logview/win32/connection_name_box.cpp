#include "logview/win32/connection_name_box.h"

#include <cstring>
#include <string>
#include <vector>

#include "logview/log_view_lines.h"
#include "resources/resource_ids.h"

namespace {

// Only combo boxes take the names with a first item; a list box of that id (Manage
// Log's) or a missing control is left alone.
bool IsComboBox(HWND control) {
  char name[32] = {};
  return control != nullptr && GetClassNameA(control, name, sizeof name) > 0 && lstrcmpiA(name, "ComboBox") == 0;
}

void RefillCombo(HWND control, const std::vector<std::string>& names) {
  if (!IsComboBox(control)) return;
  SendMessageA(control, CB_RESETCONTENT, 0, 0);
  for (const std::string& name : names) SendMessageA(control, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
}

}  // namespace

bool FillConnectionNames(HWND window, const Storage& store, const char* firstItem) {
  const bool withFirst = firstItem != nullptr && firstItem[0] != '\0';
  const std::vector<std::string> names = ConnectionNames(store, withFirst ? firstItem : "");
  if (withFirst) {
    // View Log's list shares the Accounts page's combo id and is left alone.
    RefillCombo(GetDlgItem(window, IDC_VIEWLOG_CONNECTION), names);
    RefillCombo(GetDlgItem(window, IDC_ACCOUNTS_CONNECTION), names);
  } else {
    HWND list = GetDlgItem(window, IDC_MANAGE_LIST);
    SendMessageA(list, LB_RESETCONTENT, 0, 0);
    for (const std::string& name : names) SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
  }
  return !names.empty();
}

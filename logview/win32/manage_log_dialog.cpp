#include "logview/win32/manage_log_dialog.h"

#include <string>

#include "ui/win32/app_state.h"
#include "ui/win32/controls.h"
#include "ui/win32/dialog_colours.h"
#include "logview/win32/connection_name_box.h"
#include "logview/manage_log_summary.h"
#include "resources/resource_ids.h"
#include "storage/storage.h"

namespace {

// The selected name, or false when nothing is selected.
bool SelectedName(HWND dialog, LRESULT* index, std::string* name) {
  HWND list = GetDlgItem(dialog, IDC_MANAGE_LIST);
  *index = SendMessageA(list, LB_GETCURSEL, 0, 0);
  if (*index == LB_ERR) return false;
  const LRESULT length = SendMessageA(list, LB_GETTEXTLEN, static_cast<WPARAM>(*index), 0);
  if (length == LB_ERR) return false;
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  SendMessageA(list, LB_GETTEXT, static_cast<WPARAM>(*index), reinterpret_cast<LPARAM>(&text[0]));
  name->assign(text.c_str());
  return true;
}

// The dialog's state, behind DWLP_USER: the storage it changes and the outcome it
// ends with (a ManageLogOutcome). It lives on RunManageLog's stack, so there is
// nothing to allocate or free. As before, each action sets the outcome anew, and a
// declined one leaves "nothing changed".
struct ManageLogState {
  Storage& store;
  int outcome = kLogUnchanged;
};

ManageLogState& StateOf(HWND dialog) {
  return *reinterpret_cast<ManageLogState*>(GetWindowLongPtrA(dialog, DWLP_USER));
}

void SetOutcome(HWND dialog, int outcome) { StateOf(dialog).outcome = outcome; }

void OnInitDialog(HWND dialog, LPARAM state) {
  SetWindowLongPtrA(dialog, DWLP_USER, state);
  // Each opening starts from "nothing changed": closing without an action must not
  // hand View Log the result of an earlier opening.
  SetOutcome(dialog, kLogUnchanged);
  EnableControl(dialog, IDC_MANAGE_DELETE, false);
  EnableControl(dialog, IDC_MANAGE_SUMMARY, false);
  if (!FillConnectionNames(dialog, StateOf(dialog).store, "")) {
    MessageBoxA(dialog, "There are no items in database", "", MB_OK | MB_ICONEXCLAMATION);
    SetOutcome(dialog, kRecordsDeleted);
    EnableControl(dialog, IDC_MANAGE_CLEAR, false);
  }
}

void OnDoubleClick(HWND dialog) {
  LRESULT index = LB_ERR;
  std::string name;
  if (!SelectedName(dialog, &index, &name)) return;
  const std::string summary = ManageLogSummaryText(StateOf(dialog).store, name.c_str());
  EnableControl(dialog, IDC_MANAGE_DELETE, true);
  EnableControl(dialog, IDC_MANAGE_SUMMARY, true);
  SetDlgItemTextA(dialog, IDC_MANAGE_SUMMARY, summary.c_str());
}

void OnDeleteEntry(HWND dialog) {
  SetOutcome(dialog, kLogUnchanged);
  LRESULT index = LB_ERR;
  std::string name;
  if (!SelectedName(dialog, &index, &name)) return;
  if (MessageBoxA(dialog, "Are You Sure You Want To Delete This Entry?", "Delete Connectiom",
                  MB_YESNO | MB_ICONQUESTION) != IDYES) {
    return;
  }
  SendDlgItemMessageA(dialog, IDC_MANAGE_LIST, LB_DELETESTRING, static_cast<WPARAM>(index), 0);
  EnableControl(dialog, IDC_MANAGE_DELETE, false);
  SetDlgItemTextA(dialog, IDC_MANAGE_SUMMARY, "");
  SetOutcome(dialog, DeleteConnectionEntries(StateOf(dialog).store, name.c_str()));
}

void OnClearEntireLog(HWND dialog) {
  SetOutcome(dialog, kLogUnchanged);
  if (MessageBoxA(dialog, "This will delete the entire log from your disk. Do you want to continue?", "ALERT !!",
                  MB_YESNO) != IDYES) {
    return;
  }
  SendDlgItemMessageA(dialog, IDC_MANAGE_LIST, LB_RESETCONTENT, 0, 0);
  EnableControl(dialog, IDC_MANAGE_CLEAR, false);
  EnableControl(dialog, IDC_MANAGE_DELETE, false);
  SetDlgItemTextA(dialog, IDC_MANAGE_SUMMARY, "");
  SetOutcome(dialog, ClearEntireLog(StateOf(dialog).store));
}

void CloseManageLog(HWND dialog) { EndDialog(dialog, StateOf(dialog).outcome); }

INT_PTR OnCommand(HWND dialog, WORD id, WORD code) {
  switch (id) {
    case IDC_MANAGE_LIST:
      if (code == LBN_DBLCLK) OnDoubleClick(dialog);
      return TRUE;
    case IDC_MANAGE_DELETE:
      OnDeleteEntry(dialog);
      return TRUE;
    case IDC_MANAGE_CLEAR:
      OnClearEntireLog(dialog);
      return TRUE;
    default:  // Close, Escape, and any other command
      CloseManageLog(dialog);
      return FALSE;
  }
}

}  // namespace

int RunManageLog(HWND owner, Storage& store) {
  ManageLogState state{store};
  const INT_PTR result = DialogBoxParamA(appWindows.instanceHandle, MAKEINTRESOURCEA(IDD_MANAGE_LOG), owner,
                                         ManageLogDialogProc, reinterpret_cast<LPARAM>(&state));
  // -1: the dialog could not be created, so nothing changed.
  return result == -1 ? kLogUnchanged : static_cast<int>(result);
}

INT_PTR CALLBACK ManageLogDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_INITDIALOG && GetWindowLongPtrA(dialog, DWLP_USER) == 0) return FALSE;  // before WM_INITDIALOG
  switch (message) {
    case WM_INITDIALOG:
      OnInitDialog(dialog, lParam);
      return FALSE;
    case WM_COMMAND:
      return OnCommand(dialog, LOWORD(wParam), HIWORD(wParam));
    case WM_CLOSE:
      CloseManageLog(dialog);
      return FALSE;
    case WM_CTLCOLORLISTBOX:
      if (StateOf(dialog).store.settings.logSystemColours != 0) return TRUE;  // the system's own colours
      return PaintControl(wParam, kGreen);
    default:
      // Edit, button, dialog and static colours are grey; the rest are the system's.
      return AnswerGreyColours(message, wParam);
  }
}

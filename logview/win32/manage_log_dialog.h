// The Manage Log dialog (IDD_MANAGE_LOG): deletes one connection's records and
// account, or clears the whole log.
#pragma once
#include <windows.h>

class Storage;

// Runs the dialog modally, owned by the View Log dialog; returns the outcome it
// ended with (a ManageLogOutcome: what View Log must refresh).
int RunManageLog(HWND owner, Storage& store);

INT_PTR CALLBACK ManageLogDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

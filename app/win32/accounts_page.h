// The Accounts page (IDD_ACCOUNTS): what kind of access each connection of the
// log is, with its figures. The same procedure serves as a page of the settings
// sheet, where the user picks a connection, and as a dialog of its own for the
// connection that the unconfigured-connection notice names.
#pragma once
#include <windows.h>

class Storage;

INT_PTR CALLBACK AccountsPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

// The dialog for ConnectionToConfigure, modal, owned by the main window: sets
// OpenedFromNotice and returns 1 once the account is saved, 0 otherwise.
INT_PTR RunAccountDialog(Storage& store);

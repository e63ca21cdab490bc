// Puts the log's connection names into a dialog's boxes (View Log, Manage Log and
// the Accounts page share it).
#pragma once
#include <windows.h>

class Storage;

// With a first item (View Log, Accounts page): the combo boxes among the window's
// IDC_VIEWLOG_CONNECTION and IDC_ACCOUNTS_CONNECTION are refilled with it and the
// names. With an empty first item (Manage Log): list box IDC_MANAGE_LIST is refilled
// with the names. True when anything was listed.
bool FillConnectionNames(HWND window, const Storage& store, const char* firstItem);

// The main status dialog: date, clock, the running or last session, the account
// status and the previous session, refreshed every second.
#pragma once
#include <windows.h>

INT_PTR CALLBACK MainDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

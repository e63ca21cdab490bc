// The View Log dialog (IDD_VIEW_LOG): the log's sessions, filtered by connection,
// month and year, with their count, total time and the connection's account.
#pragma once
#include <windows.h>

class Monitor;

// Opens the dialog modeless, owned by the given window (or none), unless one is
// already open. The monitor's probe names the connection it may open on.
void OpenViewLog(HWND owner, Monitor& monitor);

INT_PTR CALLBACK ViewLogDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// Fills IDC_VIEWLOG_LIST (emptied by the caller), the count and the total for one filter,
// and builds the report of that list. An empty year text (a buffer of at least
// kFilterYearSize bytes) receives the current year. True when anything was listed.
bool FillLogList(HWND dialog, const char* connection, const char* month, char* year);

// The count, the total hours, and the list scrolled to its end.
void ShowLogTotals(HWND dialog, int count, float totalSeconds);

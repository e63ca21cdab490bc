// View Log's Export button: a save dialog, then the CSV of the sessions the
// dialog's filter shows or their month-by-month summary (the dialog's file type).
#pragma once
#include <windows.h>

class Storage;

// The filter texts as the three boxes show them.
void ExportLog(HWND dialog, Storage& store, const char* connection, const char* month, char* year);

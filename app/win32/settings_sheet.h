// The settings property sheet ("Configure Orvalen"): General, Accounts, Log and
// Alarm pages. OK stores the opened pages into the settings in memory; writing
// the file is the caller's.
#pragma once
#include <windows.h>

class Storage;

// Modal; returns when the user closes the sheet.
void ShowSettingsSheet(HWND owner, Storage& store);

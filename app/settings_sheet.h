// The settings property sheet ("Configure Orvalen").
#pragma once
#include <windows.h>

// Modal; returns when the user closes the sheet.
void ShowSettingsSheet(HWND owner);

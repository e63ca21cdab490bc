// The View Log dialog (modeless).
#pragma once
#include <windows.h>

// Opens the View Log dialog owned by the given window (or none).
void OpenViewLog(HWND owner);

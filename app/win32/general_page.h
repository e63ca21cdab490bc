// The General page of the settings sheet (IDD_GENERAL_PAGE): currency, clock form,
// the main status dialog at start and the autostart value.
#pragma once
#include <windows.h>

INT_PTR CALLBACK GeneralPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

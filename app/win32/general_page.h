// The General page of the settings sheet (template 200): currency, clock form,
// the main status dialog at start and the autostart value.
#pragma once
#include <windows.h>

INT_PTR CALLBACK GeneralPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

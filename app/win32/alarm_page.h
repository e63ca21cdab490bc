// The Alarm page of the settings sheet (template 1400): on or off, repeating or
// one-shot with their times, and how the reminder is given.
#pragma once
#include <windows.h>

INT_PTR CALLBACK AlarmPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

// The Alarm page of the settings sheet (IDD_ALARM_PAGE): on or off, repeating or
// one-shot with their times, and how the reminder is given.
#pragma once
#include <windows.h>

INT_PTR CALLBACK AlarmPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

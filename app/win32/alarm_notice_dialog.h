// The alarm's notice window (IDD_ALARM_NOTICE): shows a reminder's text and closes
// itself after 20 seconds.
#pragma once
#include <windows.h>

INT_PTR CALLBACK AlarmNoticeProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// Modal, with no owner; returns when the notice closes.
void ShowAlarmNotice(const char* text);
// The same window, captioned as a usage warning, showing the text.
void ShowUsageWarningNotice(const char* text);

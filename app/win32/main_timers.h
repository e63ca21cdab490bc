// The hidden main window's timers. The poll runs for the program's life, the
// status timers while the main status dialog shows their text, the session
// timers while a session is open: hidden and off-line, only the poll wakes it.
#pragma once
#include <windows.h>

constexpr UINT_PTR kPollTimer = 2;          // 100 ms: session step and status text
constexpr UINT_PTR kStatusTimer = 5;        // 500 ms: status text, while the dialog is shown
constexpr UINT_PTR kSlowStatusTimer = 10;   // 10 s: status text, while the dialog is shown
constexpr UINT_PTR kCheckpointTimer = 20;   // 3 min, while a session is open
constexpr UINT_PTR kAlarmTimer = 30;        // while a session is open
constexpr UINT_PTR kUsageWarningTimer = 40; // 10 s, while a session is open

constexpr UINT kPollPeriodMs = 100;
constexpr UINT kStatusPeriodMs = 500;
constexpr UINT kSlowStatusPeriodMs = 10000;

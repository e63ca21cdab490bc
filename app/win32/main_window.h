// The hidden main window: owns the tray icon and the timers that drive sessions.
#pragma once
#include <windows.h>

class Monitor;

// A second start sends this to the running program's main window; the answer is
// the window to bring to the foreground (0 for none).
constexpr UINT kActivateMessage = WM_APP + 2;

// The main window's creation data: the monitor it drives, and what its WM_CREATE
// made of the start.
struct MainWindowStart {
  Monitor& monitor;  // the program's one monitor, which outlives the window
  // A way out (the end of the Windows session) taken while a start-up box waited
  // destroyed the window within its WM_CREATE: CreateWindowExA gives NULL, yet the
  // program ends as it should, with nothing to report.
  bool ended = false;
};

// Every way out of the program destroys this window; its WM_DESTROY does all the
// clean-up (timers, tray icon, the main status dialog) and ends the message loop.
LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// Creates the main status dialog, or brings the open one to the front.
void ShowMainDialog();

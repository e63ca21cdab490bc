// Window state shared by the program's windows; touched only on the UI thread.
#pragma once
#include <windows.h>

// A new process starts with these values.
struct AppWindows {
  HINSTANCE instanceHandle = nullptr;
  HWND mainWindow = nullptr;           // the hidden main window
  HWND mainDialog = nullptr;           // the last main status dialog; valid while mainDialogVisible
  bool mainDialogVisible = false;
  bool showMainDialogOnce = false;     // first run: show the main status dialog once at start
  bool viewLogOpen = false;
};
extern AppWindows appWindows;

// Window state shared by the program's windows; touched only on the UI thread.
#pragma once
#include <windows.h>

extern HINSTANCE instanceHandle;
extern HWND mainWindow;          // the hidden main window
extern HWND mainDialog;          // the last main status dialog; valid while mainDialogVisible
extern bool mainDialogVisible;
extern bool showMainDialogOnce;  // first run: show the main status dialog once at start
extern bool viewLogOpen;

#include "ui/win32/app_state.h"

HINSTANCE instanceHandle = nullptr;
HWND mainWindow = nullptr;
HWND mainDialog = nullptr;
bool mainDialogVisible = false;
bool showMainDialogOnce = false;
bool viewLogOpen = false;

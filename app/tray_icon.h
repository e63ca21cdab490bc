// The icon in the notification area and its popup menu.
#pragma once
#include <windows.h>

// The shell sends this message to the main window for mouse events on the icon.
constexpr UINT kTrayCallbackMessage = 10;
constexpr UINT kTrayIconId = 22;

void AddTrayIcon(HWND window);
void RemoveTrayIcon(HWND window);
// Shows the tray menu at a screen point; returns when it closes.
void ShowTrayMenu(HWND window, int x, int y);

// The icon in the notification area and its popup menu.
#pragma once
#include <windows.h>

// The shell sends this message to the main window for mouse events on the icon.
// A private number: a system message's (10 is WM_ENABLE, which the window also
// gets whenever a dialog it owns opens) would be taken for a click.
constexpr UINT kTrayCallbackMessage = WM_APP + 1;
constexpr UINT kTrayIconId = 22;

// False when the shell refused the icon (no taskbar yet, or none at all).
bool AddTrayIcon(HWND window);
void RemoveTrayIcon(HWND window);
// Shows the tray menu at a screen point; returns when it closes.
void ShowTrayMenu(HWND window, int x, int y);

#include "app/win32/tray_icon.h"

#include <shellapi.h>

#include "ui/win32/app_state.h"
#include "resources/resource_ids.h"
#include "storage/fixed_text.h"

#if !defined(_WIN64)
static_assert(NOTIFYICONDATAA_V1_SIZE == 88, "Windows 95 knows only the 88-byte NOTIFYICONDATA");
#endif

namespace {

// Windows 95 accepts only the first version of the structure, so the size given
// is that version's, whatever the headers' full structure holds.
bool NotifyShell(HWND window, DWORD action) {
  NOTIFYICONDATAA data = {};
  data.cbSize = NOTIFYICONDATAA_V1_SIZE;
  data.hWnd = window;
  data.uID = kTrayIconId;
  data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
  data.uCallbackMessage = kTrayCallbackMessage;
  data.hIcon = static_cast<HICON>(
      LoadImageA(appWindows.instanceHandle, MAKEINTRESOURCEA(IDI_PROGRAM), IMAGE_ICON, 0, 0, 0));
  CopyFixedText(data.szTip, 64, "Orvalen : Internet Connections Monitor");
  const bool done = Shell_NotifyIconA(action, &data) != FALSE;
  if (data.hIcon) DestroyIcon(data.hIcon);
  return done;
}

}  // namespace

bool AddTrayIcon(HWND window) { return NotifyShell(window, NIM_ADD); }

void RemoveTrayIcon(HWND window) { NotifyShell(window, NIM_DELETE); }

void ShowTrayMenu(HWND window, int x, int y) {
  HMENU menu = LoadMenuA(appWindows.instanceHandle, MAKEINTRESOURCEA(IDM_TRAY));
  if (menu == nullptr) return;
  // The menu closes on a click elsewhere only when its window is the foreground
  // one; the posted message makes the next right-click open it again at once.
  SetForegroundWindow(window);
  TrackPopupMenu(GetSubMenu(menu, 0), TPM_RIGHTBUTTON, x, y, 0, window, nullptr);
  PostMessageA(window, WM_NULL, 0, 0);
  DestroyMenu(menu);
}

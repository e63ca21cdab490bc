#include "app/settings_sheet.h"

// The pages of the sheet are not built yet; until they are, Configure says so
// instead of doing nothing.
void ShowSettingsSheet(HWND owner) {
  MessageBoxA(owner, "The settings pages are not available in this build yet.", "Configure Orvalen",
              MB_OK | MB_ICONINFORMATION);
}

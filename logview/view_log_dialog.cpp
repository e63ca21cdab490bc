#include "logview/view_log_dialog.h"

#include "app/app_state.h"

// The log viewer is not built yet; until it is, View Log says so.
void OpenViewLog(HWND owner) {
  if (viewLogOpen) return;
  MessageBoxA(owner, "The log viewer is not available in this build yet.", "View Log", MB_OK | MB_ICONINFORMATION);
}

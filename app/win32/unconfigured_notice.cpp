#include "app/win32/unconfigured_notice.h"

#include <windows.h>

#include "app/win32/accounts_page.h"
#include "ui/win32/app_state.h"
#include "monitor/unconfigured_connections.h"

namespace {

void ShowConfigureNotice(const char* text, const char* caption) {
  MessageBoxA(appWindows.mainWindow, text, caption, MB_ICONEXCLAMATION | MB_OK);
}

void ShowNotSetUp(const char* text, const char* caption) { MessageBoxA(nullptr, text, caption, MB_OK); }

intptr_t RunAccountDialogHook() { return RunAccountDialog(); }

}  // namespace

void UseWindowsAccountNotice() {
  unconfiguredHooks.showConfigureNotice = ShowConfigureNotice;
  unconfiguredHooks.showNotSetUp = ShowNotSetUp;
  unconfiguredHooks.runAccountDialog = RunAccountDialogHook;
}

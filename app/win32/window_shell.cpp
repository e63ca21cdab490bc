#include "app/win32/window_shell.h"

#include <windows.h>

#include "app/win32/accounts_page.h"
#include "app/win32/alarm_notice_dialog.h"
#include "app/win32/alarm_sound.h"
#include "monitor/unconfigured_connections.h"
#include "ui/win32/app_state.h"

void WindowShell::PlayAlarmSound() { ::PlayAlarmSound(); }

void WindowShell::ShowAlarmReminder(const char* text) { ShowAlarmNotice(text); }

void WindowShell::ShowUsageWarning(const char* text) { ShowUsageWarningNotice(text); }

void WindowShell::ShowOutOfSpace() {
  MessageBoxA(nullptr, "Out of space to record session", "Diagnostic Message", MB_OK);
}

void WindowShell::ShowFileProblem(const char* text, const char* caption) {
  MessageBeep(MB_ICONEXCLAMATION);
  MessageBoxA(nullptr, text, caption, MB_OK | MB_ICONEXCLAMATION);
}

// Its result is the settings' save, whose failure the save has told already.
void WindowShell::CheckAccounts() { (void)CheckUnconfiguredConnections(store_, *this); }

void WindowShell::ShowConfigureNotice(const char* text, const char* caption) {
  MessageBoxA(appWindows.mainWindow, text, caption, MB_ICONEXCLAMATION | MB_OK);
}

void WindowShell::ShowNotSetUp(const char* text, const char* caption) { MessageBoxA(nullptr, text, caption, MB_OK); }

intptr_t WindowShell::RunAccountDialog() { return ::RunAccountDialog(store_); }

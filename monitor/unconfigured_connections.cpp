#include "monitor/unconfigured_connections.h"

#include <cstdio>

#include "monitor/monitor_shell.h"
#include "storage/fixed_text.h"
#include "storage/storage.h"

UnconfiguredState unconfiguredState;

namespace {

// The questions run nested message loops, under which a session can end and call
// the check again; the inner run then only adds names and saves, so two account
// dialogs never share ConnectionToConfigure. Its questions come at the next check.
bool CheckRunning = false;

}  // namespace

void BuildConfigureNotice(char (&text)[kConfigureNoticeSize], const char* name) {
  std::snprintf(text, sizeof text, kConfigureNoticeFormat, name != nullptr ? name : "");
}

void AddLogConnectionsToAccounts(Storage& store) {
  const uint32_t count = store.sessionLog.count;
  for (uint32_t i = 0; i < count && i < store.sessionLog.records.size(); ++i) {
    const char* name = store.RecordName(i);  // nullptr unless InUse
    if (name != nullptr) store.AddAccountName(name);
  }
}

bool AskToConfigure(MonitorShell& shell, const char* name) {
  CopyFixedText(unconfiguredState.ConnectionToConfigure, name);
  char text[kConfigureNoticeSize];
  BuildConfigureNotice(text, unconfiguredState.ConnectionToConfigure);
  shell.ShowConfigureNotice(text, kConfigureNoticeCaption);
  unconfiguredState.OpenedFromNotice = 1;
  const intptr_t result = shell.RunAccountDialog();
  if (result == 0) return false;
  unconfiguredState.ConnectionToConfigure[0] = '\0';
  return true;
}

bool CheckUnconfiguredConnections(Storage& store, MonitorShell& shell) {
  AddLogConnectionsToAccounts(store);
  // While the configuration cannot be read its accounts are unknown: asking about
  // every connection would only confuse.
  if (!CheckRunning && !store.holds.Held(kConfigurationFile)) {
    CheckRunning = true;
    for (std::size_t k = 0; k < kAccountCount; ++k) {
      // Read afresh each time: the dialogs before may have changed the table.
      const AccountRecord& account = store.settings.accounts[k];
      const std::size_t length = FixedTextLength(account.connectionName, kAccountNameSize);
      // An unterminated name (a damaged file) could never be found again to be saved.
      if (length == 0 || length == kAccountNameSize || account.configured == 1) continue;
      char name[kAccountNameSize];
      CopyFixedText(name, account.connectionName);
      if (!AskToConfigure(shell, name)) shell.ShowNotSetUp(kNotSetUpText, kNotSetUpCaption);
    }
    CheckRunning = false;
  }
  return store.SaveSettings();
}

void ResetUnconfiguredState() {
  unconfiguredState = UnconfiguredState{};
  CheckRunning = false;
}

// Makes sure every connection in the log has an account entry, and asks the user
// to set up each entry that has not been set up yet. Runs at start and after each
// recorded session. The message boxes and the account dialog (IDD_ACCOUNTS) belong
// to the window layer and are reached through the MonitorShell.
#pragma once
#include <cstddef>
#include <cstdint>

#include "storage/account_record.h"

class MonitorShell;
class Storage;

constexpr std::size_t kConnectionToConfigureSize = kAccountNameSize;  // 31 characters and the NUL
constexpr std::size_t kConfigureNoticeSize = 200;

constexpr char kConfigureNoticeFormat[] =
    "Orvalen detected a connection   (- %s -) that hasn't been configured for its database.\n"
    "Best to configure this connection now";
constexpr char kConfigureNoticeCaption[] = "Orvalen Notification...";
constexpr char kNotSetUpText[] =
    "This connection was not properly set up for Orvalen's database. \nYou will be asked to do this at a later time";
constexpr char kNotSetUpCaption[] = "Orvalen Notification";

struct UnconfiguredState {
  // The connection the account dialog is opened for from a notice; emptied when that
  // dialog saves the account.
  char ConnectionToConfigure[kConnectionToConfigureSize] = {};
  // 1 while the account dialog is opened from a notice; the dialog clears it.
  uint8_t OpenedFromNotice = 0;
};
extern UnconfiguredState unconfiguredState;

// The notice text for a connection, cut to the buffer.
void BuildConfigureNotice(char (&text)[kConfigureNoticeSize], const char* name);

// Gives every connection name of the log's InUse records an account entry (while
// free entries last).
void AddLogConnectionsToAccounts(Storage& store);

// Notice, then the account dialog for name; true when the dialog saved the account.
bool AskToConfigure(MonitorShell& shell, const char* name);

// Adds the log's names, asks about each named entry not yet set up (in index
// order), and returns the result of saving the settings.
bool CheckUnconfiguredConnections(Storage& store, MonitorShell& shell);

// Back to the state of a freshly started process (tests, tools).
void ResetUnconfiguredState();

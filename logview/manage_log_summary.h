// What the Manage Log dialog shows for a double-clicked connection, and the result
// it ends with. Plain logic: the dialog only moves these into its controls.
#pragma once
#include <string>

#include "logview/logview_state.h"

class Storage;

// The usage summary of one connection (line breaks are "\n"); empty when it has no
// configured account.
std::string ManageLogSummaryText(Storage& store, const char* connection);

// Delete Entry after a Yes: every record of exactly that name becomes Deleted, its
// account entry is freed, and the log and the settings are saved. Returns the
// dialog's outcome (kRecordsDeleted when a record changed, else kLogUnchanged).
int DeleteConnectionEntries(Storage& store, const char* connection);

// Clear Entire Log after a Yes: every record becomes Deleted (the array keeps its
// length), the log and the settings are saved. Accounts are kept: the user set them
// up by hand, and a fresh log of the same connections will want them again.
// Returns kLogCleared.
int ClearEntireLog(Storage& store);

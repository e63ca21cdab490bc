// Start-up initialisation: loads or creates the configuration, installs the
// program on a first run, and loads, creates or converts the log. What needs a
// window or the system (dialogs, copies, shortcuts, registry) goes through hooks so
// the decisions run the same in the unit tests.
#pragma once
#include "storage/file_holds.h"
#include "storage/startup_hooks.h"

constexpr char kLogMissingText[] = "Your log file is missing, another one will be created";
constexpr char kLogMissingCaption[] = "Orvalen Alert !!";

// Loads or creates everything at start-up; owner (the main window) owns the
// dialogs. False only when an existing configuration file cannot be read: then the
// defaults are used in memory, the file is held (below), and the log is loaded
// as usual.
bool InitialiseStorage(void* owner);

// Storage back to the state of a freshly started process (tests, tools): the
// settings, the log and logState, the usage cache, the file holds, the card
// balance and the install and start-up hooks.
void ResetStorageState();

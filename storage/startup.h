// Start-up initialisation: loads or creates the configuration, installs the
// program on a first run, and loads, creates or converts the log. What needs a
// window or the system (dialogs, copies, shortcuts, registry) goes through hooks so
// the decisions run the same in the unit tests.
#pragma once
#include <string>

constexpr char kLogMissingText[] = "Your log file is missing, another one will be created";
constexpr char kLogMissingCaption[] = "Orvalen Alert !!";

// Every hook may be left empty; an empty hook does nothing (a missing current
// directory reads as empty text).
struct StartupHooks {
  void (*showWelcome)(void* owner) = nullptr;  // the first run's Welcome dialog, modal
  // A message box with an OK button and the exclamation icon, owned by owner.
  void (*showAlert)(void* owner, const char* text, const char* caption) = nullptr;
  void (*createProgramFolder)() = nullptr;
  void (*installFiles)() = nullptr;
  void (*createShortcuts)() = nullptr;
  void (*setAutoStart)(bool on) = nullptr;
  std::string (*currentDirectory)() = nullptr;
};

// The system's actions on Windows (all but the Welcome dialog, which the window
// layer supplies); nothing elsewhere.
StartupHooks PlatformStartupHooks();

// Starts as PlatformStartupHooks().
extern StartupHooks startupHooks;

// Loads or creates everything at start-up; owner (the main window) owns the
// dialogs. False only when an existing configuration file cannot be read: then the
// configuration stays all zero in memory, the log is not loaded, and saving either
// file is refused, so neither is overwritten with zeros or an empty log.
bool InitialiseStorage(void* owner);

// While refused, SaveSettings, SaveSettingsTo and SaveLog write nothing and
// return false: the files on disk stay as they were.
void RefuseSaves(bool refuse);
bool SavesRefused();

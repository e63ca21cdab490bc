// What start-up and the file saves need from the window layer and the system.
#pragma once
#include <string>

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

// The caption of a file problem's box, which the monitor's shell shows
// (MonitorShell::ShowFileProblem) from the notice queue.
constexpr char kFileProblemCaption[] = "Orvalen Notification";

// The system's actions on Windows (all but the Welcome dialog, which the window
// layer supplies); nothing elsewhere.
StartupHooks PlatformStartupHooks();

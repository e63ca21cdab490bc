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
  // What went wrong with one of the program's files: a plain message box without
  // an owner, caption kFileProblemCaption.
  void (*showFileProblem)(const char* text, const char* caption) = nullptr;
};

constexpr char kFileProblemCaption[] = "Orvalen Notification";
// The file's path, then the system's reason.
constexpr char kFileUnreadableFormat[] =
    "Orvalen cannot read %s (%s).\nThe file is left as it is. Your sessions are kept "
    "and saved to it once it can be read.";
constexpr char kFileNotSavedFormat[] =
    "Orvalen could not save %s (%s).\nNothing is lost while Orvalen runs: it tries "
    "again at the next save.";

// The system's actions on Windows (all but the Welcome dialog, which the window
// layer supplies); nothing elsewhere.
StartupHooks PlatformStartupHooks();

// Starts as PlatformStartupHooks().
extern StartupHooks startupHooks;

// Loads or creates everything at start-up; owner (the main window) owns the
// dialogs. False only when an existing configuration file cannot be read: then the
// defaults are used in memory, the file is held (below), and the log is loaded
// as usual.
bool InitialiseStorage(void* owner);

// The program's two files. An existing file that could not be read is held for
// the rest of the run: saving it writes nothing and returns false, so it is never
// replaced by defaults or by an empty log. A held log is read again at each save;
// once it can be read, the records on disk and the sessions recorded since are
// both kept and the hold ends.
enum StoredFile { kConfigurationFile, kLogFile };
void HoldFile(StoredFile file, bool held);
bool FileHeld(StoredFile file);

// Tells the user, once, that the file could not be read (the system's reason is
// LastFileError()), and holds it.
void ReportUnreadable(StoredFile file, const char* path);
// Every save's result comes here: a failure is told once until a save of that
// file succeeds again.
bool NoteSaveResult(StoredFile file, const char* path, bool saved);

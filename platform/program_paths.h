// Fixed places of the program's files. The running program uses the Windows
// directory and "c:\program files\Orvalen"; tests and tools point them elsewhere.
#pragma once
#include <string>

// Directory separator of the platform the core is built for.
#ifdef _WIN32
constexpr char kPathSeparator = '\\';
#else
constexpr char kPathSeparator = '/';
#endif

// Where the program installs itself, as the shortcuts, the alarm sound and the
// text report name it. (A macro as well, so fixed paths inside it are one literal.)
// Two texts keep capitals of their own because they are shown or stored as they
// are: the folder the program reads from (ProgramFolder(), "c:\program files\Orvalen")
// and the start-up registry value (kAutoStartCommand).
#define ORVALEN_INSTALLED_FOLDER "c:\\Program Files\\Orvalen"
constexpr char kInstalledFolder[] = ORVALEN_INSTALLED_FOLDER;

std::string JoinPath(const std::string& directory, const char* name);

const std::string& WindowsDirectory();
const std::string& ProgramFolder();

// Replaces the directories (empty text restores the system's own).
void SetWindowsDirectory(const std::string& directory);
void SetProgramFolder(const std::string& directory);

std::string LogFilePath();        // the current log, "Orvabook_.ovb"
std::string LegacyLogPath();      // the log of older releases, "Orvabook.ovb"

// The system's Windows directory (GetWindowsDirectoryA); "." where there is none.
std::string QuerySystemWindowsDirectory();

// The program installs itself: its files into the program folder, shortcuts in the
// Start Menu and on the desktop, and a registry value that starts it with the
// computer. Windows only. Every step ignores its failures: the program runs from
// wherever it was started.
#pragma once
#include <cstddef>

// The key that the system reads at start-up (the Run key, not RunServices).
constexpr char kAutoStartKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr char kAutoStartValueName[] = "Orvalen";
constexpr char kAutoStartCommand[] = "C:\\Program Files\\Orvalen\\Orvalen.exe";
// The value's data: the command, its NUL and zero bytes up to this size.
constexpr std::size_t kAutoStartDataSize = 101;

// Creates the program folder (an existing one is not an error).
bool CreateProgramFolder();

// Copies Orvalen.exe, ReadMe.txt, OrvalenManual.doc and Alarm.wav from the current
// directory into the program folder, overwriting older copies.
void InstallFiles();

// The Start Menu folder "Orvalen" with its three shortcuts, and the desktop one.
void CreateShortcuts();

// One shell link; returns the shell's result code (an HRESULT).
long CreateShortcut(const char* target, const char* linkFile, const char* description);

// Writes (on) or deletes (off) the autostart value "Orvalen" under
// HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Run.
bool SetAutoStart(bool on);

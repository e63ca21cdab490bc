#include <windows.h>
#include <objbase.h>
#include <shlobj.h>

#include <cstring>
#include <string>

#include "storage/win32/installation.h"
#include "platform/program_paths.h"
#include "storage/startup.h"
#include "storage/startup_hooks.h"

static_assert(sizeof(long) == sizeof(HRESULT), "CreateShortcut hands back the HRESULT as a long");

namespace {

// Source names in the current directory, copied in this order.
const char* const kInstalledFiles[] = {"Orvalen.exe", "ReadMe.txt", "OrvalenManual.doc", "Alarm.wav"};

std::string CurrentDirectory() {
  char directory[MAX_PATH + 1] = {};
  const DWORD length = GetCurrentDirectoryA(sizeof directory, directory);
  if (length == 0 || length >= sizeof directory) return std::string();
  return directory;
}

// shell32 exports SHGetSpecialFolderPathA only from the IE4 desktop update on, so
// it is looked up rather than imported: a plain Windows 95 must still load the
// program, and then gets the single-user layout under the Windows directory.
std::string ShellFolder(int csidl, const char* fallbackUnderWindows) {
  using SpecialFolderPathFn = BOOL(WINAPI*)(HWND, LPSTR, int, BOOL);
  HMODULE shell = LoadLibraryA("shell32.dll");
  if (shell != nullptr) {
    const auto query = reinterpret_cast<SpecialFolderPathFn>(
        reinterpret_cast<void*>(GetProcAddress(shell, "SHGetSpecialFolderPathA")));
    char folder[MAX_PATH + 1] = {};
    const bool found = query != nullptr && query(nullptr, folder, csidl, FALSE) && folder[0] != '\0';
    FreeLibrary(shell);
    if (found) return folder;
  }
  return WindowsDirectory() + fallbackUnderWindows;
}

void ShowAlert(void* owner, const char* text, const char* caption) {
  MessageBoxA(static_cast<HWND>(owner), text, caption, MB_OK | MB_ICONEXCLAMATION);
}

void CreateProgramFolderHook() { CreateProgramFolder(); }
void SetAutoStartHook(bool on) { SetAutoStart(on); }

}  // namespace

StartupHooks PlatformStartupHooks() {
  StartupHooks hooks;
  hooks.showAlert = ShowAlert;
  hooks.createProgramFolder = CreateProgramFolderHook;
  hooks.installFiles = InstallFiles;
  hooks.createShortcuts = CreateShortcuts;
  hooks.setAutoStart = SetAutoStartHook;
  hooks.currentDirectory = CurrentDirectory;
  return hooks;
}

bool CreateProgramFolder() {
  return CreateDirectoryA(ProgramFolder().c_str(), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS;
}

void InstallFiles() {
  const std::string source = CurrentDirectory();
  for (const char* name : kInstalledFiles) {
    CopyFileA(JoinPath(source, name).c_str(), JoinPath(ProgramFolder(), name).c_str(), FALSE);
  }
}

void CreateShortcuts() {
  const std::string folder = ShellFolder(CSIDL_PROGRAMS, "\\Start Menu\\Programs") + "\\Orvalen";
  CreateDirectoryA(folder.c_str(), nullptr);
  CreateShortcut(JoinPath(kInstalledFolder, "ReadMe.txt").c_str(), (folder + "\\ReadMe.lnk").c_str(), "ReadMe");
  CreateShortcut(JoinPath(kInstalledFolder, "OrvalenManual.doc").c_str(), (folder + "\\Manual.lnk").c_str(), "Manual");
  CreateShortcut(JoinPath(kInstalledFolder, "Orvalen.exe").c_str(), (folder + "\\Orvalen.lnk").c_str(), "Orvalen");
  const std::string desktop = ShellFolder(CSIDL_DESKTOPDIRECTORY, "\\Desktop");
  CreateShortcut(JoinPath(kInstalledFolder, "Orvalen.exe").c_str(), (desktop + "\\Orvalen.lnk").c_str(), "OrvalenDev");
}

long CreateShortcut(const char* target, const char* linkFile, const char* description) {
  const HRESULT initialised = CoInitialize(nullptr);
  IShellLinkA* link = nullptr;
  HRESULT result = CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                                    reinterpret_cast<void**>(&link));
  if (SUCCEEDED(result)) {
    link->SetPath(target);
    link->SetDescription(description);
    link->SetShowCmd(SW_SHOW);
    IPersistFile* file = nullptr;
    result = link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file));
    if (SUCCEEDED(result)) {
      WCHAR widePath[MAX_PATH + 1] = {};
      if (MultiByteToWideChar(CP_ACP, 0, linkFile, -1, widePath, MAX_PATH) == 0) widePath[0] = L'\0';
      widePath[MAX_PATH] = L'\0';
      result = file->Save(widePath, TRUE);
      file->Release();
    }
    link->Release();
  }
  // Only a successful CoInitialize (S_OK or S_FALSE) is balanced.
  if (SUCCEEDED(initialised)) CoUninitialize();
  return result;
}

bool SetAutoStart(bool on) {
  HKEY key = nullptr;
  DWORD disposition = 0;
  char emptyClass[] = "";
  if (RegCreateKeyExA(HKEY_LOCAL_MACHINE, kAutoStartKey, 0, emptyClass, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                      nullptr, &key, &disposition) != ERROR_SUCCESS) {
    return false;
  }
  if (!on) {
    // A value that is not there is not an error.
    RegDeleteValueA(key, kAutoStartValueName);
    RegCloseKey(key);
    return true;
  }
  BYTE data[kAutoStartDataSize] = {};
  static_assert(sizeof kAutoStartCommand <= sizeof data, "the command fits the value");
  std::memcpy(data, kAutoStartCommand, sizeof kAutoStartCommand);
  const LONG set = RegSetValueExA(key, kAutoStartValueName, 0, REG_SZ, data, sizeof data);
  RegCloseKey(key);
  return set == ERROR_SUCCESS;
}

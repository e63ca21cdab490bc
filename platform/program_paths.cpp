#include "platform/program_paths.h"

namespace {
#ifdef _WIN32
const char kSystemProgramFolder[] = "c:\\program files\\Orvalen";
#else
const char kSystemProgramFolder[] = ".";
#endif

std::string& WindowsDirectoryOverride() {
  static std::string directory;
  return directory;
}

std::string& ProgramFolderPath() {
  static std::string folder = kSystemProgramFolder;
  return folder;
}
}  // namespace

std::string JoinPath(const std::string& directory, const char* name) {
  std::string path = directory;
  if (!path.empty() && path.back() != kPathSeparator) path += kPathSeparator;
  return path + name;
}

const std::string& WindowsDirectory() {
  std::string& directory = WindowsDirectoryOverride();
  if (directory.empty()) directory = QuerySystemWindowsDirectory();
  return directory;
}

const std::string& ProgramFolder() { return ProgramFolderPath(); }

void SetWindowsDirectory(const std::string& directory) { WindowsDirectoryOverride() = directory; }

void SetProgramFolder(const std::string& directory) {
  ProgramFolderPath() = directory.empty() ? std::string(kSystemProgramFolder) : directory;
}

std::string LogFilePath() { return JoinPath(ProgramFolder(), "Orvabook_.ovb"); }
std::string LegacyLogPath() { return JoinPath(ProgramFolder(), "Orvabook.ovb"); }

#include <windows.h>

#include "platform/program_paths.h"

std::string QuerySystemWindowsDirectory() {
  char directory[MAX_PATH + 1] = {};
  const UINT length = GetWindowsDirectoryA(directory, sizeof directory);
  if (length == 0 || length >= sizeof directory) return "C:\\WINDOWS";
  return directory;
}

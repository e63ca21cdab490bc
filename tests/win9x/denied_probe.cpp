// A program check_imports.sh must refuse: it imports a function Windows 95/98/ME
// lack and a wide function they only stub. The win9x_check_refuses test runs the
// check on it, so a check that has stopped finding anything fails.
#include <windows.h>

extern "C" __declspec(dllimport) ULONGLONG WINAPI GetTickCount64(void);

int main() {
  char path[MAX_PATH];
  return static_cast<int>(GetTickCount64() % 2) + static_cast<int>(GetModuleFileNameW(nullptr, nullptr, 0)) +
         static_cast<int>(GetModuleFileNameA(nullptr, path, MAX_PATH) % 2);
}

// Finding the windows and controls of the program under test, and talking to
// them without ever hanging on a busy target.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "options.h"

namespace driver {

constexpr DWORD kPollMs = 50;
constexpr UINT kSendTimeoutMs = 2000;
constexpr DWORD kDefaultTimeoutMs = 10000;

// Which top-level window a command means: caption (exact), class (as Windows
// compares class names: case-insensitive) and/or a handle printed earlier.
struct Selector {
  std::optional<std::string> title;
  std::optional<std::string> className;
  HWND handle = nullptr;

  std::string Describe() const;
};

// --title/--class/--hwnd; defaultClass applies when --class is absent.
Selector SelectorFrom(const Options& options, const char* defaultClass = nullptr);

// Top-level windows (owned ones included) matching the selector, visible ones
// first, then message-only windows, which can never be visible.
std::vector<HWND> FindTopLevel(const Selector& selector, bool visibleOnly);

// Every window under top, at any depth: property-sheet pages nest their controls.
std::vector<HWND> Descendants(HWND top);

// The control with this id under top, preferring a visible one (hidden sheet
// pages reuse ids) and then a direct child. nullptr when there is none.
HWND FindControl(HWND top, long long id);

std::string ClassName(HWND window);
std::string Caption(HWND window);  // without sending a message to the owner
std::string HexHandle(HWND window);
bool ClassIs(HWND window, const char* name);  // case-insensitive, as Windows does
std::string DescribeVisibleWindows();         // for failure messages

// SendMessageTimeoutA with SMTO_ABORTIFHUNG; false when the target did not answer.
bool TrySend(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
// The same, failing the command when the target does not answer.
LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// WM_GETTEXT of any window, any length; nullopt when the target did not answer.
std::optional<std::string> TryReadText(HWND window);
std::string ReadText(HWND window);

// Calls attempt() until it returns true or timeoutMs have passed; always at
// least once. Returns whether attempt() succeeded.
template <typename Attempt>
bool Poll(DWORD timeoutMs, Attempt attempt) {
  const DWORD start = GetTickCount();  // unsigned difference survives the wrap
  for (;;) {
    if (attempt()) return true;
    if (GetTickCount() - start >= timeoutMs) return false;
    Sleep(kPollMs);
  }
}

}  // namespace driver

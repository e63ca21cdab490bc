#include "lookup.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace driver {

namespace {

BOOL CALLBACK CollectWindow(HWND window, LPARAM list) {
  reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

bool Matches(HWND window, const Selector& selector) {
  if (selector.handle != nullptr && window != selector.handle) return false;
  if (selector.className && !ClassIs(window, selector.className->c_str())) return false;
  if (selector.title && Caption(window) != *selector.title) return false;
  return true;
}

// Dialog templates keep ids in 16 bits, so IDC_STATIC (-1) reads back as 0xFFFF;
// a script may write either.
bool IdMatches(HWND window, long long wanted) {
  const long long id = GetDlgCtrlID(window);
  if (id == wanted) return true;
  const bool wanted16 = wanted >= -1 && wanted <= 0xFFFF;
  const bool id16 = id >= -1 && id <= 0xFFFF;
  return wanted16 && id16 && (wanted & 0xFFFF) == (id & 0xFFFF);
}

std::string Quote(const std::string& text) {
  std::string quoted = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

}  // namespace

std::string Selector::Describe() const {
  std::string description;
  auto add = [&description](const std::string& part) {
    if (!description.empty()) description += ", ";
    description += part;
  };
  if (handle != nullptr) add("handle " + HexHandle(handle));
  if (className) add("class " + Quote(*className));
  if (title) add("title " + Quote(*title));
  return description;
}

Selector SelectorFrom(const Options& options, const char* defaultClass) {
  Selector selector;
  selector.title = options.Str("title");
  selector.className = options.Str("class");
  if (!selector.className && defaultClass != nullptr) selector.className = defaultClass;
  if (auto text = options.Str("hwnd")) {
    auto value = ParseNumber(*text);
    if (!value) value = ParseNumber("0x" + *text);  // as printed, or bare hex digits
    if (!value || *value == 0) UsageError("--hwnd wants a window handle, got '" + *text + "'");
    selector.handle = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(*value));
  }
  if (!selector.title && !selector.className && selector.handle == nullptr) {
    UsageError("say which window: --title, --class or --hwnd");
  }
  return selector;
}

std::vector<HWND> FindTopLevel(const Selector& selector, bool visibleOnly) {
  std::vector<HWND> all;
  EnumWindows(CollectWindow, reinterpret_cast<LPARAM>(&all));
  std::vector<HWND> visible;
  std::vector<HWND> hidden;
  for (HWND window : all) {
    if (!Matches(window, selector)) continue;
    (IsWindowVisible(window) ? visible : hidden).push_back(window);
  }
  if (!visibleOnly) {
    visible.insert(visible.end(), hidden.begin(), hidden.end());
    // A hidden main window may also be created message-only; EnumWindows skips those.
    for (HWND window = FindWindowExA(HWND_MESSAGE, nullptr, nullptr, nullptr); window != nullptr;
         window = FindWindowExA(HWND_MESSAGE, window, nullptr, nullptr)) {
      if (Matches(window, selector)) visible.push_back(window);
    }
  }
  return visible;
}

std::vector<HWND> Descendants(HWND top) {
  std::vector<HWND> all;
  EnumChildWindows(top, CollectWindow, reinterpret_cast<LPARAM>(&all));
  return all;
}

HWND FindControl(HWND top, long long id) {
  HWND best = nullptr;
  int bestRank = -1;
  for (HWND window : Descendants(top)) {
    if (!IdMatches(window, id)) continue;
    const int rank = (IsWindowVisible(window) ? 2 : 0) + (GetParent(window) == top ? 1 : 0);
    if (rank > bestRank) {
      best = window;
      bestRank = rank;
    }
  }
  return best;
}

std::string ClassName(HWND window) {
  char name[256] = {};
  GetClassNameA(window, name, sizeof name);
  return name;
}

std::string Caption(HWND window) {
  // For another process's window this reads the stored caption and sends
  // nothing, so a hung target cannot stall the enumeration.
  const int length = GetWindowTextLengthA(window);
  if (length <= 0) return {};
  std::string caption(static_cast<size_t>(length) + 1, '\0');
  const int copied = GetWindowTextA(window, &caption[0], length + 1);
  caption.resize(copied > 0 ? static_cast<size_t>(copied) : 0);
  return caption;
}

std::string HexHandle(HWND window) {
  char text[32];
  std::snprintf(text, sizeof text, "0x%llx",
                static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(window)));
  return text;
}

bool ClassIs(HWND window, const char* name) { return lstrcmpiA(ClassName(window).c_str(), name) == 0; }

std::string DescribeVisibleWindows() {
  std::vector<HWND> all;
  EnumWindows(CollectWindow, reinterpret_cast<LPARAM>(&all));
  std::string list;
  for (HWND window : all) {
    if (!IsWindowVisible(window)) continue;
    list += "\n  " + HexHandle(window) + " class " + Quote(ClassName(window)) + " title " +
            Quote(Caption(window));
  }
  return list.empty() ? " none" : list;
}

bool TrySend(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
  DWORD_PTR answer = 0;
  if (SendMessageTimeoutA(window, message, wParam, lParam, SMTO_ABORTIFHUNG, kSendTimeoutMs, &answer) == 0) {
    return false;
  }
  if (result != nullptr) *result = static_cast<LRESULT>(answer);
  return true;
}

LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT result = 0;
  if (!TrySend(window, message, wParam, lParam, &result)) {
    char text[160];
    std::snprintf(text, sizeof text, "window %s did not answer message 0x%x within %u ms (error %lu)",
                  HexHandle(window).c_str(), message, kSendTimeoutMs, GetLastError());
    Fail(text);
  }
  return result;
}

std::optional<std::string> TryReadText(HWND window) {
  LRESULT length = 0;
  if (!TrySend(window, WM_GETTEXTLENGTH, 0, 0, &length)) return std::nullopt;
  if (length < 0) length = 0;
  // The length may overstate (multi-byte text); the copy count is what counts.
  std::string text(static_cast<size_t>(length) + 1, '\0');
  LRESULT copied = 0;
  if (!TrySend(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(&text[0]), &copied)) {
    return std::nullopt;
  }
  if (copied < 0) copied = 0;
  if (static_cast<size_t>(copied) >= text.size()) copied = static_cast<LRESULT>(text.size()) - 1;
  text.resize(static_cast<size_t>(copied));
  return text;
}

std::string ReadText(HWND window) {
  auto text = TryReadText(window);
  if (!text) {
    Fail("window " + HexHandle(window) + " did not answer WM_GETTEXT within " +
         std::to_string(kSendTimeoutMs) + " ms");
  }
  return *text;
}

}  // namespace driver

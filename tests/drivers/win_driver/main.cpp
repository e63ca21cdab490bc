// orvalen_driver: drives the program's windows for the end-to-end tests. Run once
// per check, in the same Wine prefix as the program:
//
//   orvalen_driver wait-window --title "Orvalen"
//   orvalen_driver answer-box --title Orvalen --contains "Hang up" --button yes
//
// The result goes to stdout (UTF-8); exit 0 on success, 1 when the check fails or
// times out, 2 for a wrong command line, with the reason on stderr. README.md
// lists the commands.
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#include <shellapi.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr UINT kSendTimeoutMs = 2000;

struct Failure {
  int exitCode;
  std::string message;
};
[[noreturn]] void Fail(const std::string& message) { throw Failure{1, message}; }
[[noreturn]] void UsageError(const std::string& message) { throw Failure{2, message}; }

// --- Options: "--name value" pairs, and the one bare flag --any-visibility ---

std::map<std::string, std::string> options;

std::optional<long long> ParseNumber(const std::string& text) {
  if (text.empty()) return std::nullopt;
  char* end = nullptr;
  const long long value = text[0] == '-' ? std::strtoll(text.c_str(), &end, 0)
                                         : static_cast<long long>(std::strtoull(text.c_str(), &end, 0));
  if (*end != '\0') return std::nullopt;
  return value;
}

std::optional<std::string> Str(const char* name) {
  auto it = options.find(name);
  return it == options.end() ? std::nullopt : std::optional<std::string>(it->second);
}
std::string RequiredStr(const char* name) {
  auto value = Str(name);
  if (!value) UsageError(std::string("missing --") + name);
  return *value;
}
std::optional<long long> Int(const char* name) {
  auto text = Str(name);
  if (!text) return std::nullopt;
  auto value = ParseNumber(*text);
  if (!value) UsageError(std::string("--") + name + " wants a number, got '" + *text + "'");
  return value;
}
long long RequiredInt(const char* name) {
  RequiredStr(name);
  return *Int(name);
}
bool AnyVisibility() { return options.count("any-visibility") != 0; }
DWORD Timeout() { return static_cast<DWORD>(Int("timeout-ms").value_or(10000)); }

// Message numbers by name too: --msg WM_COMMAND, --msg WM_APP+1, and
// registered:NAME, the message RegisterWindowMessageA gives for NAME.
long long MessageValue(const char* option, long long fallback) {
  auto text = Str(option);
  if (!text) return fallback;
  if (auto number = ParseNumber(*text)) return *number;
  if (text->rfind("registered:", 0) == 0) return RegisterWindowMessageA(text->c_str() + 11);
  static const std::map<std::string, long long> kNames = {
      {"WM_CLOSE", WM_CLOSE},       {"WM_COMMAND", WM_COMMAND},       {"WM_USER", WM_USER},
      {"WM_APP", WM_APP},           {"WM_KEYDOWN", WM_KEYDOWN},       {"VK_TAB", VK_TAB},
      {"WM_ENDSESSION", WM_ENDSESSION}, {"WM_QUERYENDSESSION", WM_QUERYENDSESSION},
      {"WM_LBUTTONDBLCLK", WM_LBUTTONDBLCLK}, {"WM_RBUTTONDOWN", WM_RBUTTONDOWN}};
  const size_t plus = text->find('+');
  auto named = kNames.find(text->substr(0, plus));
  auto offset = plus == std::string::npos ? std::optional<long long>(0) : ParseNumber(text->substr(plus + 1));
  if (named == kNames.end() || !offset) UsageError("--" + std::string(option) + ": unknown value '" + *text + "'");
  return named->second + *offset;
}

// --- Windows -----------------------------------------------------------------

std::string ClassName(HWND window) {
  char name[256] = {};
  GetClassNameA(window, name, sizeof name);
  return name;
}
bool ClassIs(HWND window, const char* name) { return lstrcmpiA(ClassName(window).c_str(), name) == 0; }

// The stored caption, read without a message, so a hung target cannot stall us.
std::string Caption(HWND window) {
  char caption[1024] = {};
  GetWindowTextA(window, caption, sizeof caption);
  return caption;
}

std::string Hex(HWND window) {
  char text[32];
  std::snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(window)));
  return text;
}

std::string Quoted(const std::string& text) {
  std::string out = "\"";
  for (char c : text.substr(0, 200)) out += c == '\n' ? std::string("\\n") : c == '"' ? std::string("\\\"") : std::string(1, c);
  return out + "\"";
}

BOOL CALLBACK Collect(HWND window, LPARAM list) {
  reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}
std::vector<HWND> TopLevel() {
  std::vector<HWND> all;
  EnumWindows(Collect, reinterpret_cast<LPARAM>(&all));
  return all;
}
std::vector<HWND> Descendants(HWND top) {
  std::vector<HWND> all;
  EnumChildWindows(top, Collect, reinterpret_cast<LPARAM>(&all));
  return all;
}

std::string VisibleWindows() {
  std::string list;
  for (HWND window : TopLevel()) {
    if (IsWindowVisible(window)) list += "\n  " + Hex(window) + " " + Quoted(ClassName(window)) + " " + Quoted(Caption(window));
  }
  return "; visible top-level windows:" + (list.empty() ? std::string(" none") : list);
}

// The top-level windows (owned ones included) with --title (exact) and/or --class
// (without case, as Windows compares), visible ones first; with hidden ones and
// message-only ones last unless visibleOnly.
std::vector<HWND> FindTop(bool visibleOnly, const char* defaultClass = nullptr) {
  const auto title = Str("title");
  const auto className = Str("class") ? Str("class") : defaultClass ? std::optional<std::string>(defaultClass) : std::nullopt;
  if (!title && !className) UsageError("say which window: --title or --class");
  auto matches = [&](HWND w) { return (!title || Caption(w) == *title) && (!className || ClassIs(w, className->c_str())); };
  std::vector<HWND> visible, hidden;
  for (HWND window : TopLevel()) {
    if (matches(window)) (IsWindowVisible(window) ? visible : hidden).push_back(window);
  }
  if (visibleOnly) return visible;
  visible.insert(visible.end(), hidden.begin(), hidden.end());
  for (HWND w = FindWindowExA(HWND_MESSAGE, nullptr, nullptr, nullptr); w; w = FindWindowExA(HWND_MESSAGE, w, nullptr, nullptr)) {
    if (matches(w)) visible.push_back(w);
  }
  return visible;
}

// The control with this id at any depth (property-sheet pages nest theirs), a
// visible one first (hidden pages reuse ids), then a direct child. Dialog ids
// are 16 bits: -1 and 0xFFFF are the same.
HWND FindControl(HWND top, long long id) {
  HWND best = nullptr;
  int bestRank = -1;
  for (HWND window : Descendants(top)) {
    if ((GetDlgCtrlID(window) & 0xFFFF) != (id & 0xFFFF)) continue;
    const int rank = (IsWindowVisible(window) ? 2 : 0) + (GetParent(window) == top ? 1 : 0);
    if (rank > bestRank) best = window, bestRank = rank;
  }
  return best;
}

// Calls attempt() every 50 ms until it succeeds or the timeout has passed.
bool Poll(const std::function<bool()>& attempt) {
  const DWORD start = GetTickCount(), timeout = Timeout();
  for (;;) {
    if (attempt()) return true;
    if (GetTickCount() - start >= timeout) return false;
    Sleep(50);
  }
}

bool TrySend(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
  DWORD_PTR answer = 0;
  if (!SendMessageTimeoutA(window, message, wParam, lParam, SMTO_ABORTIFHUNG, kSendTimeoutMs, &answer)) return false;
  if (result) *result = static_cast<LRESULT>(answer);
  return true;
}
LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT result = 0;
  if (!TrySend(window, message, wParam, lParam, &result)) Fail("window " + Hex(window) + " did not answer");
  return result;
}
void Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (!PostMessageA(window, message, wParam, lParam)) Fail("PostMessage failed: error " + std::to_string(GetLastError()));
}

std::optional<std::string> TryReadText(HWND window) {
  LRESULT length = 0, copied = 0;
  if (!TrySend(window, WM_GETTEXTLENGTH, 0, 0, &length)) return std::nullopt;
  std::string text(static_cast<size_t>(length < 0 ? 0 : length) + 1, '\0');
  if (!TrySend(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(&text[0]), &copied)) return std::nullopt;
  text.resize(static_cast<size_t>(copied < 0 ? 0 : std::min<LRESULT>(copied, static_cast<LRESULT>(text.size()) - 1)));
  return text;
}
std::string ReadText(HWND window) {
  auto text = TryReadText(window);
  if (!text) Fail("window " + Hex(window) + " did not answer WM_GETTEXT");
  return *text;
}

// ANSI code page to UTF-8 for the scripts.
std::string Utf8(const std::string& ansi) {
  if (ansi.empty()) return ansi;
  std::wstring wide(ansi.size(), L'\0');
  wide.resize(static_cast<size_t>(MultiByteToWideChar(CP_ACP, 0, ansi.data(), static_cast<int>(ansi.size()), &wide[0], static_cast<int>(wide.size()))));
  std::string utf8(wide.size() * 3, '\0');
  utf8.resize(static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), &utf8[0], static_cast<int>(utf8.size()), nullptr, nullptr)));
  return utf8;
}
void PrintLine(const std::string& text) { std::printf("%s\n", Utf8(text).c_str()); }

// The window (and with --id its control); with usable, it must also be visible
// and enabled, with its top-level window enabled (no modal box over it), as for
// a person to use it.
struct Target {
  HWND top = nullptr, control = nullptr;
  HWND Window() const { return control ? control : top; }
};
Target WaitTarget(bool needId, bool usable = false) {
  const auto id = Int("id");
  if (needId && !id) UsageError("missing --id");
  Target target;
  std::string reason;
  const bool found = Poll([&] {
    const auto tops = FindTop(false);
    reason = "no window like that";
    for (HWND top : tops) {
      target = {top, id ? FindControl(top, *id) : nullptr};
      if (id && !target.control) {
        reason = "window " + Hex(top) + " has no control " + std::to_string(*id);
        continue;
      }
      if (!usable) return true;
      if (!IsWindowVisible(target.Window()) || !IsWindowEnabled(target.Window()) || !IsWindowEnabled(top)) {
        reason = Hex(target.Window()) + " is hidden or disabled (a modal box open?)";
        continue;
      }
      return true;
    }
    return false;
  });
  if (!found) Fail(reason + VisibleWindows());
  return target;
}

// --- List boxes and combo boxes: one protocol under two sets of numbers -------

struct ListProtocol {
  UINT count, textLength, text, setCurSel;
};
const ListProtocol& ProtocolOf(HWND control) {
  static const ListProtocol kList = {LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT, LB_SETCURSEL};
  static const ListProtocol kCombo = {CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT, CB_SETCURSEL};
  if (ClassIs(control, "ComboBox")) return kCombo;
  if (ClassIs(control, "ListBox") || ClassIs(control, "ComboLBox")) return kList;
  Fail("control " + Hex(control) + " is a " + ClassName(control) + ", not a list");
}
LRESULT ItemCount(HWND control) { return Send(control, ProtocolOf(control).count, 0, 0); }

// Read with the wide messages: Wine answers a cross-process LB_GETTEXT sent
// through the ANSI API in UTF-16 anyway.
std::string ItemText(HWND control, LRESULT index) {
  const ListProtocol& p = ProtocolOf(control);
  DWORD_PTR length = 0, copied = 0;
  if (!SendMessageTimeoutW(control, p.textLength, static_cast<WPARAM>(index), 0, SMTO_ABORTIFHUNG, kSendTimeoutMs, &length) ||
      static_cast<LRESULT>(length) < 0) {
    Fail("no item " + std::to_string(index) + " in " + Hex(control));
  }
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  SendMessageTimeoutW(control, p.text, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&text[0]), SMTO_ABORTIFHUNG,
                      kSendTimeoutMs, &copied);
  text.resize(std::min<size_t>(static_cast<size_t>(length), static_cast<LRESULT>(copied) < 0 ? 0 : copied));
  std::string ansi(text.size() * 2, '\0');
  ansi.resize(static_cast<size_t>(WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), &ansi[0],
                                                       static_cast<int>(ansi.size()), nullptr, nullptr)));
  return ansi;
}

// Selects as a click would, then tells the parent, as the control would: dialogs
// react to the notification, not to the message.
HWND SelectItem(long long index, WORD notification) {
  const HWND control = WaitTarget(true, true).control;
  if (index < -1 || index >= ItemCount(control)) Fail("index " + std::to_string(index) + " out of range");
  const LONG style = GetWindowLongA(control, GWL_STYLE);
  if (!ClassIs(control, "ComboBox") && (style & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL))) {
    Send(control, LB_SETSEL, FALSE, -1);
    if (index >= 0) Send(control, LB_SETSEL, TRUE, static_cast<LPARAM>(index));
  } else {
    Send(control, ProtocolOf(control).setCurSel, static_cast<WPARAM>(index), 0);
  }
  const WORD id = static_cast<WORD>(GetDlgCtrlID(control));
  Post(GetParent(control), WM_COMMAND, MAKEWPARAM(id, LBN_SELCHANGE), reinterpret_cast<LPARAM>(control));
  if (notification != LBN_SELCHANGE) Post(GetParent(control), WM_COMMAND, MAKEWPARAM(id, notification), reinterpret_cast<LPARAM>(control));
  PrintLine(std::to_string(index) + "\t" + (index >= 0 ? ItemText(control, static_cast<LRESULT>(index)) : ""));
  return control;
}

// --- Message boxes ---------------------------------------------------------------

std::string BoxText(HWND box) {
  HWND text = FindControl(box, 0xFFFF);
  if (text && ClassIs(text, "Static")) {
    if (auto value = TryReadText(text)) return *value;
  }
  for (HWND child : Descendants(box)) {
    auto value = ClassIs(child, "Static") ? TryReadText(child) : std::nullopt;
    if (value && !value->empty()) return *value;
  }
  return {};
}

// A visible box (class #32770 unless --class) whose text holds --contains.
HWND WaitBox(std::string* text) {
  const auto contains = Str("contains");
  HWND box = nullptr;
  if (!Poll([&] {
        for (HWND candidate : FindTop(!AnyVisibility(), "#32770")) {
          *text = BoxText(candidate);
          if (!contains || text->find(*contains) != std::string::npos) return (box = candidate) != nullptr;
        }
        return false;
      })) {
    Fail("no box like that" + (contains ? " with text containing " + Quoted(*contains) : "") + VisibleWindows());
  }
  return box;
}

std::string StateLine(HWND window) {
  LRESULT checked = 0;
  if (ClassIs(window, "Button")) TrySend(window, BM_GETCHECK, 0, 0, &checked);
  return "enabled=" + std::to_string(IsWindowEnabled(window) ? 1 : 0) + " visible=" +
         std::to_string(IsWindowVisible(window) ? 1 : 0) + " checked=" + std::to_string(checked);
}

std::vector<long long> IdList() {
  std::vector<long long> ids;
  std::string list = RequiredStr("ids") + ",";
  for (size_t from = 0, comma; (comma = list.find(',', from)) != std::string::npos; from = comma + 1) {
    auto id = ParseNumber(list.substr(from, comma - from));
    if (!id) UsageError("--ids wants numbers separated by commas");
    ids.push_back(*id);
  }
  return ids;
}

bool IsRadio(HWND window) {
  const LONG type = GetWindowLongA(window, GWL_STYLE) & 0x0F;
  return ClassIs(window, "Button") && (type == BS_RADIOBUTTON || type == BS_AUTORADIOBUTTON);
}

// --- The commands ------------------------------------------------------------------

const std::map<std::string, std::function<void()>> kCommands = {
    {"wait-window",
     [] {
       HWND found = nullptr;
       if (!Poll([&] {
             auto windows = FindTop(!AnyVisibility());
             return (found = windows.empty() ? nullptr : windows[0]) != nullptr;
           })) {
         Fail("no window like that" + VisibleWindows());
       }
       PrintLine(Hex(found));
     }},
    {"wait-gone",
     [] {
       if (!Poll([] { return FindTop(!AnyVisibility()).empty(); })) Fail("the window is still there");
       PrintLine("gone");
     }},
    {"text", [] { PrintLine(ReadText(WaitTarget(false).Window())); }},
    {"wait-text",
     [] {
       const auto equals = Str("equals"), contains = Str("contains");
       if (equals.has_value() == contains.has_value()) UsageError("give one of --equals or --contains");
       std::optional<std::string> last;
       if (!Poll([&] {
             const auto tops = FindTop(false);
             const auto id = Int("id");
             for (HWND top : tops) {
               HWND window = id ? FindControl(top, *id) : top;
               if (window && (last = TryReadText(window))) break;
             }
             return last && (equals ? *last == *equals : last->find(*contains) != std::string::npos);
           })) {
         Fail("text is " + (last ? Quoted(*last) : std::string("not there")) + ", wanted " +
              Quoted(equals ? *equals : *contains));
       }
       PrintLine(*last);
     }},
    {"list",
     [] {
       const HWND control = WaitTarget(true).control;
       for (LRESULT i = 0, n = ItemCount(control); i < n; ++i) PrintLine(ItemText(control, i));
     }},
    {"item",  // a negative index counts from the end
     [] {
       const HWND control = WaitTarget(true).control;
       const LRESULT count = ItemCount(control);
       long long index = RequiredInt("index");
       if (index < 0) index += count;
       if (index < 0 || index >= count) Fail("index out of range: " + std::to_string(count) + " items");
       PrintLine(ItemText(control, static_cast<LRESULT>(index)));
     }},
    {"list-count", [] { PrintLine(std::to_string(ItemCount(WaitTarget(true).control))); }},
    {"state", [] { PrintLine(StateLine(WaitTarget(false).Window())); }},
    {"states",
     [] {
       const HWND top = WaitTarget(false).top;
       for (long long id : IdList()) {
         const HWND control = FindControl(top, id);
         PrintLine(std::to_string(id) + " " + (control ? StateLine(control) : "missing"));
       }
     }},
    {"texts",
     [] {
       const HWND top = WaitTarget(false).top;
       std::string line;
       const std::vector<long long> ids = IdList();
       for (size_t i = 0; i < ids.size(); ++i) {
         const HWND control = FindControl(top, ids[i]);
         if (!control) Fail("no control with id " + std::to_string(ids[i]));
         line += (i == 0 ? "" : Str("separator").value_or("|")) + ReadText(control);
       }
       PrintLine(line);
     }},
    {"wait-state",
     [] {
       const auto enabled = Int("enabled"), visible = Int("visible"), checked = Int("checked");
       std::string last;
       if (!Poll([&] {
             const HWND window = WaitTarget(false).Window();
             last = StateLine(window);
             return (!enabled || last.find("enabled=" + std::to_string(*enabled)) != std::string::npos) &&
                    (!visible || last.find("visible=" + std::to_string(*visible)) != std::string::npos) &&
                    (!checked || last.find("checked=" + std::to_string(*checked)) != std::string::npos);
           })) {
         Fail("state is " + last);
       }
       PrintLine(last);
     }},
    // Posted, so that a click that opens a modal box cannot hold us up.
    {"click",
     [] {
       Post(WaitTarget(true, true).control, BM_CLICK, 0, 0);
       PrintLine("ok");
     }},
    // WM_COMMAND(id, --code) to the control's parent, or with lParam 0 to the
    // window when it has no such control (menu ids).
    {"command",
     [] {
       const long long id = RequiredInt("id");
       std::vector<HWND> tops;
       if (!Poll([&] { return !(tops = FindTop(false)).empty(); })) Fail("no window like that" + VisibleWindows());
       HWND control = nullptr;
       for (HWND top : tops) {
         if ((control = FindControl(top, id))) break;
       }
       Post(control ? GetParent(control) : tops[0], WM_COMMAND, MAKEWPARAM(id, Int("code").value_or(0)),
            reinterpret_cast<LPARAM>(control));
       PrintLine("ok");
     }},
    {"post",
     [] {
       const auto message = static_cast<UINT>(MessageValue("msg", -1));
       if (message == static_cast<UINT>(-1)) UsageError("missing --msg");
       Post(WaitTarget(false).Window(), message, static_cast<WPARAM>(MessageValue("wparam", 0)),
            static_cast<LPARAM>(MessageValue("lparam", 0)));
       PrintLine("ok");
     }},
    // Presses a button of a message box and waits for the box to close.
    {"answer-box",
     [] {
       static const std::map<std::string, int> kButtons = {{"ok", IDOK},       {"cancel", IDCANCEL}, {"abort", IDABORT},
                                                           {"retry", IDRETRY}, {"ignore", IDIGNORE}, {"yes", IDYES},
                                                           {"no", IDNO}};
       const auto button = kButtons.find(RequiredStr("button"));
       if (button == kButtons.end()) UsageError("--button wants yes, no, ok, cancel, abort, retry or ignore");
       std::string text;
       const HWND box = WaitBox(&text);
       const HWND pressed = GetDlgItem(box, button->second);
       if (!pressed) Fail("box " + Hex(box) + " has no " + button->first + " button");
       Post(box, WM_COMMAND, MAKEWPARAM(button->second, BN_CLICKED), reinterpret_cast<LPARAM>(pressed));
       if (!Poll([box] { return !IsWindow(box) || !IsWindowVisible(box); })) Fail("the box is still open");
       PrintLine(text);
     }},
    {"box-text",
     [] {
       std::string text;
       WaitBox(&text);
       PrintLine(text);
     }},
    // The control with the keyboard focus and the active window of the window's
    // thread, and the desktop's foreground window.
    {"focus",
     [] {
       const HWND window = WaitTarget(false).Window();
       GUITHREADINFO info = {};
       info.cbSize = sizeof info;
       if (!GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info)) {
         Fail("GetGUIThreadInfo failed: error " + std::to_string(GetLastError()));
       }
       PrintLine("focus=" + (info.hwndFocus ? std::to_string(GetDlgCtrlID(info.hwndFocus)) : std::string("none")) +
                 " active=" + Hex(info.hwndActive) + " foreground=" + Hex(GetForegroundWindow()));
     }},
    // Whether the shell has the window's notification icon --icon N, after taking
    // it away with --delete as a restarting taskbar loses it.
    {"tray-icon",
     [] {
       NOTIFYICONDATAA data = {};
       data.cbSize = NOTIFYICONDATAA_V1_SIZE;
       data.hWnd = WaitTarget(false).top;
       data.uID = static_cast<UINT>(RequiredInt("icon"));
       if (options.count("delete") != 0) Shell_NotifyIconA(NIM_DELETE, &data);
       PrintLine(Shell_NotifyIconA(NIM_MODIFY, &data) ? "present" : "absent");
     }},
    // Holds a file open as a virus scanner would (reading, read sharing only) until
    // the --release-when file appears; prints "held" once open. Run it in the background.
    {"hold-file",
     [] {
       const std::string path = RequiredStr("path"), release = RequiredStr("release-when");
       HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
       if (file == INVALID_HANDLE_VALUE) Fail("cannot open " + path + ": error " + std::to_string(GetLastError()));
       PrintLine("held");
       std::fflush(stdout);
       while (GetFileAttributesA(release.c_str()) == INVALID_FILE_ATTRIBUTES) Sleep(50);
       CloseHandle(file);
     }},
    {"windows",  // every top-level window, message-only ones last
     [] {
       std::vector<HWND> all = TopLevel();
       const size_t topLevel = all.size();
       for (HWND w = FindWindowExA(HWND_MESSAGE, nullptr, nullptr, nullptr); w; w = FindWindowExA(HWND_MESSAGE, w, nullptr, nullptr)) {
         all.push_back(w);
       }
       for (size_t i = 0; i < all.size(); ++i) {
         const HWND window = all[i];
         DWORD pid = 0;
         GetWindowThreadProcessId(window, &pid);
         HWND owner = GetWindow(window, GW_OWNER);
         PrintLine(Hex(window) + " pid=" + std::to_string(pid) + " visible=" + std::to_string(IsWindowVisible(window) ? 1 : 0) +
                   " class=" + Quoted(ClassName(window)) + " title=" + Quoted(Caption(window)) +
                   (owner ? " owner=" + Hex(owner) : "") + (i >= topLevel ? " message-only" : ""));
       }
     }},
    {"children",
     [] {
       const HWND top = WaitTarget(false).top;
       for (HWND child : Descendants(top)) {
         auto text = TryReadText(child);
         PrintLine(Hex(child) + " id=" + std::to_string(GetDlgCtrlID(child)) + " class=" + Quoted(ClassName(child)) +
                   " " + StateLine(child) + " text=" + (text ? Quoted(*text) : "(no answer)"));
       }
     }},
    // User actions wait for the control to be usable; edits notify EN_CHANGE themselves.
    {"set-text",
     [] {
       const std::string text = RequiredStr("text");
       if (Send(WaitTarget(true, true).control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str())) <= 0) {
         Fail("the control refused the text");
       }
       PrintLine("ok");
     }},
    {"select", [] { SelectItem(RequiredInt("index"), LBN_SELCHANGE); }},
    {"double-click-list", [] { SelectItem(RequiredInt("index"), LBN_DBLCLK); }},
    // Checking a radio button unchecks the others of its group, as a click does.
    {"check",
     [] {
       const long long value = RequiredInt("value");
       const HWND control = WaitTarget(true, true).control;
       const HWND parent = GetParent(control);
       if (value == 1 && IsRadio(control)) {
         for (HWND other = GetNextDlgGroupItem(parent, control, FALSE); other && other != control;
              other = GetNextDlgGroupItem(parent, other, FALSE)) {
           if (IsRadio(other)) Send(other, BM_SETCHECK, BST_UNCHECKED, 0);
         }
       }
       Send(control, BM_SETCHECK, static_cast<WPARAM>(value), 0);
       Post(parent, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), BN_CLICKED), reinterpret_cast<LPARAM>(control));
       PrintLine("ok");
     }},
};

const char* const kKnownOptions[] = {"title", "class", "id", "ids", "timeout-ms", "equals", "contains", "index",
                                     "enabled", "visible", "checked", "code", "msg", "wparam", "lparam", "button",
                                     "text", "value", "separator", "any-visibility", "icon", "delete", "path",
                                     "release-when"};

}  // namespace

int main(int argc, char** argv) {
  _setmode(_fileno(stdout), _O_BINARY);  // bash reads the output: no CR before each LF
  try {
    auto command = argc > 1 ? kCommands.find(argv[1]) : kCommands.end();
    if (command == kCommands.end()) UsageError("usage: orvalen_driver COMMAND [--OPTION VALUE]...; see README.md");
    for (int i = 2; i < argc; ++i) {
      const std::string name = std::string(argv[i]).substr(argv[i][0] == '-' && argv[i][1] == '-' ? 2 : 0);
      bool known = false;
      for (const char* option : kKnownOptions) known = known || name == option;
      if (!known || std::string(argv[i]).rfind("--", 0) != 0) UsageError("unknown option '" + std::string(argv[i]) + "'");
      if (name == "any-visibility" || name == "delete") {
        options[name] = "";
      } else if (i + 1 < argc) {
        options[name] = argv[++i];  // the value may be empty or start with "--"
      } else {
        UsageError("option --" + name + " needs a value");
      }
    }
    command->second();
  } catch (const Failure& failure) {
    std::fflush(stdout);
    std::fprintf(stderr, "orvalen_driver %s: %s\n", argc > 1 ? argv[1] : "", Utf8(failure.message).c_str());
    return failure.exitCode;
  }
  std::fflush(stdout);
  return 0;
}

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
#include <sstream>
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

// --- Options: "--name value" pairs, and bare flags (--gone, --any-visibility, ...) ---

std::map<std::string, std::string> options;

std::optional<long long> ParseNumber(const std::string& text) {
  char* end = nullptr;
  const long long value = std::strtoll(text.c_str(), &end, 0);
  return text.empty() || *end != '\0' ? std::nullopt : std::optional<long long>(value);
}
std::optional<std::string> Str(const char* name) {
  auto it = options.find(name);
  return it == options.end() ? std::nullopt : std::optional<std::string>(it->second);
}
std::string RequiredStr(const char* name) {
  if (!Str(name)) UsageError(std::string("missing --") + name);
  return *Str(name);
}
std::optional<long long> Int(const char* name) {
  const auto text = Str(name);
  const auto value = text ? ParseNumber(*text) : std::nullopt;
  if (text && !value) UsageError(std::string("--") + name + " wants a number, got '" + *text + "'");
  return value;
}
long long RequiredInt(const char* name) { return RequiredStr(name), *Int(name); }
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
      {"VK_ESCAPE", VK_ESCAPE},     {"WM_ENDSESSION", WM_ENDSESSION}, {"WM_QUERYENDSESSION", WM_QUERYENDSESSION},
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
  return GetClassNameA(window, name, sizeof name) ? name : "";
}
bool ClassIs(HWND window, const char* name) { return lstrcmpiA(ClassName(window).c_str(), name) == 0; }

// The stored caption, read without a message, so a hung target cannot stall us.
std::string Caption(HWND window) {
  char caption[1024] = {};
  return GetWindowTextA(window, caption, sizeof caption) ? caption : "";
}
std::string Hex(HWND window) {
  char text[32];
  return std::snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(window))), text;
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
// The top-level windows, with the message-only ones after them when asked.
std::vector<HWND> TopLevel(bool messageOnly = false) {
  std::vector<HWND> all;
  EnumWindows(Collect, reinterpret_cast<LPARAM>(&all));
  for (HWND w = nullptr; messageOnly && (w = FindWindowExA(HWND_MESSAGE, w, nullptr, nullptr));) all.push_back(w);
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
  for (HWND window : TopLevel(!visibleOnly)) {
    if (matches(window)) (IsWindowVisible(window) ? visible : hidden).push_back(window);
  }
  if (!visibleOnly) visible.insert(visible.end(), hidden.begin(), hidden.end());
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
  std::string reason = "no window like that";
  if (!Poll([&] {
        for (HWND top : FindTop(false)) {
          target = {top, id ? FindControl(top, *id) : nullptr};
          if (id && !target.control) {
            reason = "window " + Hex(top) + " has no control " + std::to_string(*id);
          } else if (usable && (!IsWindowVisible(target.Window()) || !IsWindowEnabled(target.Window()) || !IsWindowEnabled(top))) {
            reason = Hex(target.Window()) + " is hidden or disabled (a modal box open?)";
          } else {
            return true;
          }
        }
        return false;
      })) {
    Fail(reason + VisibleWindows());
  }
  return target;
}

// --- List boxes and combo boxes: one protocol under two sets of numbers -------

bool IsCombo(HWND control) {
  if (!ClassIs(control, "ComboBox") && !ClassIs(control, "ListBox") && !ClassIs(control, "ComboLBox")) {
    Fail("control " + Hex(control) + " is a " + ClassName(control) + ", not a list");
  }
  return ClassIs(control, "ComboBox");
}
LRESULT ItemCount(HWND control) { return Send(control, IsCombo(control) ? CB_GETCOUNT : LB_GETCOUNT, 0, 0); }

// Read with the wide messages: Wine answers a cross-process LB_GETTEXT sent
// through the ANSI API in UTF-16 anyway.
std::string ItemText(HWND control, LRESULT index) {
  const bool combo = IsCombo(control);
  DWORD_PTR length = 0, copied = 0;
  if (!SendMessageTimeoutW(control, combo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, static_cast<WPARAM>(index), 0, SMTO_ABORTIFHUNG,
                           kSendTimeoutMs, &length) || static_cast<LRESULT>(length) < 0) {
    Fail("no item " + std::to_string(index) + " in " + Hex(control));
  }
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  SendMessageTimeoutW(control, combo ? CB_GETLBTEXT : LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&text[0]),
                      SMTO_ABORTIFHUNG, kSendTimeoutMs, &copied);
  text.resize(std::min<size_t>(static_cast<size_t>(length), static_cast<LRESULT>(copied) < 0 ? 0 : copied));
  std::string ansi(text.size() * 2, '\0');
  ansi.resize(static_cast<size_t>(WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), &ansi[0],
                                                       static_cast<int>(ansi.size()), nullptr, nullptr)));
  return ansi;
}

// Selects item --index as a click would (a double click with --double), then
// tells the parent, as the control would: dialogs react to the notification.
void SelectItem() {
  const long long index = RequiredInt("index");
  const HWND control = WaitTarget(true, true).control;
  if (index < -1 || index >= ItemCount(control)) Fail("index " + std::to_string(index) + " out of range");
  Send(control, IsCombo(control) ? CB_SETCURSEL : LB_SETCURSEL, static_cast<WPARAM>(index), 0);
  const auto notify = [control](WORD code) {
    Post(GetParent(control), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), code), reinterpret_cast<LPARAM>(control));
  };
  notify(LBN_SELCHANGE);
  if (options.count("double")) notify(LBN_DBLCLK);
  PrintLine(std::to_string(index) + "\t" + (index >= 0 ? ItemText(control, static_cast<LRESULT>(index)) : ""));
}

// --- Message boxes ---------------------------------------------------------------

// The message: the static with id 0xFFFF, else the first static with a text.
std::string BoxText(HWND box) {
  const HWND text = FindControl(box, 0xFFFF);
  if (auto value = text && ClassIs(text, "Static") ? TryReadText(text) : std::nullopt) return *value;
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
  std::stringstream list(RequiredStr("ids"));
  for (std::string id; std::getline(list, id, ',');) {
    if (!ParseNumber(id)) UsageError("--ids wants numbers separated by commas");
    ids.push_back(*ParseNumber(id));
  }
  return ids;
}

bool IsRadio(HWND window) {
  const LONG type = GetWindowLongA(window, GWL_STYLE) & 0x0F;
  return ClassIs(window, "Button") && (type == BS_RADIOBUTTON || type == BS_AUTORADIOBUTTON);
}

// --- The commands ------------------------------------------------------------------

// The text of the control --id (or of the window), or with --ids of several
// controls joined by "|"; with --equals or --contains, once it matches.
void TextCommand() {
  const auto equals = Str("equals"), contains = Str("contains");
  std::optional<std::string> last;
  if (!Poll([&] {
        last.reset();
        for (HWND top : FindTop(false)) {
          if (!Str("ids")) {
            const HWND window = Int("id") ? FindControl(top, *Int("id")) : top;
            if (window && (last = TryReadText(window))) break;
            continue;
          }
          std::string joined;
          const std::vector<long long> ids = IdList();
          for (size_t i = 0; i < ids.size(); ++i) {
            const HWND control = FindControl(top, ids[i]);
            auto text = control ? TryReadText(control) : std::nullopt;
            if (!text) Fail("no control with id " + std::to_string(ids[i]));
            joined += (i == 0 ? "" : "|") + *text;
          }
          last = joined;
          break;
        }
        return last && (!equals || *last == *equals) && (!contains || last->find(*contains) != std::string::npos);
      })) {
    Fail("text is " + (last ? Quoted(*last) : std::string("not there")) + ", wanted " + Quoted(equals ? *equals : contains.value_or("")));
  }
  PrintLine(*last);
}

// "enabled=E visible=V checked=C" of the control --id (or the window), once it
// has the --enabled, --visible, --checked asked for; with --ids one line per id.
void StateCommand() {
  std::string last;
  const auto wanted = [&](const char* field) {
    return !Int(field) || last.find(std::string(field) + "=" + std::to_string(*Int(field))) != std::string::npos;
  };
  if (!Poll([&] {
        last.clear();
        const Target target = WaitTarget(false);
        if (!Str("ids")) last = StateLine(target.Window());
        for (long long id : Str("ids") ? IdList() : std::vector<long long>()) {
          const HWND control = FindControl(target.top, id);
          last += (last.empty() ? "" : "\n") + std::to_string(id) + " " + (control ? StateLine(control) : "missing");
        }
        return wanted("enabled") && wanted("visible") && wanted("checked");
      })) {
    Fail("state is " + last);
  }
  PrintLine(last);
}

const std::map<std::string, std::function<void()>> kCommands = {
    // A (visible) window like that, or with --gone none left.
    {"wait-window",
     [] {
       const bool gone = options.count("gone") != 0;
       std::vector<HWND> found;
       if (!Poll([&] { return (found = FindTop(!AnyVisibility())).empty() == gone; })) {
         Fail(gone ? "the window is still there" : "no window like that" + VisibleWindows());
       }
       PrintLine(gone ? "gone" : Hex(found[0]));
     }},
    {"text", TextCommand},
    {"state", StateCommand},
    // The items of a list or combo box; with --index one (negative: from the end),
    // with --count their number.
    {"list",
     [] {
       const HWND control = WaitTarget(true).control;
       const LRESULT count = ItemCount(control);
       if (options.count("count")) return PrintLine(std::to_string(count));
       long long index = Int("index").value_or(0);
       if (index < 0) index += count;
       if (Int("index") && (index < 0 || index >= count)) Fail("index out of range: " + std::to_string(count) + " items");
       for (LRESULT i = Int("index") ? index : 0; i < (Int("index") ? index + 1 : count); ++i) PrintLine(ItemText(control, i));
     }},
    // Posted, so that a click that opens a modal box cannot hold us up.
    {"click",
     [] {
       Post(WaitTarget(true, true).control, BM_CLICK, 0, 0);
       PrintLine("ok");
     }},
    // WM_COMMAND(id) to the control's parent, or with lParam 0 to the window when
    // it has no such control (menu ids).
    {"command",
     [] {
       const long long id = RequiredInt("id");
       std::vector<HWND> tops;
       if (!Poll([&] { return !(tops = FindTop(false)).empty(); })) Fail("no window like that" + VisibleWindows());
       HWND control = nullptr;
       for (size_t i = 0; i < tops.size() && !control; ++i) control = FindControl(tops[i], id);
       Post(control ? GetParent(control) : tops[0], WM_COMMAND, static_cast<WPARAM>(id & 0xFFFF), reinterpret_cast<LPARAM>(control));
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
    // The text of a message box; with --button, once that button is pressed and
    // the box has closed.
    {"answer-box",
     [] {
       static const std::map<std::string, int> kButtons = {{"ok", IDOK}, {"cancel", IDCANCEL}, {"yes", IDYES}, {"no", IDNO}};
       const auto button = kButtons.find(Str("button").value_or("ok"));
       if (button == kButtons.end()) UsageError("--button wants yes, no, ok or cancel");
       std::string text;
       const HWND box = WaitBox(&text);
       if (Str("button")) {
         const HWND pressed = GetDlgItem(box, button->second);
         if (!pressed) Fail("box " + Hex(box) + " has no " + button->first + " button");
         Post(box, WM_COMMAND, MAKEWPARAM(button->second, BN_CLICKED), reinterpret_cast<LPARAM>(pressed));
         if (!Poll([box] { return !IsWindow(box) || !IsWindowVisible(box); })) Fail("the box is still open");
       }
       PrintLine(text);
     }},
    // The control with the keyboard focus in the window's thread, and the desktop's
    // foreground window.
    {"focus",
     [] {
       GUITHREADINFO info = {};
       info.cbSize = sizeof info;
       if (!GetGUIThreadInfo(GetWindowThreadProcessId(WaitTarget(false).Window(), nullptr), &info)) Fail("GetGUIThreadInfo failed");
       PrintLine("focus=" + (info.hwndFocus ? std::to_string(GetDlgCtrlID(info.hwndFocus)) : std::string("none")) +
                 " foreground=" + Hex(GetForegroundWindow()));
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
       const std::vector<HWND> all = TopLevel(true);
       for (size_t i = 0, topLevel = TopLevel().size(); i < all.size(); ++i) {
         DWORD pid = 0;
         GetWindowThreadProcessId(all[i], &pid);
         const HWND owner = GetWindow(all[i], GW_OWNER);
         PrintLine(Hex(all[i]) + " pid=" + std::to_string(pid) + " visible=" + std::to_string(IsWindowVisible(all[i]) ? 1 : 0) +
                   " class=" + Quoted(ClassName(all[i])) + " title=" + Quoted(Caption(all[i])) +
                   (owner ? " owner=" + Hex(owner) : "") + (i >= topLevel ? " message-only" : ""));
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
    {"select", SelectItem},
    // Checking a radio button unchecks the others of its group, as a click does.
    {"check",
     [] {
       const long long value = RequiredInt("value");
       const HWND control = WaitTarget(true, true).control, parent = GetParent(control);
       for (HWND other = GetNextDlgGroupItem(parent, control, FALSE); value == 1 && IsRadio(control) && other && other != control;
            other = GetNextDlgGroupItem(parent, other, FALSE)) {
         if (IsRadio(other)) Send(other, BM_SETCHECK, BST_UNCHECKED, 0);
       }
       Send(control, BM_SETCHECK, static_cast<WPARAM>(value), 0);
       Post(parent, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), BN_CLICKED), reinterpret_cast<LPARAM>(control));
       PrintLine("ok");
     }},
};

}  // namespace

int main(int argc, char** argv) {
  _setmode(_fileno(stdout), _O_BINARY);  // bash reads the output: no CR before each LF
  static const std::string kValues = " title class id ids timeout-ms equals contains index enabled visible checked msg wparam "
                                     "lparam button text value icon path release-when ";
  static const std::string kFlags = " any-visibility gone count double delete ";
  try {
    auto command = argc > 1 ? kCommands.find(argv[1]) : kCommands.end();
    if (command == kCommands.end()) UsageError("usage: orvalen_driver COMMAND [--OPTION VALUE]...; see README.md");
    for (int i = 2; i < argc; ++i) {
      const std::string name = std::string(argv[i]).rfind("--", 0) == 0 ? argv[i] + 2 : "?";
      if (kFlags.find(" " + name + " ") != std::string::npos) {
        options[name] = "";
      } else if (kValues.find(" " + name + " ") == std::string::npos || i + 1 == argc) {
        UsageError("unknown option, or one without its value: '" + std::string(argv[i]) + "'");
      } else {
        options[name] = argv[++i];  // the value may be empty or start with "--"
      }
    }
    command->second();
  } catch (const Failure& failure) {
    std::fflush(stdout);
    std::fprintf(stderr, "orvalen_driver %s: %s\n", argv[1], Utf8(failure.message).c_str());
    return failure.exitCode;
  }
  std::fflush(stdout);
  return 0;
}

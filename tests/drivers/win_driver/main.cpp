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
std::optional<std::string> Str(const char* name, bool required = false) {
  const auto it = options.find(name);
  if (it != options.end()) return it->second;
  if (required) UsageError(std::string("missing --") + name);
  return std::nullopt;
}
std::optional<long long> Int(const char* name, bool required = false) {
  const auto text = Str(name, required);
  const auto value = text ? ParseNumber(*text) : std::nullopt;
  if (text && !value) UsageError(std::string("--") + name + " wants a number, got '" + *text + "'");
  return value;
}

// Message numbers by name too: --msg WM_COMMAND, --msg WM_APP+1, and
// registered:NAME, the message RegisterWindowMessageA gives for NAME.
long long MessageValue(const char* option, bool required = false) {
  const std::string text = Str(option, required).value_or("0");
  if (auto number = ParseNumber(text)) return *number;
  if (text.rfind("registered:", 0) == 0) return RegisterWindowMessageA(text.c_str() + 11);
  static const std::map<std::string, long long> kNames = {
      {"WM_CLOSE", WM_CLOSE},       {"WM_COMMAND", WM_COMMAND},       {"WM_USER", WM_USER},
      {"WM_APP", WM_APP},           {"WM_KEYDOWN", WM_KEYDOWN},       {"VK_TAB", VK_TAB},
      {"VK_ESCAPE", VK_ESCAPE},     {"WM_ENDSESSION", WM_ENDSESSION}, {"WM_QUERYENDSESSION", WM_QUERYENDSESSION},
      {"WM_LBUTTONDBLCLK", WM_LBUTTONDBLCLK}, {"WM_RBUTTONDOWN", WM_RBUTTONDOWN}};
  const size_t plus = text.find('+');
  const auto named = kNames.find(text.substr(0, plus));
  const auto offset = plus == std::string::npos ? std::optional<long long>(0) : ParseNumber(text.substr(plus + 1));
  if (named == kNames.end() || !offset) UsageError("--" + std::string(option) + ": unknown value '" + text + "'");
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
std::vector<HWND> TopLevel(bool messageOnly) {
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

// The top-level windows (owned ones included) with --title (exact) and/or --class
// (without case, as Windows compares), visible ones first; with hidden ones and
// message-only ones last unless visibleOnly.
std::vector<HWND> FindTop(bool visibleOnly) {
  const auto title = Str("title"), className = Str("class");
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

// Calls attempt() every 50 ms until it succeeds; fails with why() once --timeout-ms
// (default 10000, 0 to look once) has passed.
void WaitFor(const std::function<bool()>& attempt, const std::function<std::string()>& why) {
  const DWORD start = GetTickCount(), timeout = static_cast<DWORD>(Int("timeout-ms").value_or(10000));
  while (!attempt()) {
    if (GetTickCount() - start >= timeout) Fail(why());
    Sleep(50);
  }
}

// The answer, or none when the window does not answer within 2 s (hung or busy).
std::optional<LRESULT> TrySend(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0, bool wide = false) {
  DWORD_PTR answer = 0;
  const auto send = wide ? SendMessageTimeoutW : SendMessageTimeoutA;
  if (!send(window, message, wParam, lParam, SMTO_ABORTIFHUNG, kSendTimeoutMs, &answer)) return std::nullopt;
  return static_cast<LRESULT>(answer);
}
LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  const auto answer = TrySend(window, message, wParam, lParam);
  if (!answer) Fail("window " + Hex(window) + " did not answer");
  return *answer;
}
void Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (!PostMessageA(window, message, wParam, lParam)) Fail("PostMessage failed: error " + std::to_string(GetLastError()));
}

// A window's text, or with the list messages the item at index; none when the window
// does not answer or has no such item. Read with the wide messages, as Wine answers a
// cross-process LB_GETTEXT sent through the ANSI API in UTF-16 anyway.
std::optional<std::string> TryRead(HWND window, UINT lengthMessage = WM_GETTEXTLENGTH, UINT textMessage = WM_GETTEXT,
                                   WPARAM index = 0) {
  const auto length = TrySend(window, lengthMessage, index, 0, true);
  if (!length || *length < 0) return std::nullopt;
  std::wstring text(static_cast<size_t>(*length) + 1, L'\0');
  const WPARAM wParam = textMessage == WM_GETTEXT ? text.size() : index;
  const auto copied = TrySend(window, textMessage, wParam, reinterpret_cast<LPARAM>(&text[0]), true);
  if (!copied) return std::nullopt;
  text.resize(static_cast<size_t>(std::clamp<LRESULT>(*copied, 0, *length)));
  std::string ansi(text.size() * 2, '\0');
  ansi.resize(static_cast<size_t>(WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), &ansi[0],
                                                      static_cast<int>(ansi.size()), nullptr, nullptr)));
  return ansi;
}
// ANSI code page to UTF-8 for the scripts.
std::string Utf8(const std::string& ansi) {
  std::wstring wide(ansi.size(), L'\0');
  wide.resize(static_cast<size_t>(MultiByteToWideChar(CP_ACP, 0, ansi.data(), static_cast<int>(ansi.size()), &wide[0], static_cast<int>(wide.size()))));
  std::string utf8(wide.size() * 3, '\0');
  utf8.resize(static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), &utf8[0], static_cast<int>(utf8.size()), nullptr, nullptr)));
  return utf8;
}
void PrintLine(const std::string& text) { std::printf("%s\n", Utf8(text).c_str()); }

// The window, or its control --id, once there is one. A usable control is visible and
// enabled, with its top-level window enabled (no modal box over it), as for a person.
enum Need { kWindowOrControl, kControl, kUsableControl };
HWND WaitWindow(Need need) {
  const auto id = Int("id", need != kWindowOrControl);
  HWND found = nullptr;
  WaitFor(
      [&] {
        for (HWND top : FindTop(false)) {
          found = id ? FindControl(top, *id) : top;
          const bool usable = IsWindowVisible(found) && IsWindowEnabled(found) && IsWindowEnabled(top);
          if (found && (need != kUsableControl || usable)) return true;
        }
        return false;
      },
      [&] { return found ? Hex(found) + " is hidden or disabled (a modal box?)" : "no window or control like that"; });
  return found;
}

// What describe() says of the control --id (or of the window), or of each of --ids
// joined by separator, once accept() takes it. Labelled: "ID " before each of --ids,
// and "missing" for one the window lacks.
std::string Observe(const std::function<std::optional<std::string>(HWND)>& describe, const std::string& separator,
                    bool labelled, const std::function<bool(const std::string&)>& accept) {
  std::vector<long long> ids;
  std::stringstream list(Str("ids").value_or(""));
  for (std::string id; std::getline(list, id, ',');) {
    if (!ParseNumber(id)) UsageError("--ids wants numbers separated by commas");
    ids.push_back(*ParseNumber(id));
  }
  labelled = labelled && !ids.empty();
  if (ids.empty() && Int("id")) ids.push_back(*Int("id"));
  const auto read = [&](HWND top) -> std::optional<std::string> {
    if (ids.empty()) return describe(top);
    std::string joined;
    for (size_t i = 0; i < ids.size(); ++i) {
      const HWND control = FindControl(top, ids[i]);
      const auto text = control ? describe(control) : std::nullopt;
      if (!text && !labelled) return std::nullopt;
      joined += (i == 0 ? "" : separator) + (labelled ? std::to_string(ids[i]) + " " : "") + text.value_or("missing");
    }
    return joined;
  };
  std::optional<std::string> last;
  WaitFor(
      [&] {
        last.reset();
        for (HWND top : FindTop(false)) {
          if ((last = read(top))) break;
        }
        return last && accept(*last);
      },
      [&] { return last ? "got " + Quoted(*last) : std::string("no window or control like that"); });
  return *last;
}

std::optional<std::string> StateLine(HWND window) {
  const LRESULT checked = ClassIs(window, "Button") ? TrySend(window, BM_GETCHECK).value_or(0) : 0;
  return "enabled=" + std::to_string(IsWindowEnabled(window) ? 1 : 0) + " visible=" +
         std::to_string(IsWindowVisible(window) ? 1 : 0) + " checked=" + std::to_string(checked);
}

// --- List boxes and combo boxes: one protocol under two sets of numbers -------

struct ListMessages {
  UINT count, textLength, text, select;
};
const ListMessages& ListOf(HWND control) {
  static const ListMessages kListBox = {LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT, LB_SETCURSEL};
  static const ListMessages kComboBox = {CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT, CB_SETCURSEL};
  if (ClassIs(control, "ComboBox")) return kComboBox;
  if (ClassIs(control, "ListBox") || ClassIs(control, "ComboLBox")) return kListBox;
  Fail("control " + Hex(control) + " is a " + ClassName(control) + ", not a list");
}
std::string ItemText(HWND control, LRESULT index) {
  const auto text = TryRead(control, ListOf(control).textLength, ListOf(control).text, static_cast<WPARAM>(index));
  if (!text) Fail("no item " + std::to_string(index) + " in " + Hex(control));
  return *text;
}

// A message box's text: its first static with a text (the icon's has none).
std::string BoxText(HWND box) {
  for (HWND child : Descendants(box)) {
    const auto text = ClassIs(child, "Static") ? TryRead(child) : std::nullopt;
    if (text && !text->empty()) return *text;
  }
  return {};
}

// Radio buttons say so, as the dialog manager asks them.
bool IsRadio(HWND window) { return (Send(window, WM_GETDLGCODE) & DLGC_RADIOBUTTON) != 0; }

// --- The commands ------------------------------------------------------------------

// A (visible) window like that, or with --gone none left.
void WaitForWindow() {
  const bool gone = Str("gone").has_value();
  std::vector<HWND> found;
  WaitFor([&] { return (found = FindTop(!Str("any-visibility"))).empty() == gone; },
          [&] { return gone ? "the window is still there" : "no window like that"; });
  PrintLine(gone ? "gone" : Hex(found[0]));
}

// The text of the control --id (or of the window), or with --ids of several
// controls joined by "|"; with --equals or --contains, once it matches.
void Text() {
  const auto equals = Str("equals"), contains = Str("contains");
  PrintLine(Observe([](HWND window) { return TryRead(window); }, "|", false, [&](const std::string& text) {
    return (!equals || text == *equals) && (!contains || text.find(*contains) != std::string::npos);
  }));
}

// "enabled=E visible=V checked=C" of the control --id (or the window), once it
// has the --enabled, --visible, --checked asked for; with --ids one line per id.
void State() {
  const auto wanted = [](const std::string& state, const char* field) {
    return !Int(field) || state.find(std::string(field) + "=" + std::to_string(*Int(field))) != std::string::npos;
  };
  PrintLine(Observe(StateLine, "\n", true, [&](const std::string& state) {
    return wanted(state, "enabled") && wanted(state, "visible") && wanted(state, "checked");
  }));
}

// The items of a list or combo box; with --index one (negative: from the end),
// with --count their number.
void List() {
  const HWND control = WaitWindow(kControl);
  const LRESULT count = Send(control, ListOf(control).count);
  if (Str("count")) return PrintLine(std::to_string(count));
  long long index = Int("index").value_or(0);
  if (index < 0) index += count;
  if (Int("index") && (index < 0 || index >= count)) Fail("index out of range: " + std::to_string(count) + " items");
  for (LRESULT i = Int("index") ? index : 0; i < (Int("index") ? index + 1 : count); ++i) PrintLine(ItemText(control, i));
}

// Posted, so that a click that opens a modal box cannot hold us up.
void Click() {
  Post(WaitWindow(kUsableControl), BM_CLICK, 0, 0);
  PrintLine("ok");
}

// WM_COMMAND(--id) with lParam 0 to the window: a menu item's id, not a control's.
void Command() {
  const long long id = *Int("id", true);
  options.erase("id");
  Post(WaitWindow(kWindowOrControl), WM_COMMAND, static_cast<WPARAM>(id & 0xFFFF), 0);
  PrintLine("ok");
}

void PostRaw() {
  const auto message = static_cast<UINT>(MessageValue("msg", true));
  Post(WaitWindow(kWindowOrControl), message, static_cast<WPARAM>(MessageValue("wparam")),
       static_cast<LPARAM>(MessageValue("lparam")));
  PrintLine("ok");
}

// The text of a message box (class #32770 unless --class) holding --contains; with
// --button, once that button is pressed and the box has closed.
void AnswerBox() {
  static const std::map<std::string, int> kButtons = {{"ok", IDOK}, {"cancel", IDCANCEL}, {"yes", IDYES}, {"no", IDNO}};
  const auto button = kButtons.find(Str("button").value_or("ok"));
  if (button == kButtons.end()) UsageError("--button wants yes, no, ok or cancel");
  const auto contains = Str("contains");
  options.emplace("class", "#32770");
  HWND box = nullptr;
  std::string text;
  WaitFor(
      [&] {
        for (HWND candidate : FindTop(true)) {
          text = BoxText(candidate);
          if (!contains || text.find(*contains) != std::string::npos) return (box = candidate) != nullptr;
        }
        return false;
      },
      [&] { return "no box like that" + (contains ? " with text containing " + Quoted(*contains) : ""); });
  if (Str("button")) {
    const HWND pressed = GetDlgItem(box, button->second);
    if (!pressed) Fail("box " + Hex(box) + " has no " + button->first + " button");
    Post(box, WM_COMMAND, MAKEWPARAM(button->second, BN_CLICKED), reinterpret_cast<LPARAM>(pressed));
    WaitFor([box] { return !IsWindow(box) || !IsWindowVisible(box); }, [] { return "the box is still open"; });
  }
  PrintLine(text);
}

// The control with the keyboard focus in the window's thread, and the desktop's
// foreground window.
void Focus() {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  if (!GetGUIThreadInfo(GetWindowThreadProcessId(WaitWindow(kWindowOrControl), nullptr), &info)) Fail("GetGUIThreadInfo failed");
  PrintLine("focus=" + (info.hwndFocus ? std::to_string(GetDlgCtrlID(info.hwndFocus)) : std::string("none")) +
            " foreground=" + Hex(GetForegroundWindow()));
}

// Whether the shell has the window's notification icon --icon N, after taking
// it away with --delete as a restarting taskbar loses it.
void TrayIcon() {
  NOTIFYICONDATAA data = {};
  data.cbSize = NOTIFYICONDATAA_V1_SIZE;
  data.hWnd = WaitWindow(kWindowOrControl);
  data.uID = static_cast<UINT>(*Int("icon", true));
  if (Str("delete")) Shell_NotifyIconA(NIM_DELETE, &data);
  PrintLine(Shell_NotifyIconA(NIM_MODIFY, &data) ? "present" : "absent");
}

// Holds a file open as a virus scanner would (reading, read sharing only) until
// the --release-when file appears; prints "held" once open. Run it in the background.
void HoldFile() {
  const std::string path = *Str("path", true), release = *Str("release-when", true);
  HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) Fail("cannot open " + path + ": error " + std::to_string(GetLastError()));
  PrintLine("held");
  std::fflush(stdout);
  while (GetFileAttributesA(release.c_str()) == INVALID_FILE_ATTRIBUTES) Sleep(50);  // exiting closes the file
}

// every top-level window, message-only ones last
void Windows() {
  const std::vector<HWND> all = TopLevel(true);
  for (size_t i = 0, topLevel = TopLevel(false).size(); i < all.size(); ++i) {
    DWORD pid = 0;
    GetWindowThreadProcessId(all[i], &pid);
    const HWND owner = GetWindow(all[i], GW_OWNER);
    PrintLine(Hex(all[i]) + " pid=" + std::to_string(pid) + " visible=" + std::to_string(IsWindowVisible(all[i]) ? 1 : 0) +
              " class=" + Quoted(ClassName(all[i])) + " title=" + Quoted(Caption(all[i])) +
              (owner ? " owner=" + Hex(owner) : "") + (i >= topLevel ? " message-only" : ""));
  }
}

// User actions wait for the control to be usable; edits notify EN_CHANGE themselves.
void SetText() {
  const std::string text = *Str("text", true);
  const HWND control = WaitWindow(kUsableControl);
  if (Send(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str())) <= 0) Fail("the control refused the text");
  PrintLine("ok");
}

// Selects item --index as a click would (a double click with --double), then
// tells the parent, as the control would: dialogs react to the notification.
void Select() {
  const long long index = *Int("index", true);
  const HWND control = WaitWindow(kUsableControl);
  if (index < -1 || index >= Send(control, ListOf(control).count)) Fail("no item " + std::to_string(index));
  Send(control, ListOf(control).select, static_cast<WPARAM>(index));
  const auto notify = [control](WORD code) {
    Post(GetParent(control), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), code), reinterpret_cast<LPARAM>(control));
  };
  notify(LBN_SELCHANGE);
  if (Str("double")) notify(LBN_DBLCLK);
  PrintLine(std::to_string(index) + "\t" + (index >= 0 ? ItemText(control, static_cast<LRESULT>(index)) : ""));
}

// Checking a radio button unchecks the others of its group, as a click does.
void Check() {
  const long long value = *Int("value", true);
  const HWND control = WaitWindow(kUsableControl), parent = GetParent(control);
  for (HWND other = GetNextDlgGroupItem(parent, control, FALSE); value == 1 && IsRadio(control) && other && other != control;
       other = GetNextDlgGroupItem(parent, other, FALSE)) {
    if (IsRadio(other)) Send(other, BM_SETCHECK, BST_UNCHECKED);
  }
  Send(control, BM_SETCHECK, static_cast<WPARAM>(value));
  Post(parent, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), BN_CLICKED), reinterpret_cast<LPARAM>(control));
  PrintLine("ok");
}
const std::map<std::string, std::function<void()>> kCommands = {
    {"wait-window", WaitForWindow}, {"text", Text}, {"state", State}, {"list", List}, {"click", Click},
    {"command", Command}, {"post", PostRaw}, {"answer-box", AnswerBox}, {"focus", Focus}, {"tray-icon", TrayIcon},
    {"hold-file", HoldFile}, {"windows", Windows}, {"set-text", SetText}, {"select", Select}, {"check", Check},
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
      const bool flag = kFlags.find(" " + name + " ") != std::string::npos;
      if (!flag && (kValues.find(" " + name + " ") == std::string::npos || i + 1 == argc)) {
        UsageError("unknown option, or one without its value: '" + std::string(argv[i]) + "'");
      }
      options[name] = flag ? "" : argv[++i];  // a value may be empty or start with "--"
    }
    command->second();
  } catch (const Failure& failure) {
    std::fflush(stdout);
    std::fprintf(stderr, "orvalen_driver %s: %s\n", argv[1], Utf8(failure.message).c_str());
    return failure.exitCode;
  }
  return 0;
}

#include "commands.h"

#include <windows.h>
#include <shellapi.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>

#include "lookup.h"

namespace driver {

namespace {

bool rawOutput = false;

void Print(const std::string& text) {
  const std::string out = ToOutput(text);
  std::fwrite(out.data(), 1, out.size(), stdout);
}

void PrintLine(const std::string& text) {
  Print(text);
  std::fputc('\n', stdout);
}

// One line per window in listings: control characters spelled out, long texts cut.
std::string Escaped(const std::string& text, size_t limit = 200) {
  std::string out = "\"";
  for (size_t i = 0; i < text.size(); ++i) {
    if (i == limit) {
      out += "...";
      break;
    }
    const char c = text[i];
    if (c == '\n') {
      out += "\\n";
    } else if (c == '\r') {
      out += "\\r";
    } else if (c == '\t') {
      out += "\\t";
    } else if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else {
      out += c;
    }
  }
  return out + "\"";
}

std::string Lower(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

DWORD TimeoutOf(const Options& options) {
  auto value = options.Int("timeout-ms");
  if (!value) return kDefaultTimeoutMs;
  if (*value < 0 || *value > 3600000) UsageError("--timeout-ms wants 0..3600000");
  return static_cast<DWORD>(*value);
}

std::string Waited(DWORD timeoutMs) { return " (waited " + std::to_string(timeoutMs) + " ms)"; }

// Message numbers and notification codes by name, so scripts can say
// --msg WM_COMMAND or --msg WM_USER+10 as well as numbers.
struct Named {
  const char* name;
  long long value;
};
const Named kNames[] = {
    {"WM_NULL", 0x0000},          {"WM_CLOSE", 0x0010},        {"WM_QUERYENDSESSION", 0x0011},
    {"WM_QUIT", 0x0012},          {"WM_ENDSESSION", 0x0016},   {"WM_COMMAND", 0x0111},
    {"WM_SYSCOMMAND", 0x0112},    {"WM_TIMER", 0x0113},        {"WM_MOUSEMOVE", 0x0200},
    {"WM_LBUTTONDOWN", 0x0201},   {"WM_LBUTTONUP", 0x0202},    {"WM_LBUTTONDBLCLK", 0x0203},
    {"WM_RBUTTONDOWN", 0x0204},   {"WM_RBUTTONUP", 0x0205},    {"WM_RBUTTONDBLCLK", 0x0206},
    {"WM_USER", 0x0400},          {"WM_APP", 0x8000},          {"SC_CLOSE", 0xF060},
    {"BN_CLICKED", 0},            {"LBN_SELCHANGE", 1},        {"LBN_DBLCLK", 2},
    {"CBN_SELCHANGE", 1},         {"CBN_DBLCLK", 2},           {"EN_SETFOCUS", 0x0100},
    {"EN_KILLFOCUS", 0x0200},     {"EN_CHANGE", 0x0300},       {"EN_UPDATE", 0x0400},
    {"IDOK", 1},                  {"IDCANCEL", 2},             {"IDABORT", 3},
    {"IDRETRY", 4},               {"IDIGNORE", 5},             {"IDYES", 6},
    {"IDNO", 7},                  {"WM_KEYDOWN", 0x0100},      {"VK_TAB", 0x09},
};

long long ParseValue(const std::string& option, const std::string& text) {
  if (auto number = ParseNumber(text)) return *number;
  // A message registered by name, as the shell's "TaskbarCreated".
  const std::string registered = "registered:";
  if (text.compare(0, registered.size(), registered) == 0) {
    return RegisterWindowMessageA(text.c_str() + registered.size());
  }
  std::string name = text;
  long long offset = 0;
  const size_t plus = text.find('+');
  if (plus != std::string::npos) {
    name = text.substr(0, plus);
    auto number = ParseNumber(text.substr(plus + 1));
    if (!number) UsageError("--" + option + ": bad offset in '" + text + "'");
    offset = *number;
  }
  for (const Named& named : kNames) {
    if (lstrcmpiA(named.name, name.c_str()) == 0) return named.value + offset;
  }
  UsageError("--" + option + " wants a number or a known name (WM_COMMAND, WM_USER+1, ...), got '" + text + "'");
}

long long ValueOr(const Options& options, const char* option, long long fallback) {
  auto text = options.Str(option);
  return text ? ParseValue(option, *text) : fallback;
}

// ---------------------------------------------------------------------------
// Finding what a command acts on

struct Target {
  HWND top = nullptr;
  HWND control = nullptr;  // set when --id was given
  HWND Window() const { return control != nullptr ? control : top; }
};

bool TryFindTarget(const Selector& selector, std::optional<long long> id, Target* target, std::string* reason) {
  // Hidden windows count (the main window is never shown), visible ones win.
  auto tops = FindTopLevel(selector, false);
  if (tops.empty()) {
    *reason = "no window with " + selector.Describe();
    return false;
  }
  if (!id) {
    *target = Target{tops[0], nullptr};
    return true;
  }
  for (HWND top : tops) {
    if (HWND control = FindControl(top, *id)) {
      *target = Target{top, control};
      return true;
    }
  }
  *reason = "window " + HexHandle(tops[0]) + " (" + selector.Describe() + ") has no control with id " +
            std::to_string(*id);
  return false;
}

// Can a user act on this control right now? Empty when yes.
std::string WhyUnusable(const Target& target) {
  const std::string what = target.control != nullptr ? "control " + HexHandle(target.control) : "window";
  if (!IsWindowVisible(target.Window())) return what + " is hidden";
  if (!IsWindowEnabled(target.Window())) return what + " is disabled";
  if (!IsWindowEnabled(target.top)) return "window " + HexHandle(target.top) + " is disabled (a modal window open?)";
  return {};
}

// Waits for the window (and the control, with --id); with usable, also for it
// to be visible and enabled, as it must be for a user to act on it.
Target WaitTarget(const Options& options, bool needId, bool usable = false) {
  const Selector selector = SelectorFrom(options);
  const auto id = options.Int("id");
  if (needId && !id) UsageError("missing --id");
  const DWORD timeout = TimeoutOf(options);
  const bool force = options.Flag("force");
  Target target;
  std::string reason;
  const bool found = Poll(timeout, [&] {
    if (!TryFindTarget(selector, id, &target, &reason)) return false;
    if (!usable || force) return true;
    reason = WhyUnusable(target);
    if (!reason.empty()) reason += " (--force acts anyway)";
    return reason.empty();
  });
  if (!found) Fail(reason + Waited(timeout) + "; visible top-level windows:" + DescribeVisibleWindows());
  return target;
}

// Back to the ANSI code page that every other text of the driver is in.
std::string FromWide(const std::wstring& wide) {
  if (wide.empty()) return {};
  const int size = static_cast<int>(wide.size());
  const int ansiSize = WideCharToMultiByte(CP_ACP, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
  if (ansiSize <= 0) return {};
  std::string ansi(static_cast<size_t>(ansiSize), '\0');
  WideCharToMultiByte(CP_ACP, 0, wide.data(), size, &ansi[0], ansiSize, nullptr, nullptr);
  return ansi;
}

// ---------------------------------------------------------------------------
// List boxes and combo boxes share their protocol under different numbers.

struct ListProtocol {
  bool combo;
  UINT count, textLength, text, getCurSel, setCurSel;
};

const ListProtocol kListBox = {false, LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT, LB_GETCURSEL, LB_SETCURSEL};
const ListProtocol kComboBox = {true, CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT, CB_GETCURSEL, CB_SETCURSEL};

const ListProtocol& ProtocolOf(HWND control) {
  const std::string name = Lower(ClassName(control));
  if (name == "combolbox") return kListBox;  // the drop-down part of a combo box
  if (name.find("combobox") != std::string::npos) return kComboBox;
  if (name.find("listbox") != std::string::npos) return kListBox;
  Fail("control " + HexHandle(control) + " is a \"" + ClassName(control) + "\", not a list box or combo box");
}

bool MultiSelect(HWND control, const ListProtocol& protocol) {
  return !protocol.combo && (GetWindowLongA(control, GWL_STYLE) & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL)) != 0;
}

LRESULT ItemCount(HWND control, const ListProtocol& protocol) {
  const LRESULT count = Send(control, protocol.count, 0, 0);
  if (count < 0) Fail("control " + HexHandle(control) + " refused to count its items");
  return count;
}

// Item texts are read with the wide messages: Wine answers a cross-process
// LB_GETTEXT / CB_GETLBTEXT sent with the ANSI API in UTF-16 anyway, writing
// twice the bytes the ANSI length promised.
std::string ItemText(HWND control, const ListProtocol& protocol, LRESULT index) {
  DWORD_PTR length = 0;
  if (!SendMessageTimeoutW(control, protocol.textLength, static_cast<WPARAM>(index), 0, SMTO_ABORTIFHUNG,
                           kSendTimeoutMs, &length)) {
    Fail("control " + HexHandle(control) + " did not answer within " + std::to_string(kSendTimeoutMs) + " ms");
  }
  if (static_cast<LRESULT>(length) < 0) Fail("no item " + std::to_string(index) + " in control " + HexHandle(control));
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  DWORD_PTR copied = 0;
  if (!SendMessageTimeoutW(control, protocol.text, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&text[0]),
                           SMTO_ABORTIFHUNG, kSendTimeoutMs, &copied)) {
    Fail("control " + HexHandle(control) + " did not answer within " + std::to_string(kSendTimeoutMs) + " ms");
  }
  if (static_cast<LRESULT>(copied) < 0) copied = 0;
  if (copied > length) copied = length;
  text.resize(static_cast<size_t>(copied));
  return FromWide(text);
}

void PrintItem(LRESULT index, const std::string& text) { PrintLine(std::to_string(index) + "\t" + text); }

// Selects the item as a user's click would and tells the parent, the way the
// control itself would have: dialogs react to the notification, not the message.
LRESULT SelectItem(HWND control, const ListProtocol& protocol, long long index) {
  const LRESULT count = ItemCount(control, protocol);
  if (index < -1 || index >= count) {
    Fail("index " + std::to_string(index) + " out of range: the control has " + std::to_string(count) + " items");
  }
  if (MultiSelect(control, protocol)) {
    Send(control, LB_SETSEL, FALSE, -1);
    if (index >= 0) Send(control, LB_SETSEL, TRUE, static_cast<LPARAM>(index));
    Send(control, LB_SETCARETINDEX, static_cast<WPARAM>(index < 0 ? 0 : index), FALSE);
  } else {
    Send(control, protocol.setCurSel, static_cast<WPARAM>(index), 0);
  }
  const WORD id = static_cast<WORD>(GetDlgCtrlID(control));
  PostMessageA(GetParent(control), WM_COMMAND, MAKEWPARAM(id, LBN_SELCHANGE), reinterpret_cast<LPARAM>(control));
  return static_cast<LRESULT>(index);
}

// ---------------------------------------------------------------------------
// Message boxes

std::string BoxText(HWND box) {
  HWND text = FindControl(box, 0xFFFF);
  if (text != nullptr && ClassIs(text, "Static")) {
    if (auto value = TryReadText(text)) return *value;
  }
  for (HWND child : Descendants(box)) {
    if (!ClassIs(child, "Static")) continue;
    auto value = TryReadText(child);
    if (value && !value->empty()) return *value;
  }
  return {};
}

// Waits for a visible box with the selector (class "#32770" by default) whose
// text contains --contains, if given.
HWND WaitBox(const Options& options, std::string* text) {
  const Selector selector = SelectorFrom(options, "#32770");
  const auto contains = options.Str("contains");
  const bool visibleOnly = !options.Flag("any-visibility");
  const DWORD timeout = TimeoutOf(options);
  HWND box = nullptr;
  std::string seen;
  const bool found = Poll(timeout, [&] {
    seen.clear();
    for (HWND candidate : FindTopLevel(selector, visibleOnly)) {
      *text = BoxText(candidate);
      if (!contains || text->find(*contains) != std::string::npos) {
        box = candidate;
        return true;
      }
      seen += "\n  " + HexHandle(candidate) + " text " + Escaped(*text);
    }
    return false;
  });
  if (found) return box;
  std::string message = "no " + std::string(visibleOnly ? "visible " : "") + "box with " + selector.Describe();
  if (contains) message += " and text containing " + Escaped(*contains);
  message += Waited(timeout);
  if (!seen.empty()) message += "; boxes seen:" + seen;
  Fail(message + "; visible top-level windows:" + DescribeVisibleWindows());
}

// ---------------------------------------------------------------------------
// The commands

void WaitWindow(const Options& options) {
  const Selector selector = SelectorFrom(options);
  const bool visibleOnly = !options.Flag("any-visibility");
  const DWORD timeout = TimeoutOf(options);
  HWND found = nullptr;
  if (!Poll(timeout, [&] {
        auto windows = FindTopLevel(selector, visibleOnly);
        if (!windows.empty()) found = windows[0];
        return found != nullptr;
      })) {
    Fail("no " + std::string(visibleOnly ? "visible " : "") + "window with " + selector.Describe() + Waited(timeout) +
         "; visible top-level windows:" + DescribeVisibleWindows());
  }
  PrintLine(HexHandle(found));
}

void WaitGone(const Options& options) {
  const Selector selector = SelectorFrom(options);
  const bool visibleOnly = !options.Flag("any-visibility");
  const DWORD timeout = TimeoutOf(options);
  std::vector<HWND> left;
  if (!Poll(timeout, [&] {
        left = FindTopLevel(selector, visibleOnly);
        return left.empty();
      })) {
    std::string handles;
    for (HWND window : left) handles += " " + HexHandle(window);
    Fail("still there:" + handles + " (" + selector.Describe() + ")" + Waited(timeout));
  }
  PrintLine("gone");
}

void Text(const Options& options) { PrintLine(ReadText(WaitTarget(options, false).Window())); }

void WaitText(const Options& options) {
  const auto equals = options.Str("equals");
  const auto contains = options.Str("contains");
  if (equals.has_value() == contains.has_value()) UsageError("give one of --equals or --contains");
  const Selector selector = SelectorFrom(options);
  const auto id = options.Int("id");
  const DWORD timeout = TimeoutOf(options);
  std::string reason;
  std::optional<std::string> last;
  const bool matched = Poll(timeout, [&] {
    Target target;
    if (!TryFindTarget(selector, id, &target, &reason)) return false;
    auto text = TryReadText(target.Window());
    if (!text) {
      reason = "window " + HexHandle(target.Window()) + " does not answer";
      return false;
    }
    last = *text;
    return equals ? *last == *equals : last->find(*contains) != std::string::npos;
  });
  if (!matched) {
    if (!last) Fail(reason + Waited(timeout));
    Fail("text is " + Escaped(*last, 4000) + ", wanted it to " + (equals ? "equal " + Escaped(*equals, 4000)
                                                                          : "contain " + Escaped(*contains, 4000)) +
         Waited(timeout));
  }
  PrintLine(*last);
}

void List(const Options& options) {
  const HWND control = WaitTarget(options, true).control;
  const ListProtocol& protocol = ProtocolOf(control);
  const LRESULT count = ItemCount(control, protocol);
  for (LRESULT i = 0; i < count; ++i) PrintLine(ItemText(control, protocol, i));
}

// One item; a negative index counts from the end (-1 is the last). Reading a long
// list item by item would take longer than a check may.
void ListItem(const Options& options) {
  const HWND control = WaitTarget(options, true).control;
  const ListProtocol& protocol = ProtocolOf(control);
  const LRESULT count = ItemCount(control, protocol);
  long long index = options.RequiredInt("index");
  if (index < 0) index += count;
  if (index < 0 || index >= count) {
    Fail("index " + std::to_string(options.RequiredInt("index")) + " out of range: the control has " +
         std::to_string(count) + " items");
  }
  PrintLine(ItemText(control, protocol, static_cast<LRESULT>(index)));
}

void ListCount(const Options& options) {
  const HWND control = WaitTarget(options, true).control;
  PrintLine(std::to_string(ItemCount(control, ProtocolOf(control))));
}

void ListSelection(const Options& options) {
  const HWND control = WaitTarget(options, true).control;
  const ListProtocol& protocol = ProtocolOf(control);
  bool any = false;
  if (MultiSelect(control, protocol)) {
    const LRESULT count = ItemCount(control, protocol);
    for (LRESULT i = 0; i < count; ++i) {
      if (Send(control, LB_GETSEL, static_cast<WPARAM>(i), 0) > 0) {
        PrintItem(i, ItemText(control, protocol, i));
        any = true;
      }
    }
  } else {
    const LRESULT index = Send(control, protocol.getCurSel, 0, 0);
    if (index >= 0) {
      PrintItem(index, ItemText(control, protocol, index));
      any = true;
    }
  }
  if (!any) PrintItem(-1, "");
}

std::string StateLine(HWND window, LRESULT checked) {
  return "enabled=" + std::to_string(IsWindowEnabled(window) ? 1 : 0) +
         " visible=" + std::to_string(IsWindowVisible(window) ? 1 : 0) + " checked=" + std::to_string(checked);
}

void State(const Options& options) {
  const HWND window = WaitTarget(options, false).Window();
  PrintLine(StateLine(window, ClassIs(window, "Button") ? Send(window, BM_GETCHECK, 0, 0) : 0));
}

// --ids N,N,...: the controls a batch command reads, in the order given.
std::vector<long long> IdList(const Options& options) {
  const std::string list = options.RequiredStr("ids");
  std::vector<long long> ids;
  std::size_t from = 0;
  while (from <= list.size()) {
    const std::size_t comma = std::min(list.find(',', from), list.size());
    const auto id = ParseNumber(list.substr(from, comma - from));
    if (!id) UsageError("--ids wants numbers separated by commas, got '" + list + "'");
    ids.push_back(*id);
    from = comma + 1;
  }
  return ids;
}

// One line per control, in the order given: "ID enabled=E visible=V checked=C",
// or "ID missing". Saves a driver start per control when a test reads a page.
void States(const Options& options) {
  const std::vector<long long> ids = IdList(options);
  const HWND top = WaitTarget(options, false).top;
  for (const long long id : ids) {
    const HWND control = FindControl(top, id);
    if (control == nullptr) {
      PrintLine(std::to_string(id) + " missing");
      continue;
    }
    PrintLine(std::to_string(id) + " " +
              StateLine(control, ClassIs(control, "Button") ? Send(control, BM_GETCHECK, 0, 0) : 0));
  }
}

// The texts of several controls on one line, joined by the separator ("|" by
// default); a control the window does not have fails the command.
void Texts(const Options& options) {
  const std::vector<long long> ids = IdList(options);
  const std::string separator = options.Str("separator").value_or("|");
  const HWND top = WaitTarget(options, false).top;
  std::string line;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const HWND control = FindControl(top, ids[i]);
    if (control == nullptr) Fail("no control with id " + std::to_string(ids[i]));
    if (i != 0) line += separator;
    line += ReadText(control);
  }
  PrintLine(line);
}

void WaitState(const Options& options) {
  const auto enabled = options.Int("enabled");
  const auto visible = options.Int("visible");
  const auto checked = options.Int("checked");
  if (!enabled && !visible && !checked) UsageError("give at least one of --enabled, --visible, --checked");
  const Selector selector = SelectorFrom(options);
  const auto id = options.Int("id");
  const DWORD timeout = TimeoutOf(options);
  std::string reason;
  std::string last;
  const bool matched = Poll(timeout, [&] {
    Target target;
    if (!TryFindTarget(selector, id, &target, &reason)) return false;
    const HWND window = target.Window();
    LRESULT isChecked = 0;
    if (ClassIs(window, "Button") && !TrySend(window, BM_GETCHECK, 0, 0, &isChecked)) {
      reason = "window " + HexHandle(window) + " does not answer";
      return false;
    }
    const bool isEnabled = IsWindowEnabled(window) != FALSE;
    const bool isVisible = IsWindowVisible(window) != FALSE;
    last = StateLine(window, isChecked);
    reason = "state is " + last;
    return (!enabled || *enabled == (isEnabled ? 1 : 0)) && (!visible || *visible == (isVisible ? 1 : 0)) &&
           (!checked || *checked == isChecked);
  });
  if (!matched) Fail(reason + Waited(timeout));
  PrintLine(last);
}

void Click(const Options& options) {
  const Target target = WaitTarget(options, true, true);
  // Posted: a click that opens a modal box must not hold up the driver.
  if (!PostMessageA(target.control, BM_CLICK, 0, 0)) {
    Fail("PostMessage failed: error " + std::to_string(GetLastError()));
  }
  PrintLine("ok");
}

void CommandMessage(const Options& options) {
  const Selector selector = SelectorFrom(options);
  const long long id = options.RequiredInt("id");
  const long long code = ValueOr(options, "code", 0);
  const DWORD timeout = TimeoutOf(options);
  std::vector<HWND> tops;
  if (!Poll(timeout, [&] {
        tops = FindTopLevel(selector, false);
        return !tops.empty();
      })) {
    Fail("no window with " + selector.Describe() + Waited(timeout));
  }
  // Without such a control the id is a menu or accelerator command: lParam 0.
  HWND control = nullptr;
  HWND receiver = tops[0];
  for (HWND top : tops) {
    if ((control = FindControl(top, id)) != nullptr) {
      receiver = GetParent(control);
      break;
    }
  }
  const WPARAM wParam = MAKEWPARAM(static_cast<WORD>(id), static_cast<WORD>(code));
  if (!PostMessageA(receiver, WM_COMMAND, wParam, reinterpret_cast<LPARAM>(control))) {
    Fail("PostMessage failed: error " + std::to_string(GetLastError()));
  }
  PrintLine("ok");
}

void PostRaw(const Options& options) {
  const UINT message = static_cast<UINT>(ParseValue("msg", options.RequiredStr("msg")));
  const auto wParam = static_cast<WPARAM>(ValueOr(options, "wparam", 0));
  const auto lParam = static_cast<LPARAM>(ValueOr(options, "lparam", 0));
  const HWND window = WaitTarget(options, false).Window();
  if (!PostMessageA(window, message, wParam, lParam)) {
    Fail("PostMessage failed: error " + std::to_string(GetLastError()));
  }
  PrintLine("ok");
}

// The keyboard focus and the active window of the window's thread, and the
// foreground window of the desktop.
void Focus(const Options& options) {
  const HWND window = WaitTarget(options, false).Window();
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  if (!GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info)) {
    Fail("GetGUIThreadInfo failed: error " + std::to_string(GetLastError()));
  }
  const std::string id = info.hwndFocus != nullptr ? std::to_string(GetDlgCtrlID(info.hwndFocus)) : "none";
  PrintLine("focus=" + id + " active=" + HexHandle(info.hwndActive) + " foreground=" +
            HexHandle(GetForegroundWindow()));
}

// Whether the shell shows the window's icon --icon N ("present" or "absent"),
// after taking it away with --delete, as a restarting taskbar loses it.
void TrayIcon(const Options& options) {
  NOTIFYICONDATAA data = {};
  data.cbSize = NOTIFYICONDATAA_V1_SIZE;
  data.hWnd = WaitTarget(options, false).top;
  data.uID = static_cast<UINT>(options.RequiredInt("icon"));
  if (options.Flag("delete")) Shell_NotifyIconA(NIM_DELETE, &data);
  PrintLine(Shell_NotifyIconA(NIM_MODIFY, &data) ? "present" : "absent");
}

void AnswerBox(const Options& options) {
  struct ButtonName {
    const char* name;
    int id;
  };
  static const ButtonName kButtons[] = {{"ok", IDOK},       {"cancel", IDCANCEL}, {"abort", IDABORT},
                                        {"retry", IDRETRY}, {"ignore", IDIGNORE}, {"yes", IDYES},
                                        {"no", IDNO}};
  const std::string wanted = options.RequiredStr("button");
  int id = 0;
  for (const ButtonName& button : kButtons) {
    if (lstrcmpiA(button.name, wanted.c_str()) == 0) id = button.id;
  }
  if (id == 0) UsageError("--button wants yes, no, ok, cancel, abort, retry or ignore");

  std::string text;
  const HWND box = WaitBox(options, &text);
  HWND button = nullptr;
  for (HWND child : Descendants(box)) {
    if (GetParent(child) == box && GetDlgCtrlID(child) == id && ClassIs(child, "Button")) button = child;
  }
  if (button == nullptr) {
    std::string present;
    for (HWND child : Descendants(box)) {
      if (!ClassIs(child, "Button")) continue;
      present += " " + std::to_string(GetDlgCtrlID(child)) + "=" + Escaped(Caption(child));
    }
    Fail("box " + HexHandle(box) + " has no " + wanted + " button (id " + std::to_string(id) + "); buttons:" + present);
  }
  // What the dialog manager sends for a pressed button; the box ends with that id.
  PostMessageA(box, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(button));
  // Closed before returning, so the next check cannot see this box again.
  const DWORD timeout = TimeoutOf(options);
  if (!Poll(timeout, [box] { return !IsWindow(box) || !IsWindowVisible(box); })) {
    Fail("box " + HexHandle(box) + " still open after pressing " + wanted + Waited(timeout));
  }
  PrintLine(text);
}

void BoxTextCommand(const Options& options) {
  std::string text;
  WaitBox(options, &text);
  PrintLine(text);
}

void ListWindows(const Options&) {
  std::vector<HWND> all = FindTopLevel(Selector{}, false);
  for (HWND window : all) {
    DWORD pid = 0;
    GetWindowThreadProcessId(window, &pid);
    std::string line = HexHandle(window) + " pid=" + std::to_string(pid) +
                       " visible=" + std::to_string(IsWindowVisible(window) ? 1 : 0) +
                       " class=" + Escaped(ClassName(window)) + " title=" + Escaped(Caption(window));
    if (HWND owner = GetWindow(window, GW_OWNER)) line += " owner=" + HexHandle(owner);
    if (GetAncestor(window, GA_PARENT) != GetDesktopWindow()) line += " message-only";
    PrintLine(line);
  }
}

void Children(const Options& options) {
  const HWND top = WaitTarget(options, false).top;
  for (HWND child : Descendants(top)) {
    std::string indent;
    for (HWND up = GetParent(child); up != nullptr && up != top; up = GetParent(up)) indent += "  ";
    auto text = TryReadText(child);
    PrintLine(indent + HexHandle(child) + " id=" + std::to_string(GetDlgCtrlID(child)) +
              " class=" + Escaped(ClassName(child)) + " enabled=" + std::to_string(IsWindowEnabled(child) ? 1 : 0) +
              " visible=" + std::to_string(IsWindowVisible(child) ? 1 : 0) +
              " text=" + (text ? Escaped(*text) : std::string("(no answer)")));
  }
}

void SetText(const Options& options) {
  const std::string text = options.RequiredStr("text");
  const HWND control = WaitTarget(options, true, true).control;
  if (Send(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str())) <= 0) {
    Fail("control " + HexHandle(control) + " refused the text");
  }
  PrintLine("ok");
}

void Select(const Options& options) {
  const long long index = options.RequiredInt("index");
  const HWND control = WaitTarget(options, true, true).control;
  const ListProtocol& protocol = ProtocolOf(control);
  SelectItem(control, protocol, index);
  PrintItem(static_cast<LRESULT>(index), index >= 0 ? ItemText(control, protocol, index) : std::string());
}

void DoubleClickList(const Options& options) {
  const long long index = options.RequiredInt("index");
  if (index < 0) UsageError("--index wants an item, 0 or more");
  const HWND control = WaitTarget(options, true, true).control;
  const ListProtocol& protocol = ProtocolOf(control);
  SelectItem(control, protocol, index);
  const WORD id = static_cast<WORD>(GetDlgCtrlID(control));
  PostMessageA(GetParent(control), WM_COMMAND, MAKEWPARAM(id, LBN_DBLCLK), reinterpret_cast<LPARAM>(control));
  PrintItem(static_cast<LRESULT>(index), ItemText(control, protocol, index));
}

bool IsRadio(HWND window) {
  if (!ClassIs(window, "Button")) return false;
  const LONG type = GetWindowLongA(window, GWL_STYLE) & 0x0F;
  return type == BS_RADIOBUTTON || type == BS_AUTORADIOBUTTON;
}

void Check(const Options& options) {
  const long long value = options.RequiredInt("value");
  if (value < 0 || value > 2) UsageError("--value wants 0, 1 or 2 (indeterminate)");
  const HWND control = WaitTarget(options, true, true).control;
  if (!ClassIs(control, "Button")) {
    Fail("control " + HexHandle(control) + " is a \"" + ClassName(control) + "\", not a button");
  }
  const HWND parent = GetParent(control);
  if (value == 1 && IsRadio(control)) {
    // Checking a radio button unchecks the others of its group, as a click does.
    HWND other = control;
    for (int guard = 0; guard < 512; ++guard) {
      other = GetNextDlgGroupItem(parent, other, FALSE);
      if (other == nullptr || other == control) break;
      if (IsRadio(other)) Send(other, BM_SETCHECK, BST_UNCHECKED, 0);
    }
  }
  Send(control, BM_SETCHECK, static_cast<WPARAM>(value), 0);
  const WORD id = static_cast<WORD>(GetDlgCtrlID(control));
  PostMessageA(parent, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(control));
  PrintLine("ok");
}

}  // namespace

void SetRawOutput(bool raw) { rawOutput = raw; }

std::string ToOutput(const std::string& ansiText) {
  bool ascii = true;
  for (char c : ansiText) ascii = ascii && static_cast<unsigned char>(c) < 0x80;
  if (rawOutput || ascii) return ansiText;
  const int size = static_cast<int>(ansiText.size());
  const int wideSize = MultiByteToWideChar(CP_ACP, 0, ansiText.data(), size, nullptr, 0);
  if (wideSize <= 0) return ansiText;
  std::wstring wide(static_cast<size_t>(wideSize), L'\0');
  MultiByteToWideChar(CP_ACP, 0, ansiText.data(), size, &wide[0], wideSize);
  const int utf8Size = WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideSize, nullptr, 0, nullptr, nullptr);
  if (utf8Size <= 0) return ansiText;
  std::string utf8(static_cast<size_t>(utf8Size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideSize, &utf8[0], utf8Size, nullptr, nullptr);
  return utf8;
}

// Holds a file open as a virus scanner or a backup program would, reading with
// read sharing only (others may read it, nobody may write or delete it), until a
// release file appears; prints "held" once open.
void HoldFile(const Options& options) {
  const std::string path = options.RequiredStr("path");
  const std::string release = options.RequiredStr("release-when");
  HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) Fail("cannot open " + path + ": error " + std::to_string(GetLastError()));
  PrintLine("held");
  std::fflush(stdout);
  while (GetFileAttributesA(release.c_str()) == INVALID_FILE_ATTRIBUTES) Sleep(50);
  CloseHandle(file);
}

const std::vector<Command>& Commands() {
  using V = std::vector<std::string>;
  static const V kSelect = {"title", "class", "hwnd", "timeout-ms", "raw"};
  auto with = [](V base, V more) {
    base.insert(base.end(), more.begin(), more.end());
    return base;
  };
  static const std::vector<Command> commands = {
      {"wait-window", "--title T | --class C [--any-visibility] [--timeout-ms N]",
       with(kSelect, {"any-visibility"}), WaitWindow},
      {"wait-gone", "--title T | --class C [--any-visibility] [--timeout-ms N]", with(kSelect, {"any-visibility"}),
       WaitGone},
      {"text", "--title T | --class C [--id N]", with(kSelect, {"id"}), Text},
      {"wait-text", "--title T | --class C [--id N] --equals S | --contains S [--timeout-ms N]",
       with(kSelect, {"id", "equals", "contains"}), WaitText},
      {"list", "--title T | --class C --id N", with(kSelect, {"id"}), List},
      {"list-count", "--title T | --class C --id N", with(kSelect, {"id"}), ListCount},
      {"item", "--title T | --class C --id N --index I", with(kSelect, {"id", "index"}), ListItem},
      {"list-selection", "--title T | --class C --id N", with(kSelect, {"id"}), ListSelection},
      {"state", "--title T | --class C [--id N]", with(kSelect, {"id"}), State},
      {"states", "--title T | --class C --ids N,N,...", with(kSelect, {"ids"}), States},
      {"texts", "--title T | --class C --ids N,N,... [--separator S]", with(kSelect, {"ids", "separator"}), Texts},
      {"wait-state", "--title T | --class C [--id N] [--enabled 0|1] [--visible 0|1] [--checked 0|1|2]",
       with(kSelect, {"id", "enabled", "visible", "checked"}), WaitState},
      {"click", "--title T | --class C --id N [--force]", with(kSelect, {"id", "force"}), Click},
      {"command", "--title T | --class C --id N [--code C]", with(kSelect, {"id", "code"}), CommandMessage},
      {"post", "--title T | --class C [--id N] --msg M [--wparam W] [--lparam L]",
       with(kSelect, {"id", "msg", "wparam", "lparam"}), PostRaw},
      {"answer-box", "--title T [--contains S] --button yes|no|ok|cancel [--timeout-ms N]",
       with(kSelect, {"contains", "button", "any-visibility"}), AnswerBox},
      {"box-text", "--title T [--contains S]", with(kSelect, {"contains", "any-visibility"}), BoxTextCommand},
      {"focus", "--title T | --class C", kSelect, Focus},
      {"tray-icon", "--title T | --class C --icon N [--delete]", with(kSelect, {"icon", "delete"}), TrayIcon},
      {"windows", "", {"raw"}, ListWindows},
      {"children", "--title T | --class C", kSelect, Children},
      {"set-text", "--title T | --class C --id N --text S [--force]", with(kSelect, {"id", "text", "force"}), SetText},
      {"select", "--title T | --class C --id N --index I [--force]", with(kSelect, {"id", "index", "force"}), Select},
      {"check", "--title T | --class C --id N --value 0|1|2 [--force]", with(kSelect, {"id", "value", "force"}),
       Check},
      {"hold-file", "--path P --release-when P", {"path", "release-when"}, HoldFile},
      {"double-click-list", "--title T | --class C --id N --index I [--force]",
       with(kSelect, {"id", "index", "force"}), DoubleClickList},
  };
  return commands;
}

}  // namespace driver

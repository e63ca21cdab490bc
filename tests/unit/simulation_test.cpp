// A deterministic simulation of the whole portable core under faults. A seed
// gives a schedule of a few days: dial-up events, Manage Log's deletions, settings
// applied, the text report, Exit, shutdown, clock jumps, and faults: a file call
// that fails, a write torn at any byte (then the power is gone), a full disk, a
// file or its sibling held with or without read sharing, a folder in its place,
// a kill at any file call. Every box the program shows runs the next events and
// ticks while it is open, as its message loop does. The disk is in memory
// (platform/posix/simulated_disk.h), so a schedule takes a millisecond or two.
//
// Checked throughout and after every start: each session the service showed is
// in the log once once a save carried it (the log, or the checkpoint still on
// disk), under its own name, no shorter than its last checkpoint on disk and no
// longer than it was; no record or checkpoint of anything that did not happen;
// every settings change reported saved is still there; no sibling file outlives
// a save that worked; no log is replaced by one with fewer records; the session
// timers run exactly while a session is open; a report file holds its report.
//
//   ORVALEN_SIM_SEEDS=1:1000 orvalen_unit_tests --gtest_filter='Simulation.*'
//   ORVALEN_SIM_SEED=42 ...     one seed
//   ORVALEN_SIM_SEED=42 ORVALEN_SIM_SCHEDULE='c0 w600 k' ...   a schedule of that seed's start
#include <cstdio>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "logview/logview_state.h"
#include "logview/manage_log_summary.h"
#include "logview/text_report.h"
#include "monitor/monitor_state.h"
#include "monitor/session_settings.h"
#include "monitor/unconfigured_connections.h"
#include "platform/platform_state.h"
#include "platform/posix/simulated_disk.h"
#include "storage/billing_period.h"
#include "storage/notice_queue.h"
#include "platform/program_paths.h"
#include "storage/storage.h"
#include "storage/startup.h"
#include "test_support.h"

#ifdef __GLIBC__  // the simulated disk hands out glibc cookie FILEs
namespace {

const char* const kNames[] = {"Home ISP", "Work ISP", "Other ISP"};

// A schedule is a list of steps, each a word: the op (see Sim::Do) and its
// numbers ("w600", "fT7.300", "hLn"), so a failing schedule can be pasted back as
// a table row.
using Steps = std::vector<std::string>;

std::string Text(const Steps& steps) {
  std::string text;
  for (const std::string& step : steps) text += (text.empty() ? "" : " ") + step;
  return text;
}

Steps Parse(const std::string& text) {
  std::istringstream in(text);
  return Steps(std::istream_iterator<std::string>(in), std::istream_iterator<std::string>());
}

// A few days: on average one event every hour or so, sessions from a second to
// 30 hours, a fault or a kill every few steps.
Steps Generate(uint64_t seed) {
  std::mt19937_64 random(seed);
  // Appended, never prefixed: GCC 12 warns falsely (-Wrestrict) on text + std::string&&.
  const auto pick = [&random](const char* op, uint64_t n) { return std::string(op).append(std::to_string(random() % n)); };
  const auto file = [&random](const char* op) { return std::string(op) + "CLR"[random() % 3] + "_npt"[random() % 4]; };
  Steps steps;
  for (uint64_t i = 0, count = 30 + random() % 120; i < count; ++i) {
    const uint64_t r = random() % 100, kind = random() % 100;
    if (r < 16) steps.push_back(pick("c", 3));
    else if (r < 26) steps.push_back(kind < 25 ? "v" : "d");
    else if (r < 28) steps.push_back(pick("g", 3));
    else if (r < 50) steps.push_back(pick("w", kind < 55 ? 600 : kind < 85 ? 7200 : kind < 97 ? 36000 : 108000));
    else if (r < 53) steps.push_back(kind < 33 ? "j86400" : kind < 66 ? "j3600" : "j-3600");
    else if (r < 56) steps.push_back(pick("x", 3));
    else if (r < 57) steps.push_back("e");
    else if (r < 61) steps.push_back("s");
    else if (r < 63) steps.push_back(pick("r", 400));
    else if (r < 70) steps.push_back(r < 65 ? "q" : r < 67 ? "z" : "k");
    else if (r < 84) steps.push_back(pick((std::string("f") + "KFFT"[kind % 4]).append(std::to_string(1 + random() % 14)).append(".").c_str(), 7000));
    else if (r < 90) steps.push_back(file(kind < 50 ? "h" : "H"));
    else if (r < 93) steps.push_back("u");
    else if (r < 95) steps.push_back(file("o"));
    else steps.push_back(r < 97 ? "O" : pick("F", 2));
  }
  return steps;
}

// A session as the service showed it to one run of the program.
struct Truth {
  std::string name;
  uintptr_t handle;
  LocalTime logOn, end;
  uint32_t startTick, endTick = 0;
  bool open = true;
  bool inLog = false;    // a log save carrying it reached the disk
  bool deleted = false;  // Manage Log deleted it since
  int32_t floor = 0;     // the longest length a save carried
};

struct Figures { uint64_t schedules, steps, calls, faults, kills, violations; };

class Sim;
Sim* sim = nullptr;  // the one the hooks reach

class Sim {
 public:
  explicit Sim(Steps steps) : steps_(std::move(steps)) {
    sim = this;
    clock_.now = {2004, 2, 0, 27, 22, 0, 0};
    disk_.committed = [this](const std::string& path, const std::string& data) { Committed(path, data); };
    disk_.placed = [this](const std::string& path) { Placed(path); };
  }

  // Seed 0 keeps the start above (a Friday, the month's last days in a leap year).
  void Seed(uint64_t seed) {
    if (seed == 0) return;
    std::mt19937_64 random(seed ^ 0x5157u);
    clock_.now = {static_cast<uint32_t>(1999 + random() % 30), static_cast<uint32_t>(1 + random() % 12), 0,
                  static_cast<uint32_t>(random() % 4 == 0 ? 28 : 1 + random() % 28),
                  static_cast<uint32_t>(random() % 24), static_cast<uint32_t>(random() % 60), 0};
    clock_.tickMs = static_cast<uint32_t>(random());
  }

  // The schedule, then the faults lifted, off-line, Exit and a last start. A
  // program that ended starts again at the next step that is not a fault.
  std::vector<std::string> Play() {
    Restart();
    while (next_ < steps_.size()) {
      if (down_ && !std::strchr("fhHuoOFj", steps_[next_][0])) {
        Restart();  // its boxes may take the next steps
        continue;
      }
      Do(steps_[next_++]);
      if (disk_.dead || ended_) EndRun();
    }
    disk_.Heal();
    ras_.state = ScriptedRas::State::None;
    if (down_) Restart();
    Tick();
    EndRun();
    Restart();
    return violations_;
  }

  Figures Count() const { return {1, stepsRun_, disk_.calls, disk_.faults + faults_, disk_.kills + kills_, 0}; }

 private:
  std::string PathOf(char file, char suffix) const {  // "L" "n": the log's ".new"
    const std::string& base = file == 'C' ? settingsPath_ : file == 'L' ? logPath_ : reportPath_;
    return base + (suffix == 'n' ? ".new" : suffix == 'p' ? ".prev" : suffix == 't' ? ".tmp" : "");
  }

  // --- What the saves carried ---------------------------------------------------
  void Violation(const std::string& what) {
    if (violations_.size() < 8) violations_.push_back(what + " (after step " + std::to_string(next_) + ")");
  }

  static int64_t Day(const LocalTime& t) { return DayNumber(CalendarDate{t.year, t.month, t.day}); }

  // The session's length so far, and a second for the tick counter's rounding.
  uint32_t LongestLength(const Truth& t) const {
    return ((t.open ? clock_.tickMs : t.endTick) - t.startTick) / 1000u + 1;
  }

  // Whether a record has the session's whole length (a second each way), not a checkpoint's.
  bool Whole(const SessionRecord& r, const Truth& t) const {
    return static_cast<uint32_t>(r.durationSeconds) + 2 >= LongestLength(t);
  }

  // The session a record or a checkpoint stands for: its name, log-on second and
  // the date it began (or, for a record made at its end, the date it ended). Of
  // sessions begun in the same second (a clock set back, or a day apart), one that
  // lasted as long, dated as such a record is, and not yet matched is preferred.
  int Match(const SessionRecord& r, bool startOnly, const std::vector<int>* seen = nullptr) const {
    int found = -1, best = 0;
    for (int i = 0; i < static_cast<int>(truths_.size()); ++i) {
      const Truth& t = truths_[i];
      const int64_t day = DayNumber(CalendarDate{r.year, r.month, r.day});
      if (t.name != r.connectionName || t.logOn.hour != r.logOnHour || t.logOn.minute != r.logOnMinute ||
          t.logOn.second != r.logOnSecond || (day != Day(t.logOn) && (startOnly || t.open || day != Day(t.end)))) {
        continue;
      }
      const int score = 1 + (r.durationSeconds <= static_cast<int64_t>(LongestLength(t)) ? 4 : 0) +
                        (day == Day(Whole(r, t) ? t.end : t.logOn) ? 2 : 0) + (seen == nullptr || (*seen)[i] == 0 ? 1 : 0);
      if (score > best) found = i, best = score;
    }
    return found;
  }

  void Carried(int i, int32_t length, const char* what) {
    Truth& t = truths_[i];
    if (length < 0 || static_cast<uint32_t>(length) > LongestLength(t)) Violation(std::string(what) + " longer than " + t.name + "'s session");
    if (length > t.floor) t.floor = length;
  }

  void Committed(const std::string& base, const std::string& data) {
    committed_ = base;
    if (base == settingsPath_ && data.size() >= sizeof(Settings)) {
      Settings saved;
      std::memcpy(&saved, data.data(), sizeof saved);
      checkpointOf_ = -1;
      if (saved.sessionOpenMarker != kSessionOpen) return;
      const SessionRecord checkpoint = CheckpointRecord(saved);
      checkpointOf_ = Match(checkpoint, true);
      if (checkpointOf_ < 0) return Violation("a checkpoint of no session: " + std::string(checkpoint.connectionName));
      Carried(checkpointOf_, checkpoint.durationSeconds, "a checkpoint");
    } else if (base == logPath_) {
      const std::size_t count = data.size() >= 8 ? (data.size() - 8) / sizeof(SessionRecord) : 0;
      if (count < logRecords_) Violation("the log replaced by one with fewer records");
      logRecords_ = count;
      for (std::size_t k = 0; k < count; ++k) {
        SessionRecord r;
        std::memcpy(&r, data.data() + 8 + k * sizeof r, sizeof r);
        if (r.status != InUse) continue;
        const int i = Match(r, false);
        if (i < 0) {
          Violation("a record of no session: " + std::string(r.connectionName));
          continue;
        }
        truths_[i].inLog = true;
        Carried(i, r.durationSeconds, "a record");
      }
    }
  }

  // A save put its content in place (a start's settling of a leftover is no save).
  void Placed(const std::string& path) {
    placed_ = path;
    if (committed_ != path) return;
    committed_.clear();
    const SimulatedFile* temporary = disk_.Find(path + ".tmp");
    const SimulatedFile* previous = disk_.Find(path + ".prev");
    // Folders in their place and a ".tmp" another program holds are faults of ours.
    if ((temporary != nullptr && !temporary->folder && temporary->held == 0) || (previous != nullptr && !previous->folder)) Violation("a sibling outlives a save of " + path);
  }

  // After a start: what the program has now against what happened.
  void CheckStart() {
    if (disk_.dead) return;
    const bool configRead = !storage_.holds.Held(kConfigurationFile);
    if (configRead && values_.count(storage_.settings.alarmRepeatHours) == 0) {
      Violation("a setting reported saved is lost: " + std::to_string(storage_.settings.alarmRepeatHours));
    }
    if (storage_.holds.Held(kLogFile)) return;
    std::vector<int> seen(truths_.size());
    for (const SessionRecord& r : storage_.sessionLog.records) {
      if (r.status != InUse) continue;
      const int i = Match(r, false, &seen);
      if (i < 0) {
        Violation("recorded, never happened: " + std::string(r.connectionName));
        continue;
      }
      if (++seen[i] > 1) Violation(truths_[i].name + " recorded twice");
      if (!Whole(r, truths_[i]) && DayNumber(CalendarDate{r.year, r.month, r.day}) != Day(truths_[i].logOn)) {
        Violation("a recovered session not dated on its start");
      }
      Carried(i, r.durationSeconds, "a recorded length");
      if (!truths_[i].deleted && r.durationSeconds < truths_[i].floor) {
        Violation(truths_[i].name + " shorter than its checkpoint");
      }
    }
    for (std::size_t i = 0; i < truths_.size(); ++i) {
      const bool kept = truths_[i].inLog || (configRead && checkpointOf_ == static_cast<int>(i));
      if (kept && !truths_[i].deleted && seen[i] == 0) Violation(truths_[i].name + "'s session is lost");
    }
  }

  // --- The program ---------------------------------------------------------------
  void CheckTimers() {
    if (!disk_.dead && timersOn_ != monitor_.SessionOpen()) Violation("session timers without a session or none with one");
  }

  // The poll timer's tick, with what the shell does once the step returned.
  void Tick() {
    if (disk_.dead) return;
    const bool up = ras_.state == ScriptedRas::State::Connected;
    if (open_ >= 0 && (!up || truths_[open_].handle != ras_.handle)) CloseTruth();
    if (up && open_ < 0) {
      truths_.push_back(Truth{ras_.name, ras_.handle, clock_.now, clock_.now, clock_.tickMs});
      open_ = static_cast<int>(truths_.size()) - 1;
      jumped_ = 0;
    }
    Follow(monitor_.OnPollTick());
    CheckTimers();
    monitor_.ShowPendingNotices(shell_);
  }

  void Follow(SessionChange change) {  // the shell's session timers: what a tick or a shutdown did
    if (change != SessionChange::kNone) timersOn_ = change == SessionChange::kOpened, toCheckpoint_ = kCheckpointPeriodMs / 1000;
  }

  void CloseTruth() {
    if (open_ >= 0) truths_[open_].open = false, truths_[open_].end = clock_.now, truths_[open_].endTick = clock_.tickMs;
    open_ = -1;
  }

  void Wait(int64_t seconds) {
    while (!disk_.dead && timersOn_ && toCheckpoint_ <= seconds) {
      const int64_t due = std::max<int64_t>(toCheckpoint_, 0);
      seconds -= due;
      clock_.Advance(static_cast<uint32_t>(due));
      toCheckpoint_ = kCheckpointPeriodMs / 1000;
      monitor_.OnCheckpointTimer();
      CheckTimers();
      monitor_.ShowPendingNotices(shell_);
    }
    if (disk_.dead) return;
    if (timersOn_) toCheckpoint_ -= seconds;
    clock_.Advance(static_cast<uint32_t>(seconds));
    Tick();
  }

  // A box's message loop: what happens outside the program goes on, a few steps.
  void Box() {
    for (int n = 0; n < 2 && polling_ && !disk_.dead && next_ < steps_.size() && std::strchr("cgdvwjkfhHuoOF", steps_[next_][0]); ++n) {
      Do(steps_[next_++]);
    }
  }

  void Start() {
    disk_.dead = ended_ = polling_ = timersOn_ = down_ = false;
    committed_.clear();
    storage_ = Storage{};
    ResetMonitorState();
    ResetLogViewState();
    disk_.Use();
    UseClock(&clock_);
    UseRasService(&ras_);
    SetWindowsDirectory("/sim/windows");
    SetProgramFolder("/sim/program");
    // Copied: SettingsPath() rebuilds the text a save's path may point into.
    settingsPath_ = SettingsPath();
    logPath_ = LogFilePath();
    reportPath_ = ReportFilePath();
    monitor_ = Monitor{storage_};
    storage_.InitialiseStorage(nullptr);
    monitor_.RecoverInterruptedSession();
    monitor_.ShowPendingNotices(shell_);  // before the poll starts: nothing runs meanwhile
    CheckStart();
    polling_ = true;
    CheckUnconfiguredConnections(storage_, shell_);
    monitor_.ShowPendingNotices(shell_);
  }

  void EndRun() {
    CloseTruth();
    down_ = true;
  }

  void Restart() {
    do {
      clock_.Advance(3);  // a start (its splash) takes a few seconds: no two runs in one second
      Start();
      if (disk_.dead) EndRun();
    } while (disk_.dead);
  }

  void Do(const std::string& step) {
    ++stepsRun_;
    const char op = step[0];
    const int64_t a = std::atoll(step.c_str() + (op == 'f' ? 2 : 1));
    const char* name = kNames[a % 3];
    switch (op) {
      case 'c':  // connect: a connection already up goes down first, dialling takes 30 s
        if (ras_.state == ScriptedRas::State::Connected) Do("d");
        Do("g" + std::to_string(a));
        Wait(30);
        ras_.state = ScriptedRas::State::Connected;
        return Tick();
      case 'g':  // dialling
        ras_.Connect(name);
        ras_.state = ScriptedRas::State::Dialling;
        return Tick();
      case 'd':
      case 'v':  // gone from the list without a "disconnected" state
        ras_.state = op == 'd' ? ScriptedRas::State::Disconnected : ScriptedRas::State::Vanished;
        return Tick();
      case 'w':
        return Wait(a);
      case 'j':  // the clock set on or back, the tick counter going on; on by a day at most in a session
        if (open_ >= 0 && a > 0 && (jumped_ += a) > 86400) return;
        if (a > 0) clock_.Advance(static_cast<uint32_t>(a)), clock_.tickMs -= static_cast<uint32_t>(a) * 1000u;
        else if (clock_.now.hour > 0) --clock_.now.hour;
        return;
      case 'x':
      case 'e':
        if (op == 'x')
          DeleteConnectionEntries(storage_, name);
        else
          ClearEntireLog(storage_);
        for (Truth& t : truths_) t.deleted = t.deleted || (!t.open && (op == 'e' || t.name == name));
        return monitor_.ShowPendingNotices(shell_);
      case 's': {  // the settings sheet's OK
        const int value = 2 + static_cast<int>(next_ % 100);
        storage_.settings.alarmRepeatHours = static_cast<int8_t>(value);
        if (storage_.SaveSettings() && !disk_.dead) values_.clear();
        values_.insert(value);
        return monitor_.ShowPendingNotices(shell_);
      }
      case 'r': {
        const std::string report(static_cast<std::size_t>(a), static_cast<char>('a' + next_ % 26));
        logViewState.FinishedReport = report;
        placed_.clear();
        GenerateTextReport();
        const SimulatedFile* file = disk_.Find(reportPath_);
        if (!disk_.dead && placed_ == reportPath_ && (file == nullptr || file->data != report)) {
          Violation("the report file holds another text");
        }
        return;
      }
      case 'z':
        CloseTruth();  // the session ends now, recorded as it stands
        Follow(monitor_.Shutdown(ShutdownMode::kQuiet));
        if (Notice kept; storage_.notices.Take(&kept)) Violation("a notice kept that would hold the shutdown up");
        [[fallthrough]];
      case 'q':
        ended_ = true;
        return;
      case 'k':
        disk_.dead = true;
        ++kills_;
        return;
      case 'f':
        return disk_.Arm(step[1], static_cast<uint64_t>(a), std::strtoull(std::strchr(step.c_str(), '.') + 1, nullptr, 10));
      case 'h':
      case 'H':
      case 'o':
        faults_ += op == 'o' ? disk_.PutFolder(PathOf(step[1], step[2])) : disk_.Hold(PathOf(step[1], step[2]), op == 'h');
        return;
      case 'u':
        return disk_.ReleaseHolds();
      case 'O':
        return disk_.RemoveFolders();
      case 'F':
        disk_.full = a != 0;
        faults_ += a != 0;
        return;
    }
  }

  Steps steps_;
  std::size_t next_ = 0;
  FakeClock clock_;
  ScriptedRas ras_;
  Storage storage_;
  Monitor monitor_{storage_};
  // Every box the program shows runs a few of the next steps, as its message loop does.
  struct : MonitorShell {
    void ShowOutOfSpace() override { sim->Box(); }
    void ShowFileProblem(const char*, const char*) override { sim->Box(); }
    void ShowConfigureNotice(const char*, const char*) override { sim->Box(); }
    void ShowNotSetUp(const char*, const char*) override { sim->Box(); }
    intptr_t RunAccountDialog() override { return sim->Box(), 0; }
    void CheckAccounts() override { CheckUnconfiguredConnections(sim->storage_, *this); }
  } shell_;
  SimulatedDisk disk_;
  uint64_t stepsRun_ = 0, faults_ = 0, kills_ = 0;  // besides the disk's own
  int64_t jumped_ = 0;  // how far the clock was set on during the open session
  bool down_ = true;  // the program is not running
  bool ended_ = false, polling_ = false, timersOn_ = false;
  int64_t toCheckpoint_ = 0;
  std::string placed_;     // the last file a save put in place
  std::string committed_;  // the file whose save gave its ".new" last
  std::string settingsPath_, logPath_, reportPath_;
  std::vector<Truth> truths_;
  int open_ = -1;          // the session open now
  int checkpointOf_ = -1;  // the session whose checkpoint the configuration on disk holds
  std::size_t logRecords_ = 0;
  std::set<int> values_ = {1};  // the setting's values the configuration may hold
  std::vector<std::string> violations_;
};

std::vector<std::string> Simulate(const Steps& steps, uint64_t seed, Figures* figures = nullptr) {
  Sim run(steps);
  run.Seed(seed);
  std::vector<std::string> violations = run.Play();
  if (figures != nullptr) {
    const Figures f = run.Count();
    *figures = {figures->schedules + 1, figures->steps + f.steps, figures->calls + f.calls,
                figures->faults + f.faults, figures->kills + f.kills, figures->violations + !violations.empty()};
  }
  ResetPlatformState();  // the disk is gone; the other suites reset the rest themselves
  return violations;
}

// The shortest schedule that still fails: steps dropped in halves, quarters, ...
Steps Shrink(Steps steps, uint64_t seed) {
  for (std::size_t chunk = steps.size() / 2; chunk >= 1; chunk /= 2) {
    for (std::size_t at = 0; at + chunk <= steps.size();) {
      Steps trial = steps;
      trial.erase(trial.begin() + static_cast<long>(at), trial.begin() + static_cast<long>(at + chunk));
      if (!Simulate(trial, seed).empty()) steps = trial;
      else at += chunk;
    }
  }
  return steps;
}

TEST(Simulation, EverySessionOnceUnderFaultsForEachSeed) {
  uint64_t first = 1, count = 1000;
  if (const char* seeds = std::getenv("ORVALEN_SIM_SEEDS")) std::sscanf(seeds, "%lu:%lu", &first, &count);
  if (const char* one = std::getenv("ORVALEN_SIM_SEED")) first = std::strtoull(one, nullptr, 10), count = 1;
  Figures figures{};
  if (const char* schedule = std::getenv("ORVALEN_SIM_SCHEDULE")) {
    for (const std::string& v : Simulate(Parse(schedule), first)) ADD_FAILURE() << v;
    return;
  }
  for (uint64_t seed = first; seed < first + count; ++seed) {
    const Steps steps = Generate(seed);
    const std::vector<std::string> violations = Simulate(steps, seed, &figures);
    if (violations.empty()) continue;
    const Steps shortest = Shrink(steps, seed);
    std::string told;
    for (const std::string& v : Simulate(shortest, seed)) told += "\n  " + v;
    ADD_FAILURE() << "seed " << seed << ": " << violations[0] << "\nrepeat: ORVALEN_SIM_SEED=" << seed
                  << " orvalen_unit_tests --gtest_filter='Simulation.*'\nshortest schedule, the same seed: ORVALEN_SIM_SCHEDULE='"
                  << Text(shortest) << "'" << told;
    break;
  }
  std::printf("simulation: %lu schedules from seed %lu, %lu steps, %lu file calls, %lu faults, %lu kills, %lu "
              "violations\n",
              figures.schedules, first, figures.steps, figures.calls, figures.faults, figures.kills,
              figures.violations);
}

// Faults the simulation found, each a schedule from the fixed start that failed
// before its fix.
TEST(Simulation, FoundFaultsStayFixed) {
  struct Row {
    const char* fault;
    const char* schedule;
  };
  const Row rows[] = {
      {.fault = "a box in a session's end let the next one open and take its name", .schedule = "hL_ c0 w3600 d c1 w60 k"},
      {.fault = "a box in the save at a session's start ran ticks before its timers", .schedule = "F1 c0 w393"},
      {.fault = "a merged held log's failed save named the checkpoint by slot", .schedule = "c2 w60 d HL_ q c0 w1800 u fF7.0 d q"},
      {.fault = "recovered while the log was unreadable, then kept twice", .schedule = "c0 w700 fK5.0 d HLn w60 u c1 w60 d"},
      {.fault = "a lone .prev outlived saves, brought old content back", .schedule = "hL_ c0 w60 d c1 w60 fK6.0 d u fF6.0 c2 w60 d q c0 w60 d"},
      {.fault = "start-up missed the configuration's held .new: a first run", .schedule = "s c0 w60 fK13.0 d HCn c1 w60 d"},
      {.fault = "a session of a day, 23:59:59 to 00:00:40, recorded twice", .schedule = "w7166 c0 w86399 F1 w2 F0 w40 fK8.0 d"},
      {.fault = "a report kept the tail of one a held file left", .schedule = "r300 hR_ r200 u r18"},
      {.fault = "a start deleted the newest .prev beside a folder .new", .schedule = "hL_ c0 w60 d c1 w60 fK6.0 d u oLn c2 w60 d"},
  };
  for (const Row& row : rows) {
    for (const std::string& v : Simulate(Parse(row.schedule), 0)) ADD_FAILURE() << row.fault << ": " << v;
  }
}

}  // namespace
#endif

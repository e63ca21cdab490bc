// orvalen_make_log: writes a log of made-up sessions, and optionally a matching
// configuration, for measurements and tests that need a large or specific log.
//
//   orvalen_make_log [--records N] [--names "A,B,..."] [--until YYYY-MM-DD]
//                    [--per-day K] [--seconds S] [--log PATH] [--config PATH]
//                    [--show-main-dialog]
//
// Records are InUse, named after the names in turn, dated K a day going back from
// --until (default today), each S to 2*S - 1 seconds long (default 1800). The log
// goes to --log (default the program's own log file). --config writes the default
// configuration of an installed program, not a first run, with every name given a
// configured account (kinds card, limited, unlimited in turn), so no first-run or
// account notice appears; --show-main-dialog opens the main status dialog at start.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "monitor/system_clock.h"
#include "storage/fixed_text.h"
#include "storage/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"

namespace {

struct Options {
  uint32_t records = 100000;
  std::vector<std::string> names = {"Home ISP", "Work Dial-Up", "Holiday Card"};
  uint32_t year = 0, month = 0, day = 0;  // 0: today
  uint32_t perDay = 4;
  uint32_t seconds = 1800;
  std::string log;
  std::string config;
  bool showMainDialog = false;
};

int Usage(const char* problem) {
  std::fprintf(stderr,
               "orvalen_make_log: %s\n"
               "usage: orvalen_make_log [--records N] [--names \"A,B,...\"] [--until YYYY-MM-DD]\n"
               "                        [--per-day K] [--seconds S] [--log PATH] [--config PATH]\n"
               "                        [--show-main-dialog]\n",
               problem);
  return 2;
}

bool ParseCount(const char* text, uint32_t low, uint32_t high, uint32_t* value) {
  char* end = nullptr;
  const unsigned long parsed = std::strtoul(text, &end, 10);
  if (end == text || *end != '\0' || parsed < low || parsed > high) return false;
  *value = static_cast<uint32_t>(parsed);
  return true;
}

std::vector<std::string> SplitNames(const std::string& text) {
  std::vector<std::string> names;
  std::size_t start = 0;
  while (start <= text.size()) {
    const std::size_t comma = text.find(',', start);
    const std::string name = text.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
    if (!name.empty()) names.push_back(name);
    if (comma == std::string::npos) break;
    start = comma + 1;
  }
  return names;
}

// Days since 1 March of year 0 of the proleptic Gregorian calendar, and back.
int64_t DayNumber(int64_t year, int64_t month, int64_t day) {
  if (month <= 2) year -= 1;
  const int64_t era = year / 400;
  const int64_t yearOfEra = year - era * 400;
  const int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
}

void FromDayNumber(int64_t number, uint32_t* year, uint32_t* month, uint32_t* day) {
  const int64_t era = number / 146097;
  const int64_t dayOfEra = number - era * 146097;
  const int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int64_t shifted = (5 * dayOfYear + 2) / 153;
  const int64_t m = shifted < 10 ? shifted + 3 : shifted - 9;
  *day = static_cast<uint32_t>(dayOfYear - (153 * shifted + 2) / 5 + 1);
  *month = static_cast<uint32_t>(m);
  *year = static_cast<uint32_t>(yearOfEra + era * 400 + (m <= 2 ? 1 : 0));
}

// 1 March 0000 was a Wednesday (3).
uint32_t DayOfWeek(int64_t number) { return static_cast<uint32_t>((number % 7 + 3) % 7); }

bool ParseOptions(int argc, char** argv, Options* options) {
  for (int i = 1; i < argc; ++i) {
    const std::string option = argv[i];
    if (option == "--show-main-dialog") {
      options->showMainDialog = true;
      continue;
    }
    if (i + 1 >= argc) return false;
    const char* value = argv[++i];
    if (option == "--records") {
      // Past this the header's 32-bit byte length could not describe the log.
      if (!ParseCount(value, 0, kMaxLogRecords, &options->records)) return false;
    } else if (option == "--names") {
      options->names = SplitNames(value);
      if (options->names.empty()) return false;
    } else if (option == "--until") {
      unsigned year = 0, month = 0, day = 0;
      char extra = 0;
      if (std::sscanf(value, "%4u-%2u-%2u%c", &year, &month, &day, &extra) != 3) return false;
      if (year < 1980 || year > 2100 || month < 1 || month > 12 || day < 1 || day > 31) return false;
      options->year = year, options->month = month, options->day = day;
      // A day the month does not have (30 February) comes back as another date.
      uint32_t y = 0, m = 0, d = 0;
      FromDayNumber(DayNumber(year, month, day), &y, &m, &d);
      if (y != year || m != month || d != day) return false;
    } else if (option == "--per-day") {
      if (!ParseCount(value, 1, 1000, &options->perDay)) return false;
    } else if (option == "--seconds") {
      if (!ParseCount(value, 1, 86400, &options->seconds)) return false;
    } else if (option == "--log") {
      options->log = value;
    } else if (option == "--config") {
      options->config = value;
    } else {
      return false;
    }
  }
  return true;
}

void BuildLog(const Options& options) {
  sessionLog = SessionLog{};
  sessionLog.records.resize(options.records);
  const int64_t last = DayNumber(options.year, options.month, options.day);
  for (uint32_t i = 0; i < options.records; ++i) {
    // Newest last: record i is dated (records - 1 - i) / perDay days before --until.
    const int64_t number = last - static_cast<int64_t>((options.records - 1 - i) / options.perDay);
    SessionRecord& record = sessionLog.records[i];
    record.status = InUse;
    FromDayNumber(number, &record.year, &record.month, &record.day);
    record.dayOfWeek = DayOfWeek(number);
    const uint32_t duration = options.seconds + (i * 37u) % options.seconds;
    const uint32_t logOn = 8 * 3600 + (i % options.perDay) * 3 * 3600 + i % 600;
    const uint32_t logOff = (logOn + duration) % 86400;
    record.logOnHour = logOn / 3600, record.logOnMinute = logOn / 60 % 60, record.logOnSecond = logOn % 60;
    record.logOffHour = logOff / 3600, record.logOffMinute = logOff / 60 % 60, record.logOffSecond = logOff % 60;
    record.durationSeconds = static_cast<int32_t>(duration);
    CopyFixedText(record.connectionName, options.names[i % options.names.size()].c_str());
  }
  sessionLog.count = options.records;
  NoteLogChanged();
}

void BuildConfiguration(const Options& options) {
  std::memset(&settings, 0, sizeof settings);
  ApplyDefaultSettings();
  settings.showMainWindowAtStart = options.showMainDialog ? 1 : 0;
  for (std::size_t k = 0; k < options.names.size() && k < kAccountCount; ++k) {
    AccountRecord& account = settings.accounts[k];
    CopyFixedText(account.connectionName, options.names[k].c_str());
    account.configured = 1;
    account.kind = static_cast<uint32_t>(PrePaidCard + k % 3);
    account.hours = account.kind == PrePaidCard ? 100 : 20;
    if (account.kind == LimitedAccess) {
      account.monthlyCharge = 19.5f;
      account.excessPerMinute = 0.02f;
      account.vatPercent = 17.5f;
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!ParseOptions(argc, argv, &options)) return Usage("bad arguments");
  if (options.year == 0) {
    const LocalTime today = ReadLocalTime();
    options.year = today.year, options.month = today.month, options.day = today.day;
  }
  BuildLog(options);
  const std::string log = options.log.empty() ? LogFilePath() : options.log;
  if (!SaveLog(log.c_str())) {
    std::fprintf(stderr, "orvalen_make_log: cannot write %s\n", log.c_str());
    return 1;
  }
  std::printf("log: %s, %u records\n", log.c_str(), options.records);
  if (!options.config.empty()) {
    BuildConfiguration(options);
    if (!SaveSettingsTo(options.config.c_str())) {
      std::fprintf(stderr, "orvalen_make_log: cannot write %s\n", options.config.c_str());
      return 1;
    }
    std::printf("configuration: %s, %u accounts\n", options.config.c_str(),
                static_cast<unsigned>(options.names.size() < kAccountCount ? options.names.size() : kAccountCount));
  }
  return 0;
}

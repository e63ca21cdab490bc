// test_log_maker DESCRIPTION-FILE
//
// Writes the configuration (Windows directory, "Orvaconfig.bic") with the default
// settings and the log ("c:\program files\Orvalen\Orvabook_.ovb") from a
// description, one item a line, fields separated by tabs:
//
//   record  NAME YEAR MONTH DAY HH:MM:SS SECONDS [STATUS]   one session (status 1 in use)
//   repeat  COUNT NAME YEAR MONTH DAY HH:MM:SS SECONDS      COUNT identical sessions
//   spread  COUNT NAMES UNTIL PER-DAY SECONDS               COUNT made-up sessions for
//           measurements: NAMES (comma-separated) in turn, PER-DAY a day going back
//           from UNTIL (YYYY-MM-DD or "today"), each SECONDS to 2*SECONDS-1 long
//   account NAME KIND [HOURS MONTHLY EXCESS VAT]            a configured account entry
//   setting FIELD VALUE                                     logInitialFilter,
//           logSystemColours, showMainWindowAtStart, currencyName, previousConnection
//
// Lines that are empty or start with '#' are skipped. The day of week and the
// log-off time follow from the date, the log-on time and the duration. Exits 1 with
// a message for a line it cannot read.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "storage/account_record.h"
#include "storage/fixed_text.h"
#include "storage/program_paths.h"
#include "storage/session_log.h"
#include "storage/session_record.h"
#include "storage/settings.h"

namespace {

[[noreturn]] void Fail(int lineNumber, const std::string& why) {
  std::fprintf(stderr, "test_log_maker: line %d: %s\n", lineNumber, why.c_str());
  std::exit(1);
}

std::vector<std::string> SplitTabs(const std::string& line) {
  std::vector<std::string> fields;
  std::stringstream stream(line);
  std::string field;
  while (std::getline(stream, field, '\t')) fields.push_back(field);
  return fields;
}

long Number(const std::string& text, int lineNumber) {
  char* end = nullptr;
  const long value = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0') Fail(lineNumber, "not a number: \"" + text + "\"");
  return value;
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

// 0 = Sunday; 1 March 0000 was a Wednesday.
uint32_t DayOfWeekOf(int64_t number) { return static_cast<uint32_t>((number % 7 + 3) % 7); }
uint32_t DayOfWeek(int year, int month, int day) { return DayOfWeekOf(DayNumber(year, month, day)); }

void SetTimes(SessionRecord* record, long logOn, long duration) {
  record->logOnHour = static_cast<uint32_t>(logOn / 3600);
  record->logOnMinute = static_cast<uint32_t>(logOn / 60 % 60);
  record->logOnSecond = static_cast<uint32_t>(logOn % 60);
  const long off = (logOn + duration) % 86400;
  record->logOffHour = static_cast<uint32_t>(off / 3600);
  record->logOffMinute = static_cast<uint32_t>(off / 60 % 60);
  record->logOffSecond = static_cast<uint32_t>(off % 60);
  record->durationSeconds = static_cast<int32_t>(duration);
}

SessionRecord Record(const std::vector<std::string>& f, std::size_t at, int lineNumber) {
  // NAME YEAR MONTH DAY HH:MM:SS SECONDS
  if (f.size() < at + 6) Fail(lineNumber, "a session needs NAME YEAR MONTH DAY HH:MM:SS SECONDS");
  SessionRecord record = {};
  record.status = InUse;
  CopyFixedText(record.connectionName, f[at].c_str());
  const int year = static_cast<int>(Number(f[at + 1], lineNumber));
  const int month = static_cast<int>(Number(f[at + 2], lineNumber));
  const int day = static_cast<int>(Number(f[at + 3], lineNumber));
  if (month < 1 || month > 12 || day < 1 || day > 31) Fail(lineNumber, "no such date");
  record.year = static_cast<uint32_t>(year);
  record.month = static_cast<uint32_t>(month);
  record.day = static_cast<uint32_t>(day);
  record.dayOfWeek = DayOfWeek(year, month, day);
  unsigned hour = 0, minute = 0, second = 0;
  if (std::sscanf(f[at + 4].c_str(), "%u:%u:%u", &hour, &minute, &second) != 3 || hour > 23 || minute > 59 ||
      second > 59) {
    Fail(lineNumber, "not a time: \"" + f[at + 4] + "\"");
  }
  const long duration = Number(f[at + 5], lineNumber);
  if (duration < 0) Fail(lineNumber, "a negative duration");
  SetTimes(&record, static_cast<long>(hour) * 3600 + minute * 60 + second, duration);
  return record;
}

std::vector<std::string> SplitCommas(const std::string& text) {
  std::vector<std::string> names;
  std::stringstream stream(text);
  std::string name;
  while (std::getline(stream, name, ',')) {
    if (!name.empty()) names.push_back(name);
  }
  return names;
}

// Newest last: session i is dated (count - 1 - i) / perDay days before UNTIL.
void Spread(const std::vector<std::string>& f, int lineNumber) {
  if (f.size() != 6) Fail(lineNumber, "spread needs COUNT NAMES UNTIL PER-DAY SECONDS");
  const long count = Number(f[1], lineNumber);
  const std::vector<std::string> names = SplitCommas(f[2]);
  const long perDay = Number(f[4], lineNumber);
  const long seconds = Number(f[5], lineNumber);
  if (count < 0 || count > static_cast<long>(kMaxLogRecords) - 2) Fail(lineNumber, "spread count out of range");
  if (names.empty() || perDay < 1 || perDay > 1000 || seconds < 1 || seconds > 86400) {
    Fail(lineNumber, "spread needs names, 1 to 1000 a day and 1 to 86400 seconds");
  }
  int64_t last = 0;
  if (f[3] == "today") {
    SYSTEMTIME today;
    GetLocalTime(&today);
    last = DayNumber(today.wYear, today.wMonth, today.wDay);
  } else {
    unsigned year = 0, month = 0, day = 0;
    char extra = 0;
    if (std::sscanf(f[3].c_str(), "%4u-%2u-%2u%c", &year, &month, &day, &extra) != 3 || month < 1 || month > 12 ||
        day < 1 || day > 31) {
      Fail(lineNumber, "not a date: \"" + f[3] + "\"");
    }
    last = DayNumber(year, month, day);
  }
  const std::size_t first = sessionLog.records.size();
  sessionLog.records.resize(first + static_cast<std::size_t>(count));
  for (long i = 0; i < count; ++i) {
    const int64_t number = last - (count - 1 - i) / perDay;
    SessionRecord& record = sessionLog.records[first + static_cast<std::size_t>(i)];
    record.status = InUse;
    FromDayNumber(number, &record.year, &record.month, &record.day);
    record.dayOfWeek = DayOfWeekOf(number);
    const long logOn = 8 * 3600 + (i % perDay) * 3 * 3600 % 57600 + i % 600;
    SetTimes(&record, logOn, seconds + (i * 37) % seconds);
    CopyFixedText(record.connectionName, names[static_cast<std::size_t>(i) % names.size()].c_str());
  }
}

void AddAccount(const std::vector<std::string>& f, int lineNumber) {
  if (f.size() < 3) Fail(lineNumber, "an account needs NAME KIND");
  for (AccountRecord& account : settings.accounts) {
    if (account.connectionName[0] != '\0') continue;
    account.configured = 1;
    CopyFixedText(account.connectionName, f[1].c_str());
    account.kind = static_cast<uint32_t>(Number(f[2], lineNumber));
    if (f.size() > 3) account.hours = static_cast<uint32_t>(Number(f[3], lineNumber));
    if (f.size() > 4) account.monthlyCharge = std::strtof(f[4].c_str(), nullptr);
    if (f.size() > 5) account.excessPerMinute = std::strtof(f[5].c_str(), nullptr);
    if (f.size() > 6) account.vatPercent = std::strtof(f[6].c_str(), nullptr);
    return;
  }
  Fail(lineNumber, "all account entries are taken");
}

void ApplySetting(const std::vector<std::string>& f, int lineNumber) {
  if (f.size() != 3) Fail(lineNumber, "a setting needs FIELD VALUE");
  const std::string& field = f[1];
  const std::string& value = f[2];
  if (field == "logInitialFilter") {
    settings.logInitialFilter = static_cast<uint8_t>(Number(value, lineNumber));
  } else if (field == "logSystemColours") {
    settings.logSystemColours = static_cast<uint32_t>(Number(value, lineNumber));
  } else if (field == "showMainWindowAtStart") {
    settings.showMainWindowAtStart = static_cast<uint8_t>(Number(value, lineNumber));
  } else if (field == "currencyName") {
    CopyFixedText(settings.currencyName, value.c_str());
  } else if (field == "previousConnection") {
    CopyFixedText(settings.previousSession.connectionName, value.c_str());
  } else {
    Fail(lineNumber, "unknown setting \"" + field + "\"");
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: test_log_maker DESCRIPTION-FILE\n");
    return 2;
  }
  std::ifstream description(argv[1]);
  if (!description) {
    std::fprintf(stderr, "test_log_maker: cannot read %s\n", argv[1]);
    return 1;
  }
  ApplyDefaultSettings();
  sessionLog = SessionLog{};
  std::string line;
  int lineNumber = 0;
  while (std::getline(description, line)) {
    ++lineNumber;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line[0] == '#') continue;
    const std::vector<std::string> f = SplitTabs(line);
    if (f[0] == "record") {
      SessionRecord record = Record(f, 1, lineNumber);
      if (f.size() > 7) record.status = static_cast<uint8_t>(Number(f[7], lineNumber));
      sessionLog.records.push_back(record);
    } else if (f[0] == "repeat") {
      if (f.size() < 2) Fail(lineNumber, "repeat needs COUNT");
      const long count = Number(f[1], lineNumber);
      if (count < 0 || count > 1000000) Fail(lineNumber, "repeat count out of range");
      const SessionRecord record = Record(f, 2, lineNumber);
      sessionLog.records.insert(sessionLog.records.end(), static_cast<std::size_t>(count), record);
    } else if (f[0] == "spread") {
      Spread(f, lineNumber);
    } else if (f[0] == "account") {
      AddAccount(f, lineNumber);
    } else if (f[0] == "setting") {
      ApplySetting(f, lineNumber);
    } else {
      Fail(lineNumber, "unknown item \"" + f[0] + "\"");
    }
  }
  sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());

  CreateDirectoryA(ProgramFolder().c_str(), nullptr);
  if (!SaveSettingsTo(SettingsPath())) {
    std::fprintf(stderr, "test_log_maker: cannot write %s\n", SettingsPath());
    return 1;
  }
  if (!SaveLog(LogFilePath().c_str())) {
    std::fprintf(stderr, "test_log_maker: cannot write %s\n", LogFilePath().c_str());
    return 1;
  }
  std::printf("%u records, %s\n", sessionLog.count, LogFilePath().c_str());
  return 0;
}

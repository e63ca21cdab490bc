// test_log_maker DESCRIPTION-FILE
//
// Writes the configuration (Windows directory, "Orvaconfig.bic") with the default
// settings and the log ("c:\program files\Orvalen\Orvabook_.ovb") from a
// description, one item a line, fields separated by tabs:
//
//   record  NAME YEAR MONTH DAY HH:MM:SS SECONDS [STATUS]   one session (status 1 in use)
//   repeat  COUNT NAME YEAR MONTH DAY HH:MM:SS SECONDS      COUNT identical sessions
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

// 0 = Sunday (Sakamoto's method).
uint32_t DayOfWeek(int year, int month, int day) {
  static const int offsets[] = {0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
  if (month < 3) year -= 1;
  return static_cast<uint32_t>((year + year / 4 - year / 100 + year / 400 + offsets[month - 1] + day) % 7);
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
  record.logOnHour = hour;
  record.logOnMinute = minute;
  record.logOnSecond = second;
  const long off = (static_cast<long>(hour) * 3600 + minute * 60 + second + duration) % 86400;
  record.logOffHour = static_cast<uint32_t>(off / 3600);
  record.logOffMinute = static_cast<uint32_t>(off / 60 % 60);
  record.logOffSecond = static_cast<uint32_t>(off % 60);
  record.durationSeconds = static_cast<int32_t>(duration);
  return record;
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

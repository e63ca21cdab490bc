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
//           from UNTIL ("today" or YYYY-MM-DD), each SECONDS to 2*SECONDS-1 long
//   account NAME KIND [HOURS MONTHLY EXCESS VAT]            a configured account entry
//   setting currencyName|showMainWindowAtStart|alarmOn|alarmRepeatMinutes VALUE
//
// The day of week and the log-off time follow from the date, the log-on time and
// the duration. The descriptions are the tests' own: they are not checked.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "storage/fixed_text.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"

namespace {

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> fields;
  std::stringstream stream(text);
  for (std::string field; std::getline(stream, field, separator);) fields.push_back(field);
  return fields;
}

long Number(const std::string& text) { return std::strtol(text.c_str(), nullptr, 10); }

// Days since 1 March of year 0, and back (the proleptic Gregorian calendar).
int64_t DayNumber(int64_t year, int64_t month, int64_t day) {
  if (month <= 2) year -= 1;
  const int64_t era = year / 400, yearOfEra = year - era * 400;
  const int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
}

void SetDate(SessionRecord* record, int64_t number) {
  const int64_t era = number / 146097, dayOfEra = number - era * 146097;
  const int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int64_t shifted = (5 * dayOfYear + 2) / 153, month = shifted < 10 ? shifted + 3 : shifted - 9;
  record->day = static_cast<uint32_t>(dayOfYear - (153 * shifted + 2) / 5 + 1);
  record->month = static_cast<uint32_t>(month);
  record->year = static_cast<uint32_t>(yearOfEra + era * 400 + (month <= 2 ? 1 : 0));
  record->dayOfWeek = static_cast<uint32_t>((number % 7 + 3) % 7);
}

void SetTimes(SessionRecord* record, long logOn, long duration) {
  const long off = (logOn + duration) % 86400;
  record->logOnHour = static_cast<uint32_t>(logOn / 3600);
  record->logOnMinute = static_cast<uint32_t>(logOn / 60 % 60);
  record->logOnSecond = static_cast<uint32_t>(logOn % 60);
  record->logOffHour = static_cast<uint32_t>(off / 3600);
  record->logOffMinute = static_cast<uint32_t>(off / 60 % 60);
  record->logOffSecond = static_cast<uint32_t>(off % 60);
  record->durationSeconds = static_cast<int32_t>(duration);
}

// NAME YEAR MONTH DAY HH:MM:SS SECONDS from field `at` on.
SessionRecord Record(const std::vector<std::string>& f, std::size_t at) {
  SessionRecord record = {};
  record.status = InUse;
  CopyFixedText(record.connectionName, f[at].c_str());
  SetDate(&record, DayNumber(Number(f[at + 1]), Number(f[at + 2]), Number(f[at + 3])));
  unsigned hour = 0, minute = 0, second = 0;
  std::sscanf(f[at + 4].c_str(), "%u:%u:%u", &hour, &minute, &second);
  SetTimes(&record, static_cast<long>(hour * 3600 + minute * 60 + second), Number(f[at + 5]));
  return record;
}

void Spread(const std::vector<std::string>& f) {
  const long count = Number(f[1]), perDay = Number(f[4]), seconds = Number(f[5]);
  const std::vector<std::string> names = Split(f[2], ',');
  SYSTEMTIME today;
  GetLocalTime(&today);
  const std::vector<std::string> until = Split(f[3], '-');
  const int64_t last = f[3] == "today" ? DayNumber(today.wYear, today.wMonth, today.wDay)
                                       : DayNumber(Number(until[0]), Number(until[1]), Number(until[2]));
  for (long i = 0; i < count; ++i) {
    SessionRecord record = {};
    record.status = InUse;
    SetDate(&record, last - (count - 1 - i) / perDay);
    SetTimes(&record, 8 * 3600 + (i % perDay) * 3 * 3600 % 57600 + i % 600, seconds + (i * 37) % seconds);
    CopyFixedText(record.connectionName, names[static_cast<std::size_t>(i) % names.size()].c_str());
    sessionLog.records.push_back(record);
  }
}

void AddAccount(const std::vector<std::string>& f) {
  for (AccountRecord& account : settings.accounts) {
    if (account.connectionName[0] != '\0') continue;
    account.configured = 1;
    CopyFixedText(account.connectionName, f[1].c_str());
    account.kind = static_cast<uint32_t>(Number(f[2]));
    if (f.size() > 6) {
      account.monthlyCharge = std::strtof(f[4].c_str(), nullptr);
      account.excessPerMinute = std::strtof(f[5].c_str(), nullptr);
      account.vatPercent = std::strtof(f[6].c_str(), nullptr);
    }
    if (f.size() > 3) account.hours = static_cast<uint32_t>(Number(f[3]));
    return;
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::ifstream description(argc == 2 ? argv[1] : "");
  if (!description) {
    std::fprintf(stderr, "usage: test_log_maker DESCRIPTION-FILE\n");
    return 2;
  }
  ApplyDefaultSettings();
  for (std::string line; std::getline(description, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::vector<std::string> f = Split(line, '\t');
    if (f.empty()) continue;
    if (f[0] == "record") {
      sessionLog.records.push_back(Record(f, 1));
      if (f.size() > 7) sessionLog.records.back().status = static_cast<uint8_t>(Number(f[7]));
    } else if (f[0] == "repeat") {
      sessionLog.records.insert(sessionLog.records.end(), static_cast<std::size_t>(Number(f[1])), Record(f, 2));
    } else if (f[0] == "spread") {
      Spread(f);
    } else if (f[0] == "account") {
      AddAccount(f);
    } else if (f[0] == "setting" && f[1] == "currencyName") {
      CopyFixedText(settings.currencyName, f[2].c_str());
    } else if (f[0] == "setting" && f[1] == "showMainWindowAtStart") {
      settings.showMainWindowAtStart = static_cast<uint8_t>(Number(f[2]));
    } else if (f[0] == "setting" && f[1] == "alarmOn") {
      settings.alarmOn = static_cast<uint8_t>(Number(f[2]));
    } else if (f[0] == "setting" && f[1] == "alarmRepeatMinutes") {  // repeats every 0 h and that many minutes
      settings.alarmRepeatHours = 0;
      settings.alarmRepeatMinutes = static_cast<int8_t>(Number(f[2]));
    }
  }
  sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());
  CreateDirectoryA(ProgramFolder().c_str(), nullptr);
  if (!SaveSettingsTo(SettingsPath()) || !SaveLog(LogFilePath().c_str())) {
    std::fprintf(stderr, "test_log_maker: cannot write the files\n");
    return 1;
  }
  std::printf("%u records, %s\n", sessionLog.count, LogFilePath().c_str());
  return 0;
}

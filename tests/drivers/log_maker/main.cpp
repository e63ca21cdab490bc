// test_log_maker DESCRIPTION-FILE
//
// Writes the configuration (Windows directory, "Orvaconfig.bic") with the default
// settings and the log ("c:\program files\Orvalen\Orvabook_.ovb") from a
// description, one item a line, fields separated by tabs:
//
//   record  NAME YEAR MONTH DAY HH:MM:SS SECONDS [STATUS]   one session (status 1 in use)
//   repeat  COUNT NAME YEAR MONTH DAY HH:MM:SS SECONDS      COUNT identical sessions
//   spread  COUNT NAMES today PER-DAY SECONDS               COUNT made-up sessions for
//           measurements: NAMES (comma-separated) in turn, PER-DAY a day going back
//           from today, each SECONDS to 2*SECONDS-1 long
//   account NAME KIND [HOURS MONTHLY EXCESS VAT [WARN-%]]   a configured account entry
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

#include "platform/program_paths.h"
#include "storage/billing_period.h"
#include "storage/fixed_text.h"
#include "storage/storage.h"

namespace {

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> fields;
  std::stringstream stream(text);
  for (std::string field; std::getline(stream, field, separator);) fields.push_back(field);
  return fields;
}

long Number(const std::string& text) { return std::strtol(text.c_str(), nullptr, 10); }

// A session of the given date (daysBack days before it), log-on time and length.
SessionRecord Session(const char* name, CalendarDate date, long daysBack, long logOn, long duration) {
  const int64_t day = DayNumber(date) - daysBack;
  date = DateOfDayNumber(day);
  const long off = (logOn + duration) % 86400;
  SessionRecord record = {InUse, {}, static_cast<uint32_t>((day % 7 + 11) % 7), date.month, date.day, date.year,  // 1 Jan 1970: a Thursday
                          static_cast<uint32_t>(logOn / 3600), static_cast<uint32_t>(logOn / 60 % 60), static_cast<uint32_t>(logOn % 60),
                          static_cast<uint32_t>(off / 3600), static_cast<uint32_t>(off / 60 % 60), static_cast<uint32_t>(off % 60),
                          0.0f, static_cast<int32_t>(duration), {}, {}};
  CopyFixedText(record.connectionName, name);
  return record;
}

// NAME YEAR MONTH DAY HH:MM:SS SECONDS from field `at` on.
SessionRecord Record(const std::vector<std::string>& f, std::size_t at) {
  CalendarDate date = {};
  unsigned hour = 0, minute = 0, second = 0;
  const std::string fields = f[at + 1] + " " + f[at + 2] + " " + f[at + 3] + " " + f[at + 4];
  std::sscanf(fields.c_str(), "%u %u %u %u:%u:%u", &date.year, &date.month, &date.day, &hour, &minute, &second);
  return Session(f[at].c_str(), date, 0, static_cast<long>(hour * 3600 + minute * 60 + second), Number(f[at + 5]));
}

void AddAccount(Settings& settings, const std::vector<std::string>& f) {
  for (AccountRecord& account : settings.accounts) {
    if (account.connectionName[0] != '\0') continue;
    account.configured = 1;
    CopyFixedText(account.connectionName, f[1].c_str());
    account.kind = static_cast<uint32_t>(Number(f[2]));
    if (f.size() > 3) account.hours = static_cast<uint32_t>(Number(f[3]));
    if (f.size() > 6) {
      account.monthlyCharge = std::strtof(f[4].c_str(), nullptr);
      account.excessPerMinute = std::strtof(f[5].c_str(), nullptr);
      account.vatPercent = std::strtof(f[6].c_str(), nullptr);
    }
    if (f.size() > 7) account.warnPercent = static_cast<uint8_t>(Number(f[7]));
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
  Storage store;
  store.ApplyDefaultSettings();
  std::vector<SessionRecord>& records = store.sessionLog.records;
  for (std::string line; std::getline(description, line);) {
    const std::vector<std::string> f = Split(line, '\t');
    const std::string setting = f.size() > 2 && f[0] == "setting" ? f[1] : "";
    if (f.empty()) continue;
    if (f[0] == "record") {
      records.push_back(Record(f, 1));
      if (f.size() > 7) records.back().status = static_cast<uint8_t>(Number(f[7]));
    } else if (f[0] == "repeat") {
      records.insert(records.end(), static_cast<std::size_t>(Number(f[1])), Record(f, 2));
    } else if (f[0] == "spread") {
      const long count = Number(f[1]), perDay = Number(f[4]), seconds = Number(f[5]);
      const std::vector<std::string> names = Split(f[2], ',');
      SYSTEMTIME now;
      GetLocalTime(&now);
      const CalendarDate today = {now.wYear, now.wMonth, now.wDay};
      for (long i = 0; i < count; ++i) {
        records.push_back(Session(names[static_cast<std::size_t>(i) % names.size()].c_str(), today, (count - 1 - i) / perDay,
                                  8 * 3600 + (i % perDay) * 3 * 3600 % 57600 + i % 600, seconds + (i * 37) % seconds));
      }
    } else if (f[0] == "account") {
      AddAccount(store.settings, f);
    } else if (setting == "currencyName") {
      CopyFixedText(store.settings.currencyName, f[2].c_str());
    } else if (setting == "showMainWindowAtStart") {
      store.settings.showMainWindowAtStart = static_cast<uint8_t>(Number(f[2]));
    } else if (setting == "alarmOn") {
      store.settings.alarmOn = static_cast<uint8_t>(Number(f[2]));
    } else if (setting == "alarmRepeatMinutes") {  // repeats every 0 h and that many minutes
      store.settings.alarmRepeatHours = 0;
      store.settings.alarmRepeatMinutes = static_cast<int8_t>(Number(f[2]));
    }
  }
  store.sessionLog.count = static_cast<uint32_t>(records.size());
  CreateDirectoryA(ProgramFolder().c_str(), nullptr);
  if (!store.SaveSettingsTo(SettingsPath()) || !store.SaveLog(LogFilePath().c_str())) {
    std::fprintf(stderr, "test_log_maker: cannot write the files\n");
    return 1;
  }
  std::printf("%u records, %s\n", store.sessionLog.count, LogFilePath().c_str());
  return 0;
}

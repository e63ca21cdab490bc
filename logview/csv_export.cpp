#include "logview/csv_export.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <map>

#include "logview/log_view_lines.h"
#include "platform/binary_file.h"
#include "storage/billing_period.h"
#include "storage/fixed_text.h"
#include "storage/storage.h"

namespace {

bool BreaksCsv(char c) { return c == '\0' || c == '"' || c == '\r' || c == '\n'; }

void AppendField(std::string& line, const std::string& text, const CsvFormat& format) {
  AppendCsvField(line, text.data(), text.size(), format);
}

template <typename... Args>
std::string Format(const char* format, Args... args) {
  char text[64];
  std::snprintf(text, sizeof text, format, args...);
  return text;
}

std::string IsoDate(const CalendarDate& date) {
  return Format("%04u-%02u-%02u", static_cast<unsigned>(date.year), static_cast<unsigned>(date.month),
                static_cast<unsigned>(date.day));
}

std::string ClockText(uint32_t hour, uint32_t minute, uint32_t second) {
  return Format("%02u:%02u:%02u", static_cast<unsigned>(hour), static_cast<unsigned>(minute),
                static_cast<unsigned>(second));
}

std::string DurationText(int64_t seconds) {
  if (seconds < 0) seconds = 0;
  return Format("%lld:%02d:%02d", static_cast<long long>(seconds / 3600), static_cast<int>(seconds % 3600 / 60),
                static_cast<int>(seconds % 60));
}

// A figure with two decimals and the Regional Settings' decimal symbol.
std::string Decimal(double value, const CsvFormat& format) {
  std::string text = Format("%.2f", value);
  std::replace(text.begin(), text.end(), '.', format.decimal);
  return text;
}

std::string PeriodField(const BillingPeriod& period) {
  return period.id == kNoPeriod ? std::string() : IsoDate(period.first) + "/" + IsoDate(period.last);
}

void AppendRow(std::string& out, std::initializer_list<std::string> fields, const CsvFormat& format) {
  bool first = true;
  for (const std::string& field : fields) {
    if (!first) out += format.separator;
    first = false;
    AppendField(out, field, format);
  }
  out += "\r\n";
}

std::string NameOf(const SessionRecord& record) {
  return std::string(record.connectionName, FixedTextLength(record.connectionName, kRecordNameSize));
}

std::string LowerName(std::string name) {
  for (char& c : name) c = LowerAscii(c);
  return name;
}

// The account's billing-period start day for a record's connection; the last
// name asked for is remembered, as records of one connection tend to follow on.
class StartDays {
 public:
  explicit StartDays(const Storage& store) : store_(store) {}
  uint32_t For(const std::string& name) {
    if (name != lastName_) {
      lastName_ = name;
      const int k = store_.FindAccount(name.c_str());
      const AccountRecord* account = k == kNoAccount ? nullptr : &store_.settings.accounts[k];
      lastDay_ = account != nullptr && account->kind == LimitedAccess ? account->periodStartDay : 0;
    }
    return lastDay_;
  }

 private:
  const Storage& store_;
  std::string lastName_ = std::string(1, '\0');
  uint32_t lastDay_ = 0;
};

}  // namespace

CsvFormat MakeCsvFormat(const char* listSeparator, const char* decimalSymbol) {
  CsvFormat format;
  if (listSeparator != nullptr && !BreaksCsv(listSeparator[0])) format.separator = listSeparator[0];
  if (decimalSymbol != nullptr && !BreaksCsv(decimalSymbol[0]) && decimalSymbol[0] != format.separator) {
    format.decimal = decimalSymbol[0];
  }
  if (format.decimal == format.separator) format.decimal = format.separator == '.' ? ',' : '.';
  return format;
}

void AppendCsvField(std::string& line, const char* text, std::size_t length, const CsvFormat& format) {
  bool quote = false;
  for (std::size_t i = 0; i < length && !quote; ++i) {
    quote = text[i] == format.separator || text[i] == '"' || text[i] == '\r' || text[i] == '\n';
  }
  if (!quote) {
    line.append(text, length);
    return;
  }
  line += '"';
  for (std::size_t i = 0; i < length; ++i) {
    if (text[i] == '"') line += '"';
    line += text[i];
  }
  line += '"';
}

std::vector<uint32_t> FilteredRecordIndexes(const Storage& store, const char* connection, const char* month,
                                            char* year) {
  const LogFilter filter = MakeLogFilter(connection, month, year);
  std::vector<uint32_t> indexes;
  const std::size_t count = std::min<std::size_t>(store.sessionLog.count, store.sessionLog.records.size());
  for (std::size_t i = 0; i < count; ++i) {
    if (RecordMatches(filter, store.sessionLog.records[i])) indexes.push_back(static_cast<uint32_t>(i));
  }
  return indexes;
}

std::string SessionsCsv(const Storage& store, const std::vector<uint32_t>& records, const CsvFormat& format) {
  std::string out;
  out.reserve(128 + records.size() * 110);
  AppendRow(out,
            {"Connection", "Log-on date", "Log-on time", "Log-off date", "Log-off time", "Duration", "Seconds",
             "Billing period"},
            format);
  StartDays periodDays(store);
  for (const uint32_t i : records) {
    const SessionRecord& record = store.sessionLog.records[i];
    const std::string name = NameOf(record);
    const uint32_t day = periodDays.For(name);
    AppendRow(out,
              {name, IsoDate(LogOnDate(record)), ClockText(record.logOnHour, record.logOnMinute, record.logOnSecond),
               IsoDate(CalendarDate{record.year, record.month, record.day}),
               ClockText(record.logOffHour, record.logOffMinute, record.logOffSecond),
               DurationText(record.durationSeconds), std::to_string(record.durationSeconds),
               PeriodField(PeriodById(day, CountingPeriodId(day, record)))},
              format);
  }
  return out;
}

std::string PeriodSummaryCsv(Storage& store, const std::vector<uint32_t>& records, const CsvFormat& format) {
  struct Group {
    int count = 0;
    int64_t seconds = 0;
  };
  struct Connection {
    std::string name;                  // as its first listed record spells it
    uint32_t day = 0;                  // the billing period's start day
    int64_t cardFrom = 0;              // a card's recharge
    std::map<uint32_t, Group> listed;  // the listed sessions by period
    std::map<uint32_t, int32_t> periodSeconds;  // every session of the log, as the figures count them
    std::map<uint32_t, float> cardSeconds;      // the card's share of them
  };
  std::map<std::string, Connection> connections;
  StartDays periodDays(store);
  const LocalTime now = ReadLocalTime();
  for (const uint32_t i : records) {
    const SessionRecord& record = store.sessionLog.records[i];
    const std::string name = NameOf(record);
    Connection& connection = connections[LowerName(name)];
    if (connection.name.empty()) {
      connection.name = name;
      connection.day = periodDays.For(name);
      connection.cardFrom = store.UsageWindowFor(name.c_str(), now).cardFrom;
    }
    Group& group = connection.listed[CountingPeriodId(connection.day, record)];
    ++group.count;
    group.seconds += record.durationSeconds;
  }
  // One walk of the whole log gives each period's figures as the account arithmetic counts them.
  const std::size_t count = std::min<std::size_t>(store.sessionLog.count, store.sessionLog.records.size());
  for (std::size_t i = 0; i < count && !connections.empty(); ++i) {
    const SessionRecord& record = store.sessionLog.records[i];
    if (record.status == Deleted) continue;
    const auto found = connections.find(LowerName(NameOf(record)));
    if (found == connections.end()) continue;
    Connection& connection = found->second;
    const uint32_t id = CountingPeriodId(connection.day, record);
    int32_t& seconds = connection.periodSeconds[id];
    seconds = static_cast<int32_t>(static_cast<uint32_t>(seconds) + static_cast<uint32_t>(record.durationSeconds));
    if (connection.cardFrom == 0 || LogOnMoment(record) >= connection.cardFrom) {
      connection.cardSeconds[id] += static_cast<float>(record.durationSeconds);
    }
  }

  std::string out;
  AppendRow(out,
            {"Connection", "Period start", "Period end", "Sessions", "Duration", "Seconds", "Minutes beyond included",
             "Cost with VAT", "Card hours left"},
            format);
  for (auto& entry : connections) {
    Connection& connection = entry.second;
    for (const auto& [id, group] : connection.listed) {
      const BillingPeriod period = PeriodById(connection.day, id);
      LogUsageSums sums;
      sums.found = true;
      sums.monthSeconds = connection.periodSeconds[id];
      for (const auto& [cardId, seconds] : connection.cardSeconds) {
        if (cardId <= id) sums.allSeconds += seconds;  // the card's sessions up to the period's end
      }
      UsageSummary usage;
      const float result = store.UsageFromLogSums(connection.name.c_str(), sums, usage);
      const bool limited = usage.kind == LimitedAccess, card = usage.kind == PrePaidCard;
      const bool dated = id != kNoPeriod;
      AppendRow(out,
                {connection.name, dated ? IsoDate(period.first) : "", dated ? IsoDate(period.last) : "",
                 std::to_string(group.count), DurationText(group.seconds), std::to_string(group.seconds),
                 limited ? std::to_string(usage.excessMinutes) : "",
                 limited ? Decimal(static_cast<double>(usage.cost), format) : "",
                 card ? Decimal(static_cast<double>(result) / 3600.0, format) : ""},
                format);
    }
  }
  return out;
}

std::string DefaultExportName(const LocalTime& now) {
  return "Orvalen log " + IsoDate(CalendarDate{now.year, now.month, now.day}) + ".csv";
}

bool WriteExportFile(const char* path, const std::string& text) {
  const WriteBlock block = {text.data(), text.size()};
  return SaveWholeFile(path, &block, 1, false);
}

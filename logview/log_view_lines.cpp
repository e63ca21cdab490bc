#include "logview/log_view_lines.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "logview/text_report.h"
#include "monitor/dial_up_probe.h"
#include "platform/system_clock.h"
#include "monitor/time_text.h"
#include "storage/fixed_text.h"
#include "storage/storage.h"

const char* const kMonthChoices[kMonthChoiceCount] = {"ALL", "JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                      "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
const char* const kYearChoices[kYearChoiceCount] = {"ALL ", "1999", "2000", "2001", "2002",
                                                    "2003", "2004", "2005", "2006", "2007",
                                                    "2008", "2009", "2010", "2011"};

namespace {

std::size_t NameLength(const SessionRecord& record) {
  return FixedTextLength(record.connectionName, kRecordNameSize);
}

// The four formatted values of a record, built once for both the list and the
// report. Damaged values (a 32-bit hour of 4,000,000,000) still fit.
struct RecordTexts {
  char date[64];
  char logOff[64];
  char logOn[64];
  char duration[64];

  RecordTexts(const SessionRecord& record, bool twentyFourHour) {
    FormatDate(date, record.dayOfWeek, record.month, record.day, record.year);
    FormatClock(logOff, record.logOffHour, record.logOffMinute, record.logOffSecond, twentyFourHour);
    FormatClock(logOn, record.logOnHour, record.logOnMinute, record.logOnSecond, twentyFourHour);
    int32_t hours = 0, minutes = 0, seconds = 0;
    SplitSeconds(record.durationSeconds, &hours, &minutes, &seconds);
    FormatDuration(duration, hours, minutes, seconds);
  }
};

// Label and value joined in a scratch buffer wide enough for any label, a full
// record name or a formatted value.
class LineBuilder {
 public:
  LineBuilder& Join(const char* label, const char* value, std::size_t valueLength) {
    const std::size_t labelLength = std::strlen(label);
    std::memcpy(buffer_, label, labelLength);
    std::memcpy(buffer_ + labelLength, value, valueLength);
    length_ = labelLength + valueLength;
    buffer_[length_] = '\0';
    return *this;
  }
  LineBuilder& Join(const char* label, const char* value) { return Join(label, value, std::strlen(value)); }
  const char* text() const { return buffer_; }
  std::size_t length() const { return length_; }

 private:
  char buffer_[64 + kRecordNameSize + 64];
  std::size_t length_ = 0;
};

void Add(TextLines& lines, const LineBuilder& line) { lines.Add(line.text(), line.length()); }
void Append(const LineBuilder& line) { AppendReportLine(line.text(), line.length(), false); }

void AddListLines(const SessionRecord& record, const RecordTexts& texts, TextLines& lines) {
  LineBuilder line;
  Add(lines, line.Join(" Date                     : ", texts.date));
  Add(lines, line.Join(" Connection Used :  ", record.connectionName, NameLength(record)));
  Add(lines, line.Join(" Log Off Time        : ", texts.logOff));
  Add(lines, line.Join(" Log On Time        : ", texts.logOn));
  Add(lines, line.Join(" Duration               : ", texts.duration));
  lines.Add(kLogRule, sizeof kLogRule - 1);
}

void AddReportLines(const SessionRecord& record, const RecordTexts& texts) {
  LineBuilder line;
  Append(line.Join(" Date\t\t\t", texts.date));
  Append(line.Join(" Connection Used\t", record.connectionName, NameLength(record)));
  Append(line.Join(" Log Off Time\t\t", texts.logOff));
  Append(line.Join(" Log On Time\t\t", texts.logOn));
  Append(line.Join(" Duration\t\t", texts.duration));
  AppendReportLine(kReportRule, sizeof kReportRule - 1, false);
}

// Rough bytes per listed record, for reserving before the pass.
constexpr std::size_t kListBytesPerRecord = 400;
constexpr std::size_t kReportBytesPerRecord = 300;
constexpr std::size_t kReportHeaderBytes = 256;

}  // namespace

void RememberFilter(const char* connection, const char* month, const char* year) {
  CopyFixedText(logViewState.LastFilter.connection, connection);
  CopyFixedText(logViewState.LastFilter.month, month);
  CopyFixedText(logViewState.LastFilter.year, year);
}

const char* MonthAbbreviation(uint32_t month) {
  return (month >= 1 && month <= 12) ? kMonthChoices[month] : "ERROR";
}

uint32_t MonthNumber(const char* text) {
  if (text == nullptr) return 255;
  for (uint32_t month = 1; month <= 12; ++month) {
    if (EqualsIgnoringCase(text, kMonthChoices[month])) return month;
  }
  return 255;
}

std::vector<std::string> YearChoices(uint32_t currentYear) {
  std::vector<std::string> years(std::begin(kYearChoices), std::end(kYearChoices));
  // A clock set to a nonsense year must not make the box enormous.
  constexpr uint32_t kFixedLastYear = 2011;
  constexpr uint32_t kLastOfferedYear = 9999;
  const uint32_t last = std::min(currentYear, kLastOfferedYear);
  for (uint32_t year = kFixedLastYear + 1; year <= last; ++year) years.push_back(std::to_string(year));
  return years;
}

std::string CurrentYearText() {
  char text[16];
  std::snprintf(text, sizeof text, "%d", static_cast<int>(ReadLocalTime().year));
  return text;
}

LogFilter MakeLogFilter(const char* connection, const char* month, char* year) {
  if (year[0] == '\0') CopyFixedText(year, kFilterYearSize, CurrentYearText().c_str());
  LogFilter filter;
  int yearNumber = 0;  // stays 0 when the text holds no number ("ALL ")
  std::sscanf(year, "%d", &yearNumber);
  filter.year = static_cast<uint32_t>(yearNumber);
  filter.month = MonthNumber(month);
  filter.allConnections = EqualsIgnoringCase(connection, kAllConnections);
  filter.allMonths = EqualsIgnoringCase(month, kAllMonths);
  filter.allYears = EqualsIgnoringCase(year, kAllYears);
  filter.connection = connection;
  filter.connectionLength = std::strlen(connection);
  return filter;
}

bool RecordMatches(const LogFilter& filter, const SessionRecord& record) {
  if (record.status == Blank || record.status == Deleted) return false;
  if (!filter.allMonths && record.month != filter.month) return false;
  if (!filter.allYears && record.year != filter.year) return false;
  if (filter.allConnections) return true;
  // Only a fully specific filter insists on the name's letter case.
  if (!filter.allMonths && !filter.allYears) {
    return NameLength(record) == filter.connectionLength &&
           std::memcmp(record.connectionName, filter.connection, filter.connectionLength) == 0;
  }
  return FixedTextEqualsIgnoringCase(record.connectionName, kRecordNameSize, filter.connection);
}

void TextLines::Clear() {
  text_.clear();
  starts_.clear();
}

void TextLines::Reserve(std::size_t lineCount, std::size_t bytes) {
  starts_.reserve(lineCount);
  text_.reserve(bytes);
}

void TextLines::Add(const char* text, std::size_t length) {
  starts_.push_back(text_.size());
  text_.append(text, length);
  text_.push_back('\0');
}

void TextLines::Add(const char* text) { Add(text, std::strlen(text)); }

void AddListLines(const SessionRecord& record, bool twentyFourHour, TextLines& lines) {
  AddListLines(record, RecordTexts(record, twentyFourHour), lines);
}

void AddReportLines(const SessionRecord& record, bool twentyFourHour) {
  AddReportLines(record, RecordTexts(record, twentyFourHour));
}

bool BuildLogListing(const Storage& store, const char* connection, const char* month, char* year, LogListing& listing) {
  const LogFilter filter = MakeLogFilter(connection, month, year);
  const std::vector<SessionRecord>& records = store.sessionLog.records;
  const std::size_t count = std::min<std::size_t>(store.sessionLog.count, records.size());

  // A first pass only counts, so that the lines and the report grow once.
  std::size_t matching = 0;
  for (std::size_t i = 0; i < count; ++i) matching += RecordMatches(filter, records[i]) ? 1 : 0;
  listing.lines.Clear();
  listing.lines.Reserve(matching * 6, matching * kListBytesPerRecord);
  std::string& report = logViewState.PendingReport;
  report.reserve(report.size() + kReportHeaderBytes + matching * kReportBytesPerRecord);

  listing.count = 0;
  listing.totalSeconds = 0.0f;
  for (std::size_t i = 0; i < count; ++i) {
    const SessionRecord& record = records[i];
    if (!RecordMatches(filter, record)) continue;
    ++listing.count;
    listing.totalSeconds += static_cast<float>(record.durationSeconds);
    const RecordTexts texts(record, store.settings.use24HourClock != 0);
    AddListLines(record, texts, listing.lines);
    AddReportLines(record, texts);
  }
  PrependReportHeader(listing.count, listing.totalSeconds);
  AppendReportLine("", true);
  listing.clearTexts = !filter.allConnections && !filter.allMonths && !filter.allYears && listing.count == 0;
  return listing.count > 0;
}

std::string CountText(int count) { return std::to_string(count); }

std::string TotalHoursText(float totalSeconds) {
  // Kept in a float variable so the comparison sees the single-precision value.
  const float hours = totalSeconds * (1.0f / 3600.0f);
  char text[64];
  std::snprintf(text, sizeof text, "%.2f", static_cast<double>(hours));
  std::string result = text;
  result += hours <= 1.0f ? " Hr." : " Hrs.";
  return result;
}

std::string BillingPeriodLine(const Storage& store, const char* connection) {
  BillingPeriod period;
  if (!store.CurrentBillingPeriod(connection, period)) return std::string();
  return "\nPeriod : " + PeriodText(period);
}

namespace {
// "\nSince : 14 Mar 2026" for a card recharged at some time, else empty.
std::string RechargeLine(const Storage& store, const char* connection) {
  const int k = store.FindAccount(connection);
  if (k == kNoAccount || store.settings.accounts[k].recharged.year == 0) return std::string();
  const MomentStamp& at = store.settings.accounts[k].recharged;
  return "\nSince : " + DayMonthText(CalendarDate{at.year, at.month, at.day}) + " " + std::to_string(at.year);
}
}  // namespace

std::string AccountSummaryText(Storage& store, const char* connection) {
  // One walk of the log gives every figure the accessors would each walk again for.
  UsageSummary summary;
  store.ComputeUsage(connection, summary);
  char text[160];
  switch (summary.kind) {
    case PrePaidCard:
      std::snprintf(text, sizeof text, "Prepaid Card\nAllotted Time : %d Hrs.", static_cast<int>(summary.allotted));
      return text + RechargeLine(store, connection);
    case LimitedAccess: {
      // A damaged file may leave the currency without its terminator.
      char currency[kCurrencyNameSize + 1] = {};
      std::memcpy(currency, store.settings.currencyName,
                  FixedTextLength(store.settings.currencyName, kCurrencyNameSize));
      std::snprintf(text, sizeof text, "Limited Access Account\nThis Month   : %d Mins.\nCurrent Cost : %.2f %s",
                    static_cast<int>(summary.secondsThisMonth / 60), static_cast<double>(summary.cost), currency);
      return text + BillingPeriodLine(store, connection);
    }
    case UnlimitedAccess:
      return "Unlimited Access";
    default:  // not chosen, and any damaged kind
      return "Account Details for this\n Connection is not yet available";
  }
}

std::vector<std::string> ConnectionNames(const Storage& store, const char* firstItem) {
  std::vector<std::string> names;
  names.reserve(kMaxConnectionNames);
  const bool hasFirst = firstItem != nullptr && firstItem[0] != '\0';
  if (hasFirst) names.emplace_back(firstItem, std::min(std::strlen(firstItem), kFilterConnectionSize - 1));
  const std::size_t from = hasFirst ? 1 : 0;
  for (uint32_t i = 0; i < store.sessionLog.count && names.size() < kMaxConnectionNames; ++i) {
    const char* name = store.RecordName(i);
    if (name == nullptr) continue;
    const std::size_t length = std::min(FixedTextLength(name, kRecordNameSize), kFilterConnectionSize - 1);
    bool known = false;
    for (std::size_t slot = from; slot < names.size() && !known; ++slot) {
      known = names[slot].size() == length && std::memcmp(names[slot].data(), name, length) == 0;
    }
    if (!known) names.emplace_back(name, length);
  }
  return names;
}

std::string InitialConnectionFilter(const Settings& settings, bool connectedNow, const DialUpProbe& probe) {
  if (settings.logInitialFilter != 2) return kAllConnections;
  if (connectedNow && probe.OnLine()) {
    const char* current = probe.ConnectionName();
    return std::string(current, FixedTextLength(current, kConnectionNameSize));
  }
  const char* previous = settings.previousSession.connectionName;
  return std::string(previous, FixedTextLength(previous, kPreviousNameSize));
}

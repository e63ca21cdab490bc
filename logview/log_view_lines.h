// The View Log dialog's plain logic: its filter, the list lines and totals it shows,
// the account summary and the connection names of its boxes. The dialog itself only
// moves these texts into its controls.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "logview/logview_state.h"
#include "storage/session_record.h"

class DialUpProbe;
class Storage;
struct Settings;

// The first items of the three filter boxes; they stand for "everything" and are
// recognised whatever their letter case.
constexpr char kAllConnections[] = "All Connections";
constexpr char kAllMonths[] = "ALL";
constexpr char kAllYears[] = "ALL ";  // four characters, like the years

constexpr std::size_t kMonthChoiceCount = 13;
constexpr std::size_t kYearChoiceCount = 14;
// The items of the month and year boxes, in box order.
extern const char* const kMonthChoices[kMonthChoiceCount];
extern const char* const kYearChoices[kYearChoiceCount];

// The year box offers the fixed items and then every later year up to the current
// one, so that a log kept after 2011 can still be filtered by its year.
std::vector<std::string> YearChoices(uint32_t currentYear);

constexpr char kEmptyLogLine[] = "                      The   Log   Is  Currently   Empty";
constexpr std::size_t kEmptyLogBlankLines = 4;  // shown before kEmptyLogLine
constexpr char kNoMatchingEntries[] = "There Are No Entries Matching Your Search Criteria";
constexpr char kLogRule[] = "************************************************************************";

constexpr std::size_t kMaxConnectionNames = 50;

// Copies the three texts into logViewState.LastFilter, each cut to its field.
void RememberFilter(const char* connection, const char* month, const char* year);

// "JAN" to "DEC" for 1 to 12, "ERROR" for anything else.
const char* MonthAbbreviation(uint32_t month);
// 1 to 12 for "JAN" to "DEC" in any letter case, 255 for anything else.
uint32_t MonthNumber(const char* text);

// The current year of the local clock written with "%d".
std::string CurrentYearText();

// One filter, decided once so that each record costs a few comparisons.
struct LogFilter {
  bool allConnections = true;
  bool allMonths = true;
  bool allYears = true;
  uint32_t month = 255;
  uint32_t year = 0;
  const char* connection = "";  // the caller's text; must outlive the filter
  std::size_t connectionLength = 0;
};

// Builds the filter from the three box texts. An empty year text stands for the
// current year and receives it (year must have room for kFilterYearSize bytes).
LogFilter MakeLogFilter(const char* connection, const char* month, char* year);
// Blank and Deleted records never match; other statuses (damaged ones too) are shown.
bool RecordMatches(const LogFilter& filter, const SessionRecord& record);

// Many lines in one buffer, each NUL-terminated, so filling 100,000 records costs a
// few reallocations rather than one allocation per line. Line(i) is ready for a
// list box.
class TextLines {
 public:
  void Clear();
  void Reserve(std::size_t lineCount, std::size_t bytes);
  void Add(const char* text, std::size_t length);
  void Add(const char* text);
  std::size_t size() const { return starts_.size(); }
  std::size_t bytes() const { return text_.size(); }  // every line with its NUL
  const char* Line(std::size_t i) const { return text_.data() + starts_[i]; }
  std::string LineText(std::size_t i) const { return Line(i); }

 private:
  std::string text_;
  std::vector<std::size_t> starts_;
};

// The six list lines of a record, appended to lines.
void AddListLines(const SessionRecord& record, bool twentyFourHour, TextLines& lines);
// The six report lines of a record, passed to AppendReportLine.
void AddReportLines(const SessionRecord& record, bool twentyFourHour);

// What one filtering produced for the dialog.
struct LogListing {
  TextLines lines;            // six per listed record, in record order
  int count = 0;
  float totalSeconds = 0.0f;  // summed in single precision, as the totals show it
  // The count, account and total texts are to be emptied: only when all three
  // filters were specific and nothing matched.
  bool clearTexts = false;
};

// One pass over the log: lists the matching records, builds their report and
// finishes it (header first), and sums count and time. Mirrors FillLogList without
// the controls; true when at least one record was listed. year as in MakeLogFilter.
bool BuildLogListing(const Storage& store, const char* connection, const char* month, char* year, LogListing& listing);

// The count and total texts of ShowLogTotals.
std::string CountText(int count);
std::string TotalHoursText(float totalSeconds);

// The account box's text for one connection (line breaks are "\n").
std::string AccountSummaryText(Storage& store, const char* connection);
// "\nPeriod : 14 Mar - 13 Apr" for an account billed from a day of its own, else
// empty: the line the account summaries add where they have room.
std::string BillingPeriodLine(const Storage& store, const char* connection);

// The distinct names of the log's InUse records in order of first appearance,
// compared exactly, at most 50 including firstItem, which (when not empty) comes
// first. Each name is cut to kFilterConnectionSize - 1 characters.
std::vector<std::string> ConnectionNames(const Storage& store, const char* firstItem);

// The connection the dialog opens on: "All Connections", or with logInitialFilter 2
// the active connection (when a poll confirms it) or else the previous session's.
// connectedNow is the answer of a fresh poll of the monitor's probe, which names it.
std::string InitialConnectionFilter(const Settings& settings, bool connectedNow, const DialUpProbe& probe);

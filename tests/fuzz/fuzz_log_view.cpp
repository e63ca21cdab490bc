// The View Log list, its totals, the text report, the connection names and the
// account summaries built from any log. The first two bytes choose the filter;
// the rest is the log file.
#include <cstring>

#include "fuzz_support.h"
#include "logview/log_view_lines.h"
#include "logview/text_report.h"
#include "storage/storage.h"

namespace {

std::size_t CountOf(const std::string& text, const char* what) {
  std::size_t count = 0;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  FreshProgramState();
  Storage store;
  const std::string path = WriteInput("Orvabook_.ovb", data + 2, size - 2);
  Require(store.LoadLog(path.c_str()), "a readable file always loads");

  const std::vector<std::string> names = ConnectionNames(store, kAllConnections);
  Require(!names.empty() && names.size() <= kMaxConnectionNames, "at most 50 names, the first item first");
  const std::string& connection = names[data[0] % names.size()];
  const char* month = kMonthChoices[data[1] % kMonthChoiceCount];
  char year[kFilterYearSize] = {};
  const unsigned yearChoice = data[1] / kMonthChoiceCount % (kYearChoiceCount + 1);
  if (yearChoice < kYearChoiceCount) std::strcpy(year, kYearChoices[yearChoice]);  // else: this year

  LogListing listing;
  const bool any = BuildLogListing(store, connection.c_str(), month, year, listing);
  const LogFilter filter = MakeLogFilter(connection.c_str(), month, year);
  int matching = 0;
  for (const SessionRecord& record : store.sessionLog.records) matching += RecordMatches(filter, record) ? 1 : 0;
  Require(listing.count == matching && any == (matching > 0), "every matching record is listed once");
  Require(listing.lines.size() == 6u * static_cast<std::size_t>(matching), "six lines a record");
  for (std::size_t i = 0; i < listing.lines.size(); ++i) {
    Require(std::strlen(listing.lines.Line(i)) < 64 + kRecordNameSize + 64, "a line holds label and value");
  }
  // A name may hold the rule's stars too, so at least one rule a record.
  Require(CountOf(logViewState.FinishedReport, kReportRule) >= static_cast<std::size_t>(matching),
          "the report has a rule after each record");
  Require(logViewState.FinishedReport.rfind("\r\n") == logViewState.FinishedReport.size() - 2, "the report ends with a line break");
  Require(!CountText(listing.count).empty() && !TotalHoursText(listing.totalSeconds).empty(), "totals");
  for (const std::string& name : names) Require(!AccountSummaryText(store, name.c_str()).empty(), "account text");
  return 0;
}

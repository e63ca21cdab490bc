#include "logview/log_view_lines.h"

#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "logview/text_report.h"
#include "monitor/dial_up_probe.h"
#include "storage/accounts.h"
#include "storage/fixed_text.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

const std::string kRule72(72, '*');

class LogView : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    PendingReport.clear();
    FinishedReport.clear();
    LastFilter = FilterTexts{};
  }

  static uint32_t Add(const char* name, uint32_t month, uint32_t year, int32_t duration = 60,
                      uint8_t status = InUse) {
    SessionRecord record = UsedRecord(name, duration, month, year);
    record.status = status;
    return AppendToLog(record);
  }

  // Indices of the records that the three box texts list, in record order.
  static std::vector<uint32_t> Listed(const char* connection, const char* month, const char* yearText) {
    char year[kFilterYearSize] = {};
    CopyFixedText(year, yearText);
    const LogFilter filter = MakeLogFilter(connection, month, year);
    std::vector<uint32_t> indices;
    for (uint32_t i = 0; i < sessionLog.count; ++i) {
      if (RecordMatches(filter, sessionLog.records[i])) indices.push_back(i);
    }
    return indices;
  }

  static std::vector<std::string> Lines(const TextLines& lines) {
    std::vector<std::string> all;
    for (std::size_t i = 0; i < lines.size(); ++i) all.push_back(lines.Line(i));
    return all;
  }

  // A log mixing letter cases, months and years, with a Deleted and a Blank record.
  void MixedLog() {
    Add("Home ISP", 3, 2002);   // 0
    Add("home isp", 3, 2002);   // 1
    Add("Work", 3, 2002);       // 2
    Add("Home ISP", 4, 2002);   // 3
    Add("HOME ISP", 3, 2003);   // 4
    Add("Home ISP", 3, 2002, 60, Deleted);  // 5
    Add("", 0, 0, 0, Blank);    // 6
    Add("Home ISP", 4, 2003);   // 7
  }
};

using Indices = std::vector<uint32_t>;

TEST_F(LogView, MonthAbbreviationsAndNumbers) {
  const char* const expected[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                  "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
  for (uint32_t m = 1; m <= 12; ++m) {
    EXPECT_STREQ(MonthAbbreviation(m), expected[m - 1]);
    EXPECT_EQ(MonthNumber(expected[m - 1]), m);
  }
  EXPECT_STREQ(MonthAbbreviation(0), "ERROR");
  EXPECT_STREQ(MonthAbbreviation(13), "ERROR");
  EXPECT_STREQ(MonthAbbreviation(0xFFFFFFFFu), "ERROR");
  EXPECT_EQ(MonthNumber("jan"), 1u);
  EXPECT_EQ(MonthNumber("dEc"), 12u);
  EXPECT_EQ(MonthNumber("ALL"), 255u);
  EXPECT_EQ(MonthNumber("JANUARY"), 255u);
  EXPECT_EQ(MonthNumber("JA"), 255u);
  EXPECT_EQ(MonthNumber(""), 255u);
}

TEST_F(LogView, BoxChoicesAreTheFixedItems) {
  std::string months, years;
  for (const char* item : kMonthChoices) months += item;
  for (const char* item : kYearChoices) years += item;
  EXPECT_EQ(months, "ALLJANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC");
  EXPECT_EQ(years, "ALL 1999200020012002200320042005200620072008200920102011");
  EXPECT_EQ(std::strlen(kEmptyLogLine), 55u);
  EXPECT_STREQ(kEmptyLogLine, "                      The   Log   Is  Currently   Empty");
}

TEST_F(LogView, YearsAreOfferedUpToTheCurrentOne) {
  const std::vector<std::string> fixed(std::begin(kYearChoices), std::end(kYearChoices));
  EXPECT_EQ(YearChoices(2002), fixed);
  EXPECT_EQ(YearChoices(2011), fixed);
  EXPECT_EQ(YearChoices(0), fixed);

  const std::vector<std::string> later = YearChoices(2026);
  ASSERT_EQ(later.size(), kYearChoiceCount + 15);
  EXPECT_EQ(later.front(), "ALL ");
  EXPECT_EQ(later[kYearChoiceCount - 1], "2011");
  EXPECT_EQ(later[kYearChoiceCount], "2012");
  EXPECT_EQ(later.back(), "2026");

  // A clock gone wild stops at four digits.
  EXPECT_EQ(YearChoices(4000000000u).back(), "9999");
}

TEST_F(LogView, EverythingListsEveryShownRecordInOrder) {
  MixedLog();
  EXPECT_EQ(Listed("All Connections", "ALL", "ALL "), (Indices{0, 1, 2, 3, 4, 7}));
}

TEST_F(LogView, SpecialValuesIgnoreLetterCase) {
  MixedLog();
  EXPECT_EQ(Listed("all connections", "all", "aLL "), (Indices{0, 1, 2, 3, 4, 7}));
  // "ALL" without its blank is no year: it reads as year 0 and matches nothing.
  EXPECT_EQ(Listed("All Connections", "ALL", "ALL"), Indices{});
}

TEST_F(LogView, MonthOnly) {
  MixedLog();
  EXPECT_EQ(Listed("All Connections", "MAR", "ALL "), (Indices{0, 1, 2, 4}));
  EXPECT_EQ(Listed("All Connections", "apr", "ALL "), (Indices{3, 7}));
}

TEST_F(LogView, ConnectionOnlyIgnoresLetterCase) {
  MixedLog();
  EXPECT_EQ(Listed("hOME iSP", "ALL", "ALL "), (Indices{0, 1, 3, 4, 7}));
  EXPECT_EQ(Listed("work", "ALL", "ALL "), (Indices{2}));
}

TEST_F(LogView, YearOnly) {
  MixedLog();
  EXPECT_EQ(Listed("All Connections", "ALL", "2002"), (Indices{0, 1, 2, 3}));
  EXPECT_EQ(Listed("All Connections", "ALL", "2003"), (Indices{4, 7}));
}

TEST_F(LogView, ConnectionAndMonthIgnoreLetterCase) {
  MixedLog();
  EXPECT_EQ(Listed("home isp", "MAR", "ALL "), (Indices{0, 1, 4}));
}

TEST_F(LogView, MonthAndYear) {
  MixedLog();
  EXPECT_EQ(Listed("All Connections", "MAR", "2002"), (Indices{0, 1, 2}));
}

TEST_F(LogView, ConnectionAndYearIgnoreLetterCase) {
  MixedLog();
  EXPECT_EQ(Listed("HOME isp", "ALL", "2003"), (Indices{4, 7}));
}

TEST_F(LogView, AllThreeSpecificInsistOnTheExactName) {
  MixedLog();
  EXPECT_EQ(Listed("Home ISP", "MAR", "2002"), (Indices{0}));
  EXPECT_EQ(Listed("home isp", "MAR", "2002"), (Indices{1}));
  EXPECT_EQ(Listed("HOME ISP", "mar", "2003"), (Indices{4}));
  EXPECT_EQ(Listed("Home ISP", "MAR", "2003"), Indices{});
}

TEST_F(LogView, EmptyYearTextReceivesTheCurrentYear) {
  MixedLog();
  char year[kFilterYearSize] = "";
  const LogFilter filter = MakeLogFilter("All Connections", "MAR", year);
  EXPECT_STREQ(year, "2002");  // the fake clock's year
  EXPECT_FALSE(filter.allYears);
  EXPECT_EQ(filter.year, 2002u);
  EXPECT_EQ(filter.month, 3u);
}

TEST_F(LogView, SixListLinesOfARecord) {
  SessionRecord record{};
  record.status = InUse;
  record.dayOfWeek = 1;
  record.month = 1;
  record.day = 7;
  record.year = 2002;
  record.logOnHour = 9;
  record.logOnMinute = 5;
  record.logOnSecond = 3;
  record.logOffHour = 22;
  record.logOffMinute = 15;
  record.logOffSecond = 30;
  record.durationSeconds = 4227;
  std::strcpy(record.connectionName, "Home ISP");
  TextLines lines;
  AddListLines(record, lines);
  EXPECT_EQ(Lines(lines), (std::vector<std::string>{
                              " Date                     : Mon.  Jan.  7, 2002",
                              " Connection Used :  Home ISP",
                              " Log Off Time        : 10 : 15 : 30  PM",
                              " Log On Time        : 9 : 05 : 03  AM",
                              " Duration               : 1 Hr : 10 Min : 27 sec",
                              kRule72,
                          }));
  settings.use24HourClock = 1;
  lines.Clear();
  AddListLines(record, lines);
  EXPECT_EQ(lines.LineText(2), " Log Off Time        : 22 : 15 : 30   ");
}

TEST_F(LogView, ListingBuildsLinesCountAndTotal) {
  MixedLog();
  char year[kFilterYearSize] = "2002";
  LogListing listing;
  EXPECT_TRUE(BuildLogListing("home isp", "ALL", year, listing));
  EXPECT_EQ(listing.count, 3);
  EXPECT_EQ(listing.totalSeconds, 180.0f);
  ASSERT_EQ(listing.lines.size(), 18u);
  EXPECT_EQ(listing.lines.LineText(1), " Connection Used :  Home ISP");
  EXPECT_EQ(listing.lines.LineText(7), " Connection Used :  home isp");
  EXPECT_EQ(listing.lines.LineText(13), " Connection Used :  Home ISP");
  EXPECT_EQ(listing.lines.LineText(17), kRule72);
  EXPECT_FALSE(listing.clearTexts);
  EXPECT_TRUE(PendingReport.empty());
  EXPECT_FALSE(FinishedReport.empty());
}

TEST_F(LogView, OnlyAFullySpecificFilterThatMatchesNothingEmptiesTheTexts) {
  MixedLog();
  LogListing listing;
  char year[kFilterYearSize] = "2005";
  EXPECT_FALSE(BuildLogListing("All Connections", "MAR", year, listing));
  EXPECT_FALSE(listing.clearTexts);
  EXPECT_EQ(listing.lines.size(), 0u);
  char year2[kFilterYearSize] = "2003";
  EXPECT_FALSE(BuildLogListing("Home ISP", "MAR", year2, listing));
  EXPECT_TRUE(listing.clearTexts);
  EXPECT_EQ(listing.count, 0);
}

TEST_F(LogView, TotalsWriteHrUpToOneHourAndHrsAbove) {
  EXPECT_EQ(TotalHoursText(3600.0f), "1.00 Hr.");
  EXPECT_EQ(TotalHoursText(3601.0f), "1.00 Hrs.");
  EXPECT_EQ(TotalHoursText(0.0f), "0.00 Hr.");
  EXPECT_EQ(TotalHoursText(5400.0f), "1.50 Hrs.");
  EXPECT_EQ(CountText(0), "0");
  EXPECT_EQ(CountText(12), "12");
}

TEST_F(LogView, TotalsOfAListingOfExactlyOneHour) {
  Add("Home ISP", 1, 2002, 1800);
  Add("Home ISP", 1, 2002, 1800);
  char year[kFilterYearSize] = "ALL ";
  LogListing listing;
  BuildLogListing("All Connections", "ALL", year, listing);
  EXPECT_EQ(TotalHoursText(listing.totalSeconds), "1.00 Hr.");
  Add("Home ISP", 1, 2002, 1);
  BuildLogListing("All Connections", "ALL", year, listing);
  EXPECT_EQ(TotalHoursText(listing.totalSeconds), "1.00 Hrs.");
  EXPECT_EQ(CountText(listing.count), "3");
}

TEST_F(LogView, AccountSummaries) {
  Add("Card", 1, 2002, 600);
  Add("Limited", 1, 2002, 3900);
  Add("Flat", 1, 2002, 60);
  Add("Nobody", 1, 2002, 60);
  auto configure = [](int k, const char* name, uint32_t kind, uint32_t hours) {
    return &ConfigureAccount(k, name, kind, hours);
  };
  configure(0, "Card", PrePaidCard, 10);
  AccountRecord* limited = configure(1, "Limited", LimitedAccess, 1);
  limited->monthlyCharge = 10.0f;
  limited->excessPerMinute = 0.5f;
  limited->vatPercent = 10.0f;
  configure(2, "Flat", UnlimitedAccess, 0);
  CopyFixedText(settings.currencyName, "EUR");

  EXPECT_EQ(AccountSummaryText("Card"), "Prepaid Card\nAllotted Time : 10 Hrs.");
  EXPECT_EQ(AccountSummaryText("Limited"),
            "Limited Access Account\nThis Month   : 65 Mins.\nCurrent Cost : 13.75 EUR");
  EXPECT_EQ(AccountSummaryText("Flat"), "Unlimited Access");
  EXPECT_EQ(AccountSummaryText("Nobody"), "Account Details for this\n Connection is not yet available");
  EXPECT_EQ(AccountSummaryText("Unknown"), "Account Details for this\n Connection is not yet available");
  // A currency field left without its terminator is cut at its width.
  std::memset(settings.currencyName, 'C', kCurrencyNameSize);
  EXPECT_EQ(AccountSummaryText("Limited"),
            "Limited Access Account\nThis Month   : 65 Mins.\nCurrent Cost : 13.75 " + std::string(15, 'C'));
}

TEST_F(LogView, ConnectionNamesInOrderOfFirstAppearance) {
  Add("Work", 1, 2002);
  Add("Home ISP", 1, 2002);
  Add("home isp", 1, 2002);  // letter case counts here
  Add("Gone", 1, 2002, 60, Deleted);
  Add("Work", 1, 2002);
  Add("All Connections", 1, 2002);  // compared from slot 1 on, so listed again
  EXPECT_EQ(ConnectionNames(""), (std::vector<std::string>{"Work", "Home ISP", "home isp", "All Connections"}));
  EXPECT_EQ(ConnectionNames("All Connections"),
            (std::vector<std::string>{"All Connections", "Work", "Home ISP", "home isp", "All Connections"}));
}

TEST_F(LogView, ConnectionNamesStopAtFifty) {
  for (int i = 0; i < 60; ++i) Add(("ISP " + std::to_string(i)).c_str(), 1, 2002);
  std::vector<std::string> names = ConnectionNames("");
  ASSERT_EQ(names.size(), 50u);
  EXPECT_EQ(names.back(), "ISP 49");
  names = ConnectionNames("All Connections");
  ASSERT_EQ(names.size(), 50u);
  EXPECT_EQ(names.back(), "ISP 48");
}

TEST_F(LogView, NoConnectionNamesInAnEmptyLog) {
  Add("", 0, 0, 0, Blank);
  EXPECT_TRUE(ConnectionNames("").empty());
  EXPECT_EQ(ConnectionNames("All Connections"), std::vector<std::string>{"All Connections"});
}

TEST_F(LogView, DamagedRecordsNeverCrash) {
  const uint32_t a = Add("x", 0, 2002);
  sessionLog.records[a].dayOfWeek = 7;
  const uint32_t b = Add("y", 13, 2002);
  sessionLog.records[b].logOffHour = 0xFFFFFFFFu;
  sessionLog.records[b].logOnMinute = 0x80000000u;
  sessionLog.records[b].durationSeconds = INT32_MIN;
  const uint32_t c = Add("", 2, 2002);
  std::memset(sessionLog.records[c].connectionName, 'z', kRecordNameSize);  // no terminator
  sessionLog.records[c].status = 7;  // neither Blank nor Deleted: shown
  char year[kFilterYearSize] = "ALL ";
  LogListing listing;
  ASSERT_TRUE(BuildLogListing("All Connections", "ALL", year, listing));
  ASSERT_EQ(listing.lines.size(), 18u);
  EXPECT_EQ(listing.lines.LineText(0), " Date                     :   7, 2002");
  EXPECT_EQ(listing.lines.LineText(6), " Date                     : Mon.    7, 2002");
  EXPECT_EQ(listing.lines.LineText(13), " Connection Used :  " + std::string(kRecordNameSize, 'z'));
  EXPECT_EQ(Listed("ZZZ", "ALL", "ALL "), Indices{});
  // Only InUse records give names; a 105-byte name is cut to the slot.
  sessionLog.records[c].status = InUse;
  EXPECT_EQ(ConnectionNames(""),
            (std::vector<std::string>{"x", "y", std::string(kFilterConnectionSize - 1, 'z')}));
  // A count beyond the records read is never followed.
  sessionLog.count = 1000;
  EXPECT_TRUE(BuildLogListing("All Connections", "ALL", year, listing));
  EXPECT_EQ(listing.count, 3);
}

TEST_F(LogView, RememberedFilterIsCutToItsFields) {
  RememberFilter("Home ISP", "MARCH OF THE YEAR", "2002");
  EXPECT_STREQ(LastFilter.connection, "Home ISP");
  EXPECT_STREQ(LastFilter.month, "MARCH OF ");
  EXPECT_STREQ(LastFilter.year, "2002");
}

TEST_F(LogView, InitialConnectionFilter) {
  CopyFixedText(settings.previousSession.connectionName, "Previous ISP");
  CopyFixedText(CurrentConnectionName, "Active ISP");
  OnLineFlag = 1;
  settings.logInitialFilter = 1;
  EXPECT_EQ(InitialConnectionFilter(true), "All Connections");
  settings.logInitialFilter = 2;
  EXPECT_EQ(InitialConnectionFilter(true), "Active ISP");
  EXPECT_EQ(InitialConnectionFilter(false), "Previous ISP");
  OnLineFlag = 0;
  EXPECT_EQ(InitialConnectionFilter(true), "Previous ISP");
  CopyFixedText(CurrentConnectionName, "");
}

}  // namespace

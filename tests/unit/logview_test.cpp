// The log views: which records a filter lists, the lines and the text report made
// of them, the account summaries beside the list, and what Manage Log changes.
// A damaged log is shown as it is (a weekday or month out of range leaves its text
// out) and keeps every record when a session is saved into it.
#include <cstring>
#include <string>
#include <vector>

#include "logview/log_view_lines.h"
#include "logview/manage_log_summary.h"
#include "logview/text_report.h"
#include "storage/fixed_text.h"
#include "platform/program_paths.h"
#include "storage/storage.h"
#include "test_support.h"

namespace {

const std::string kRule47(47, '*');
using Indices = std::vector<uint32_t>;
using Texts = std::vector<std::string>;

class LogView : public ProgramStateTest {
 protected:
  LogListing FillAll(const char* connection = "All Connections") {
    char year[kFilterYearSize] = "ALL ";
    LogListing listing;
    BuildLogListing(storage_, connection, "ALL", year, listing);
    return listing;
  }

  std::string FileText(const std::string& path) const {
    const std::vector<uint8_t> bytes = ReadBytes(path);
    return std::string(bytes.begin(), bytes.end());
  }

  std::vector<uint32_t> SavedStatuses() const {
    const std::vector<uint8_t> bytes = ReadBytes(LogFilePath());
    std::vector<uint32_t> statuses;
    for (std::size_t at = 8; at + sizeof(SessionRecord) <= bytes.size(); at += sizeof(SessionRecord)) {
      statuses.push_back(bytes[at]);
    }
    return statuses;
  }
};

Texts launches;

// The year box's years up to the clock's are app_view_log's matter; here its limit.
TEST_F(LogView, YearsGrowWithTheClockAndNoTextIsAMonth) {
  EXPECT_EQ(YearChoices(4000000000u).back(), "9999") << "a clock gone wild stops at four digits";
  EXPECT_EQ(std::string(MonthAbbreviation(1)) + MonthAbbreviation(12) + MonthAbbreviation(13), "JANDECERROR");
  EXPECT_EQ(std::vector<uint32_t>({MonthNumber("dec"), MonthNumber(nullptr)}), std::vector<uint32_t>({12, 255}));
}

// Which records each combination of the three boxes lists. Record i lasts 2^i seconds,
// so the listing's total tells which ones it holds.
TEST_F(LogView, FilterTable) {
  LogSession("Home ISP", 1, 3, 2002);
  LogSession("home isp", 2, 3, 2002);
  LogSession("Work", 4, 3, 2002);
  LogSession("Home ISP", 8, 4, 2002);
  LogSession("HOME ISP", 16, 3, 2003);
  LogSession("Home ISP", 32, 3, 2002, Deleted);
  LogSession("", 64, 0, 0, Blank);
  LogSession("Home ISP", 128, 4, 2003);
  const struct {
    const char *connection, *month, *year;
    Indices listed;
    bool clearTexts = false;  // only a fully specific filter that matches nothing empties the texts
  } rows[] = {
      {.connection = "All Connections", .month = "ALL", .year = "ALL ", .listed = {0, 1, 2, 3, 4, 7}},
      {.connection = "all connections", .month = "all", .year = "aLL ", .listed = {0, 1, 2, 3, 4, 7}},
      // "ALL" without its blank reads as year 0
      {.connection = "All Connections", .month = "ALL", .year = "ALL", .listed = {}},
      {.connection = "All Connections", .month = "MAR", .year = "ALL ", .listed = {0, 1, 2, 4}},
      {.connection = "All Connections", .month = "apr", .year = "ALL ", .listed = {3, 7}},
      {.connection = "hOME iSP", .month = "ALL", .year = "ALL ", .listed = {0, 1, 3, 4, 7}},
      {.connection = "work", .month = "ALL", .year = "ALL ", .listed = {2}},
      {.connection = "All Connections", .month = "ALL", .year = "2002", .listed = {0, 1, 2, 3}},
      {.connection = "All Connections", .month = "ALL", .year = "2003", .listed = {4, 7}},
      {.connection = "home isp", .month = "MAR", .year = "ALL ", .listed = {0, 1, 4}},
      {.connection = "All Connections", .month = "MAR", .year = "2002", .listed = {0, 1, 2}},
      // an empty year text receives the current year
      {.connection = "All Connections", .month = "MAR", .year = "", .listed = {0, 1, 2}},
      {.connection = "HOME isp", .month = "ALL", .year = "2003", .listed = {4, 7}},
      // All three specific: the exact name.
      {.connection = "Home ISP", .month = "MAR", .year = "2002", .listed = {0}},
      {.connection = "home isp", .month = "MAR", .year = "2002", .listed = {1}},
      {.connection = "HOME ISP", .month = "mar", .year = "2003", .listed = {4}},
      {.connection = "Home ISP", .month = "MAR", .year = "2003", .listed = {}, .clearTexts = true},
      {.connection = "All Connections", .month = "MAR", .year = "2005", .listed = {}},
  };
  LogListing listing;  // one listing refilled, as the dialog's is
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.connection) + " | " + row.month + " | " + row.year);
    char listedYear[kFilterYearSize] = {};
    CopyFixedText(listedYear, row.year);
    const int count = static_cast<int>(row.listed.size());
    EXPECT_EQ(BuildLogListing(storage_, row.connection, row.month, listedYear, listing), count > 0);
    EXPECT_EQ(listing.count, count);
    float total = 0.0f;
    for (const uint32_t i : row.listed) total += static_cast<float>(1u << i);
    EXPECT_EQ(listing.totalSeconds, total);
    EXPECT_EQ(listing.clearTexts, row.clearTexts);
    EXPECT_EQ(listing.lines.size(), 6u * count);
    EXPECT_STREQ(listedYear, *row.year != '\0' ? row.year : "2002");
  }
}

TEST_F(LogView, ListLinesAndTheReportOfTwoSessions) {
  AppendToLog(EndedSession("Home ISP", {2002, 11, 19}, {20, 5, 0}, {21, 15, 0}, 4227, 2));
  AppendToLog(EndedSession("Work", {2002, 11, 20}, {8, 0, 0}, {9, 0, 0}, 3600, 3));
  const LogListing listing = FillAll();
  EXPECT_EQ(listing.lines.LineText(0), " Date                     : Tue.  Nov.  19, 2002");
  EXPECT_EQ(listing.lines.LineText(1), " Connection Used :  Home ISP");
  EXPECT_EQ(listing.lines.LineText(2), " Log Off Time        : 9 : 15 : 00  PM");
  EXPECT_EQ(listing.lines.LineText(3), " Log On Time        : 8 : 05 : 00  PM");
  EXPECT_EQ(listing.lines.LineText(4), " Duration               : 1 Hr : 10 Min : 27 sec");
  EXPECT_EQ(listing.lines.LineText(5), std::string(72, '*'));
  const std::string expected =
      "Orvalen-generated log\r\nGenerated on : 1 / 7 / 2002\r\n2 connection(s) displayed\r\n"
      "2.17 hour(s) is total time used up by displayed connections\r\n\r\nDetails follow:-\r\n"
      "==================================================\r\n"
      " Date\t\t\tTue.  Nov.  19, 2002\r\n Connection Used\tHome ISP\r\n Log Off Time\t\t9 : 15 : 00  PM\r\n"
      " Log On Time\t\t8 : 05 : 00  PM\r\n Duration\t\t1 Hr : 10 Min : 27 sec\r\n" + kRule47 + "\r\n" +
      " Date\t\t\tWed.  Nov.  20, 2002\r\n Connection Used\tWork\r\n Log Off Time\t\t9 : 00 : 00  AM\r\n"
      " Log On Time\t\t8 : 00 : 00  AM\r\n Duration\t\t1 Hr : 0 Min : 0 sec\r\n" + kRule47 + "\r\n\r\n";
  EXPECT_EQ(logViewState.FinishedReport, expected);

  // Written over an older, longer report, twice, with the date of the filling.
  const std::string path = Path("Log File.txt");
  WriteBytes(path, std::vector<uint8_t>(5000, 'O'));
  clock_.now.day = 9;
  clock_.now.month = 12;
  GenerateTextReport();
  GenerateTextReport();
  EXPECT_EQ(FileText(path), expected);
  FillAll();
  EXPECT_NE(logViewState.FinishedReport.find("Generated on : 12 / 9 / 2002\r\n"), std::string::npos);
  EXPECT_EQ(logViewState.FinishedReport.size(), expected.size() + 1) << "the new report alone";

  storage_.settings.use24HourClock = 1;
  EXPECT_EQ(FillAll().lines.LineText(2), " Log Off Time        : 21 : 15 : 00   ");
}

TEST_F(LogView, ReportPiecesAndFiles) {
  EXPECT_EQ(FillAll().lines.size(), 0u);
  EXPECT_NE(logViewState.FinishedReport.find("\r\n0 connection(s) displayed\r\n0.00 hour(s)"), std::string::npos);

  // No list yet: an empty file. The editor starts with its fixed command line, even when the write fails.
  logViewState.FinishedReport.clear();
  WriteBytes(Path("Log File.txt"), {'o', 'l', 'd'});
  launches.clear();
  reportHooks.launchEditor = [](const char* application, const char* commandLine) {
    launches.push_back(application);
    launches.push_back(commandLine);
  };
  const std::string reportPath = JoinPath(folder_, "Log File.txt");
  GenerateTextReport();
  EXPECT_EQ(ReadBytes(reportPath).size(), 0u);
  EXPECT_EQ(launches, (Texts{JoinPath(folder_, "NOTEPAD.EXE"), "notepad.exe  " + reportPath}));
  SetProgramFolder(JoinPath(folder_, "no-such-folder"));
  GenerateTextReport();
  EXPECT_EQ(launches.size(), 4u);
  EXPECT_EQ(JoinPath("", "Log File.txt"), "Log File.txt") << "no folder known: the current one";

}

TEST_F(LogView, TotalsCountsAndSummaries) {
  const struct {
    float seconds;
    const char* text;
  } totals[] = {{3600.0f, "1.00 Hr."}, {3601.0f, "1.00 Hrs."}, {0.0f, "0.00 Hr."}, {5400.0f, "1.50 Hrs."}};
  for (const auto& row : totals) EXPECT_EQ(TotalHoursText(row.seconds), row.text);

  LogSession("Card", 5400, 1, 2002);
  LogSession("card", 1800, 12, 2001);
  LogSession("Limited", 3900, 1, 2002);
  LogSession("Limited", 2700, 11, 2001);
  LogSession("Flat", 60);
  LogSession("Nobody", 60);
  LogSession("Unset", 60);
  ConfigureAccount(0, "Card", PrePaidCard, 10);
  ConfigureAccount(1, "Limited", LimitedAccess, 1, 10.0f, 0.5f, 10.0f);
  ConfigureAccount(2, "Flat", UnlimitedAccess);
  ConfigureAccount(3, "Unset", LimitedAccess).configured = 0;
  CopyFixedText(storage_.settings.currencyName, "EUR");
  const struct {
    const char* connection;
    const char* viewLog;
    const char* manageLog;
  } rows[] = {
      {"Card", "Prepaid Card\nAllotted Time : 10 Hrs.",
       "Pre-paid Internet Card\nTotal Time : 2.00 Hrs.\nRemaining : 8.00 Hrs."},
      {"Limited", "Limited Access Account\nThis Month   : 65 Mins.\nCurrent Cost : 13.75 EUR",
       "Limited Access\nThis Month: 1.08 Hrs\nLogged Total :1.83 Hrs"},
      {"Flat", "Unlimited Access", "Unlimited Access"},
      {"Nobody", "Account Details for this\n Connection is not yet available", ""},
      {"Unset", "Account Details for this\n Connection is not yet available", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(AccountSummaryText(storage_, row.connection), row.viewLog);
    EXPECT_EQ(ManageLogSummaryText(storage_, row.connection), row.manageLog);
  }
  // A currency field left without its terminator is cut at its width.
  std::memset(storage_.settings.currencyName, 'C', kCurrencyNameSize);
  EXPECT_EQ(AccountSummaryText(storage_, "Limited"),
            "Limited Access Account\nThis Month   : 65 Mins.\nCurrent Cost : 13.75 " + std::string(15, 'C'));
}

TEST_F(LogView, ConnectionNamesAndTheInitialFilter) {
  LogSession("Work", 60);
  LogSession("Home ISP", 60);
  LogSession("home isp", 60);  // letter case counts here
  LogSession("Gone", 60, 1, 2002, Deleted);
  LogSession("Work", 60);
  LogSession("All Connections", 60);  // compared from slot 1 on, so listed again
  EXPECT_EQ(ConnectionNames(storage_, ""), (Texts{"Work", "Home ISP", "home isp", "All Connections"}));
  EXPECT_EQ(ConnectionNames(storage_, "All Connections"),
            (Texts{"All Connections", "Work", "Home ISP", "home isp", "All Connections"}));
  storage_.sessionLog = SessionLog{};
  LogSession("", 0, 0, 0, Blank);
  EXPECT_EQ(ConnectionNames(storage_, "All Connections"), Texts{"All Connections"});
  for (int i = 0; i < 60; ++i) LogSession(("ISP " + std::to_string(i)).c_str(), 60);
  EXPECT_EQ(ConnectionNames(storage_, "").back(), "ISP 49");
  EXPECT_EQ(ConnectionNames(storage_, "All Connections").back(), "ISP 48");
  // The first item (the initial filter: a previous session's name has 51 characters) is cut only to the box's field.
  EXPECT_EQ(ConnectionNames(storage_, std::string(50, 'f').c_str()).front(), std::string(50, 'f'));
  EXPECT_EQ(ConnectionNames(storage_, std::string(150, 'f').c_str()).front(),
            std::string(kFilterConnectionSize - 1, 'f'));

  CopyFixedText(storage_.settings.previousSession.connectionName, "Previous ISP");
  ras_.Connect("Active ISP");
  monitor_.PollNow();
  storage_.settings.logInitialFilter = 1;
  EXPECT_EQ(InitialConnectionFilter(storage_.settings, true, monitor_.Probe()), "All Connections");
  storage_.settings.logInitialFilter = 2;
  EXPECT_EQ(InitialConnectionFilter(storage_.settings, true, monitor_.Probe()), "Active ISP");
  EXPECT_EQ(InitialConnectionFilter(storage_.settings, false, monitor_.Probe()), "Previous ISP");
  ras_.state = ScriptedRas::State::Disconnected;
  monitor_.PollNow();
  EXPECT_EQ(InitialConnectionFilter(storage_.settings, true, monitor_.Probe()), "Previous ISP");
}

TEST_F(LogView, ManageLogDeletesByExactNameOrClearsAndSavesBothFiles) {
  LogSession("Home ISP", 60);
  LogSession("home isp", 60);
  LogSession("Work", 60, 1, 2002, Blank);
  LogSession("Home ISP", 60);
  ConfigureAccount(0, "Home ISP", PrePaidCard, 10);
  ConfigureAccount(1, "home isp", UnlimitedAccess);
  EXPECT_EQ(DeleteConnectionEntries(storage_, "Home ISP"), kRecordsDeleted);
  EXPECT_EQ(SavedStatuses(), (std::vector<uint32_t>{Deleted, InUse, Blank, Deleted}));
  EXPECT_EQ(storage_.settings.accounts[0].configured, 0u);
  const std::vector<uint8_t> saved = ReadBytes(SettingsPath());
  ASSERT_EQ(saved.size(), sizeof(Settings));
  EXPECT_EQ(saved[offsetof(Settings, accounts) + 4], 0u) << "the name is gone on disk";
  EXPECT_EQ(U32At(saved, offsetof(Settings, accounts) + sizeof(AccountRecord)), 1u);
  EXPECT_EQ(DeleteConnectionEntries(storage_, "Home ISP"), kLogUnchanged) << "nothing of that name is left";

  EXPECT_EQ(ClearEntireLog(storage_), kLogCleared);
  EXPECT_EQ(SavedStatuses(), (std::vector<uint32_t>{Deleted, Deleted, Deleted, Deleted}));
  EXPECT_STREQ(storage_.settings.accounts[1].connectionName, "home isp") << "the accounts are kept";
}

TEST_F(LogView, DamagedRecordsAreShownAsTheyAre) {
  SessionRecord record = EndedSession("Home ISP", {2002, 11, 99}, {25, 61, 0}, {99, 0, 0}, -65, 9);
  record.month = 13;
  record.year = 0;
  record.logOnSecond = 75;
  record.logOffSecond = 5;
  AppendToLog(record);
  record.dayOfWeek = 6;
  record.month = 0;
  record.durationSeconds = INT32_MIN;
  AppendToLog(record);
  const uint32_t c = LogSession("", 60, 2, 2002);
  std::memset(storage_.sessionLog.records[c].connectionName, 'z', kRecordNameSize);  // no terminator
  storage_.sessionLog.records[c].status = 7;                                         // neither Blank nor Deleted: shown
  LogListing listing = FillAll();
  ASSERT_EQ(listing.lines.size(), 18u);
  EXPECT_EQ(listing.lines.LineText(0), " Date                     :   99, 0") << "no weekday, no month";
  EXPECT_EQ(listing.lines.LineText(2), " Log Off Time        : 87 : 00 : 05  PM");
  EXPECT_EQ(listing.lines.LineText(3), " Log On Time        : 13 : 61 : 75  PM");
  EXPECT_EQ(listing.lines.LineText(4), " Duration               : 0 Hr : -1 Min : -5 sec");
  EXPECT_EQ(listing.lines.LineText(6), " Date                     : Sat.    99, 0") << "weekday without month";
  EXPECT_EQ(listing.lines.LineText(10), " Duration               : -596523 Hr : -14 Min : -8 sec");
  EXPECT_EQ(listing.lines.LineText(13), " Connection Used :  " + std::string(kRecordNameSize, 'z'));
  EXPECT_EQ(FillAll("ZZZ").count, 0);
  // Only InUse records give names; a 105-byte name is cut to the box's field.
  storage_.sessionLog.records[c].status = InUse;
  EXPECT_EQ(ConnectionNames(storage_, "").back(), std::string(kFilterConnectionSize - 1, 'z'));
  // A count beyond the records read is never followed.
  storage_.sessionLog.count = 1000;
  EXPECT_EQ(FillAll().count, 3);
}

}  // namespace

#include "logview/text_report.h"

#include <cstring>
#include <string>
#include <vector>

#include "logview/log_view_lines.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "test_support.h"

namespace {

const std::string kRule47(47, '*');

class TextReport : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    PendingReport.clear();
    FinishedReport.clear();
    reportHooks = ReportHooks{};
    launches.clear();
  }
  void TearDown() override {
    reportHooks = ReportHooks{};
    ProgramStateTest::TearDown();
  }

  static void AddSession(const char* name, uint32_t dayOfWeek, uint32_t day, uint32_t onHour, uint32_t onMinute,
                         uint32_t offHour, uint32_t offMinute, int32_t duration) {
    SessionRecord record = UsedRecord(name, duration, 11, 2002);
    record.dayOfWeek = dayOfWeek;
    record.day = day;
    record.logOnHour = onHour;
    record.logOnMinute = onMinute;
    record.logOffHour = offHour;
    record.logOffMinute = offMinute;
    AppendToLog(record);
  }

  static void FillAll() {
    char year[kFilterYearSize] = "ALL ";
    LogListing listing;
    BuildLogListing("All Connections", "ALL", year, listing);
  }

  std::string FileText(const std::string& path) const {
    const std::vector<uint8_t> bytes = ReadBytes(path);
    return std::string(bytes.begin(), bytes.end());
  }

  static std::vector<std::string> launches;
  static void RecordLaunch(const char* application, const char* commandLine) {
    launches.push_back(application);
    launches.push_back(commandLine);
  }
};

std::vector<std::string> TextReport::launches;

TEST_F(TextReport, ReportOfTwoSessions) {
  AddSession("Home ISP", 2, 19, 20, 5, 21, 15, 4227);
  AddSession("Work", 3, 20, 8, 0, 9, 0, 3600);
  FillAll();
  const std::string expected =
      "Orvalen-generated log\r\n"
      "Generated on : 1 / 7 / 2002\r\n"
      "2 connection(s) displayed\r\n"
      "2.17 hour(s) is total time used up by displayed connections\r\n"
      "\r\n"
      "Details follow:-\r\n"
      "==================================================\r\n"
      " Date\t\t\tTue.  Nov.  19, 2002\r\n"
      " Connection Used\tHome ISP\r\n"
      " Log Off Time\t\t9 : 15 : 00  PM\r\n"
      " Log On Time\t\t8 : 05 : 00  PM\r\n"
      " Duration\t\t1 Hr : 10 Min : 27 sec\r\n" +
      kRule47 + "\r\n" +
      " Date\t\t\tWed.  Nov.  20, 2002\r\n"
      " Connection Used\tWork\r\n"
      " Log Off Time\t\t9 : 00 : 00  AM\r\n"
      " Log On Time\t\t8 : 00 : 00  AM\r\n"
      " Duration\t\t1 Hr : 0 Min : 0 sec\r\n" +
      kRule47 + "\r\n" + "\r\n";
  EXPECT_EQ(FinishedReport, expected);
  EXPECT_TRUE(PendingReport.empty());

  std::size_t lines = 0;
  for (std::size_t at = FinishedReport.find("\r\n"); at != std::string::npos; at = FinishedReport.find("\r\n", at + 2))
    ++lines;
  EXPECT_EQ(lines, 7u + 12u + 1u);
  EXPECT_EQ(FinishedReport.find('\n'), FinishedReport.find("\r\n") + 1);  // no bare LF
  EXPECT_EQ(FinishedReport.substr(FinishedReport.size() - 51), kRule47 + "\r\n\r\n");

  GenerateTextReport();
  EXPECT_EQ(FileText(Path("Log File.txt")), expected);
}

TEST_F(TextReport, EmptyListingGivesHeaderAndEmptyLine) {
  FillAll();
  EXPECT_EQ(FinishedReport,
            "Orvalen-generated log\r\n"
            "Generated on : 1 / 7 / 2002\r\n"
            "0 connection(s) displayed\r\n"
            "0.00 hour(s) is total time used up by displayed connections\r\n"
            "\r\n"
            "Details follow:-\r\n"
            "==================================================\r\n"
            "\r\n");
}

TEST_F(TextReport, AppendMovesPendingIntoFinishedOnFinish) {
  EXPECT_EQ(AppendReportLine("one", false), "one\r\n");
  EXPECT_EQ(AppendReportLine("two", false), "one\r\ntwo\r\n");
  EXPECT_TRUE(FinishedReport.empty());
  PrependReportHeader(5, 7200.0f);
  EXPECT_EQ(PendingReport.substr(0, 23), "Orvalen-generated log\r\n");
  EXPECT_NE(PendingReport.find("5 connection(s) displayed\r\n2.00 hour(s)"), std::string::npos);
  const std::string& finished = AppendReportLine("", true);
  EXPECT_EQ(&finished, &FinishedReport);
  EXPECT_TRUE(PendingReport.empty());
  EXPECT_EQ(FinishedReport.substr(FinishedReport.size() - 12), "one\r\ntwo\r\n\r\n");
}

TEST_F(TextReport, HeaderCarriesTheDateOfTheFilling) {
  AddSession("Home ISP", 2, 19, 20, 5, 21, 15, 60);
  FillAll();
  clock_.now.day = 9;
  clock_.now.month = 12;
  GenerateTextReport();
  EXPECT_NE(FileText(Path("Log File.txt")).find("Generated on : 1 / 7 / 2002\r\n"), std::string::npos);
  FillAll();
  EXPECT_NE(FinishedReport.find("Generated on : 12 / 9 / 2002\r\n"), std::string::npos);
}

TEST_F(TextReport, WriteTextFileDoesNotTruncate) {
  const std::string path = Path("note.txt");
  ASSERT_TRUE(WriteTextFile("0123456789", path.c_str()));
  ASSERT_TRUE(WriteTextFile("abc", path.c_str()));
  EXPECT_EQ(FileText(path), "abc3456789");
  ASSERT_TRUE(WriteTextFile("", Path("empty.txt").c_str()));
  EXPECT_TRUE(Exists(Path("empty.txt")));
  EXPECT_EQ(ReadBytes(Path("empty.txt")).size(), 0u);
  EXPECT_FALSE(WriteTextFile("x", Path("missing-folder/x.txt").c_str()));
}

TEST_F(TextReport, OlderLongerReportLeavesNoTrailingText) {
  const std::string path = Path("Log File.txt");
  WriteBytes(path, std::vector<uint8_t>(5000, 'O'));
  FillAll();
  GenerateTextReport();
  EXPECT_EQ(FileText(path), FinishedReport);
  GenerateTextReport();  // pressed twice: the same file again
  EXPECT_EQ(FileText(path), FinishedReport);
}

TEST_F(TextReport, InstalledFolderGivesTheReportPathWithItsCapitals) {
  SetProgramFolder("c:\\program files\\Orvalen");
  EXPECT_EQ(ReportFilePath(), std::string("c:\\Program Files\\Orvalen") + kPathSeparator + "Log File.txt");
  EXPECT_EQ(EditorCommandLine(), "notepad.exe  " + ReportFilePath());
  SetProgramFolder("C:\\PROGRAM FILES\\ORVALEN");
  EXPECT_EQ(ReportFilePath(), std::string("c:\\Program Files\\Orvalen") + kPathSeparator + "Log File.txt");
  SetProgramFolder(folder_);
}

TEST_F(TextReport, NoListYetWritesAnEmptyFile) {
  WriteBytes(Path("Log File.txt"), {'o', 'l', 'd'});
  GenerateTextReport();
  EXPECT_TRUE(Exists(Path("Log File.txt")));
  EXPECT_EQ(ReadBytes(Path("Log File.txt")).size(), 0u);
}

TEST_F(TextReport, EditorIsStartedWithTheFixedCommandLineEvenWhenTheWriteFails) {
  reportHooks.launchEditor = &TextReport::RecordLaunch;
  const std::string reportPath = JoinPath(folder_, "Log File.txt");
  EXPECT_EQ(ReportFilePath(), reportPath);
  EXPECT_EQ(EditorCommandLine(), "notepad.exe  " + reportPath);
  EXPECT_EQ(EditorApplicationPath(), JoinPath(folder_, "NOTEPAD.EXE"));
  GenerateTextReport();
  ASSERT_EQ(launches.size(), 2u);
  EXPECT_EQ(launches[0], JoinPath(folder_, "NOTEPAD.EXE"));
  EXPECT_EQ(launches[1], "notepad.exe  " + reportPath);

  SetProgramFolder(JoinPath(folder_, "no-such-folder"));
  GenerateTextReport();
  EXPECT_EQ(launches.size(), 4u);
  EXPECT_FALSE(Exists(ReportFilePath()));
}

}  // namespace

// A log damaged on disk: impossible dates, times and durations are shown as they
// are (a weekday or month out of range leaves its text out), names without a
// terminator stay inside their record, and saving such a log after a session keeps
// every record that was recorded.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "logview/log_view_lines.h"
#include "logview/text_report.h"
#include "monitor/session.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

class DamagedLog : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    PendingReport.clear();
    FinishedReport.clear();
  }

  static SessionRecord Impossible() {
    SessionRecord record = UsedRecord("Home ISP", -65);
    record.dayOfWeek = 9;
    record.month = 13;
    record.day = 99;
    record.year = 0;
    record.logOnHour = 25;
    record.logOnMinute = 61;
    record.logOnSecond = 75;
    record.logOffHour = 99;
    record.logOffMinute = 0;
    record.logOffSecond = 5;
    return record;
  }

  void WriteLogFile(uint32_t claimedCount, const std::vector<SessionRecord>& records) {
    std::vector<uint8_t> bytes(8 + records.size() * sizeof(SessionRecord));
    const uint32_t header[2] = {claimedCount, claimedCount * 192u};
    std::memcpy(bytes.data(), header, sizeof header);
    if (!records.empty()) std::memcpy(bytes.data() + 8, records.data(), records.size() * sizeof(SessionRecord));
    WriteBytes(LogFilePath(), bytes);
  }
};

TEST_F(DamagedLog, ImpossibleValuesAreShownAsTheyAreInTheListAndTheReport) {
  AppendToLog(Impossible());
  SessionRecord noMonth = Impossible();
  noMonth.dayOfWeek = 6;
  noMonth.month = 0;
  noMonth.durationSeconds = INT32_MIN;
  AppendToLog(noMonth);

  char year[kFilterYearSize] = "ALL ";
  LogListing listing;
  ASSERT_TRUE(BuildLogListing(kAllConnections, kAllMonths, year, listing));
  ASSERT_EQ(listing.lines.size(), 12u);
  EXPECT_EQ(listing.lines.LineText(0), " Date                     :   99, 0") << "no weekday, no month";
  EXPECT_EQ(listing.lines.LineText(2), " Log Off Time        : 87 : 00 : 05  PM");
  EXPECT_EQ(listing.lines.LineText(3), " Log On Time        : 13 : 61 : 75  PM");
  EXPECT_EQ(listing.lines.LineText(4), " Duration               : 0 Hr : -1 Min : -5 sec");
  EXPECT_EQ(listing.lines.LineText(6), " Date                     : Sat.    99, 0") << "weekday without month";
  EXPECT_EQ(listing.lines.LineText(10), " Duration               : -596523 Hr : -14 Min : -8 sec");

  EXPECT_NE(FinishedReport.find(" Date\t\t\t  99, 0\r\n Connection Used\tHome ISP\r\n"
                                " Log Off Time\t\t87 : 00 : 05  PM\r\n Log On Time\t\t13 : 61 : 75  PM\r\n"
                                " Duration\t\t0 Hr : -1 Min : -5 sec\r\n"),
            std::string::npos)
      << FinishedReport;
  EXPECT_NE(FinishedReport.find(" Date\t\t\tSat.    99, 0\r\n"), std::string::npos);

  // The 24-hour clock shows the raw hour.
  settings.use24HourClock = 1;
  ASSERT_TRUE(BuildLogListing(kAllConnections, kAllMonths, year, listing));
  EXPECT_EQ(listing.lines.LineText(2), " Log Off Time        : 99 : 00 : 05   ");
}

TEST_F(DamagedLog, ASessionRecordedIntoADamagedLogKeepsEveryRecordOnDisk) {
  SessionRecord unterminated = UsedRecord("", 100);
  std::memset(unterminated.connectionName, 'n', kRecordNameSize);
  SessionRecord oddStatus = UsedRecord("Odd", 200);
  oddStatus.status = 7;
  SessionRecord deleted = UsedRecord("Gone", 300);
  deleted.status = Deleted;
  // The header claims far more records than the three there: damage, not padding.
  WriteLogFile(4000000000u, {Impossible(), unterminated, deleted, oddStatus});
  ASSERT_TRUE(LoadLog(LogFilePath().c_str()));
  ASSERT_EQ(sessionLog.count, 4u);
  EXPECT_EQ(sessionLog.records[1].connectionName[kRecordNameSize - 1], '\0') << "name ended in its record";

  ASSERT_TRUE(RecordInterruptedSession("Home ISP", 10, 0, 0, 10, 3, 0, 180, 1, 1, 7, 2002));
  EXPECT_EQ(sessionLog.records[2].status, InUse) << "the Deleted record is reused";
  EXPECT_EQ(sessionLog.records[2].durationSeconds, 180);
  const std::vector<SessionRecord> saved = sessionLog.records;

  sessionLog = SessionLog{};
  ASSERT_TRUE(LoadLog(LogFilePath().c_str()));
  ASSERT_EQ(sessionLog.count, 4u);
  EXPECT_EQ(std::memcmp(sessionLog.records.data(), saved.data(), 4 * sizeof(SessionRecord)), 0);
  EXPECT_EQ(sessionLog.records[0].durationSeconds, -65);
  EXPECT_EQ(std::string(sessionLog.records[1].connectionName), std::string(kRecordNameSize - 1, 'n'));
  EXPECT_EQ(sessionLog.records[3].status, 7) << "an unknown status is kept, not reused";
  EXPECT_EQ(U32At(ReadBytes(LogFilePath()), 0), 4u) << "the header's count is repaired";
}

TEST_F(DamagedLog, AHeaderCountBelowTheRecordsInTheFileHidesNone) {
  std::vector<SessionRecord> five;
  for (const char* name : {"A", "B", "C", "D", "E"}) five.push_back(UsedRecord(name, 60));
  for (const uint32_t claimed : {0u, 1u, 4u, 5u, 7u}) {
    SCOPED_TRACE(claimed);
    WriteLogFile(claimed, five);
    ASSERT_TRUE(LoadLog(LogFilePath().c_str()));
    EXPECT_EQ(sessionLog.count, std::max(claimed, 5u));
    ASSERT_TRUE(RecordInterruptedSession("New", 10, 0, 0, 10, 3, 0, 180, 1, 1, 7, 2002));
    sessionLog = SessionLog{};
    ASSERT_TRUE(LoadLog(LogFilePath().c_str()));
    EXPECT_FALSE(IsLogEmpty());
    EXPECT_EQ(std::count_if(sessionLog.records.begin(), sessionLog.records.end(),
                            [](const SessionRecord& record) { return record.status == InUse; }),
              6) << "the five on disk and the new one";
  }
}

}  // namespace

#include <cstring>
#include <string>
#include <vector>

#include "app/status_text.h"
#include "monitor/dial_up_probe.h"
#include "monitor/session.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

class StatusText : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    clock_.now = {2002, 1, 1, 7, 10, 0, 0};
  }

  void Log(const char* name, int32_t seconds) { AppendToLog(UsedRecord(name, seconds)); }

  void Account(const char* name, uint32_t kind, uint32_t hours) { ConfigureAccount(0, name, kind, hours); }

  // On-line in a session that has run for the given seconds.
  void OnLineFor(uint32_t seconds) {
    ras_.Connect("Card ISP");
    TickConnected = DialUpProbe().IsConnected();
    SessionStartSeconds = clock_.tickMs / 1000;
    clock_.Advance(seconds);
  }
};

TEST_F(StatusText, HourFiguresTakeHrUpToOneHourAndHrsAbove) {
  EXPECT_EQ(HoursText(0.5f), "0.50 Hr.");
  EXPECT_EQ(HoursText(1.0f), "1.00 Hr.");
  EXPECT_EQ(HoursText(1.01f), "1.01 Hrs.");
  EXPECT_EQ(HoursText(0.0f), "0.00 Hr.");
}

TEST_F(StatusText, CardCountsDownWithTheRunningSession) {
  Log("Card ISP", 9 * 3600);
  Account("Card ISP", PrePaidCard, 10);
  OnLineFor(1800);
  RefreshStatusText();
  EXPECT_STREQ(statusText,
               "\nType of Account: Pre-paid Internet Card \n Time remaining on this card : 0.50 Hr.");
}

TEST_F(StatusText, UsedUpCardShowsZeroNeverNegative) {
  Log("Card ISP", 11 * 3600);
  Account("Card ISP", PrePaidCard, 10);
  OnLineFor(60);
  RefreshStatusText();
  EXPECT_STREQ(statusText,
               "\nType of Account: Pre-paid Internet Card \n Time remaining on this card : 0.00 Hr.");
}

TEST_F(StatusText, LimitedAccessCountsTheMonthIncludingTheRunningSession) {
  Log("Card ISP", 3600);
  Account("Card ISP", LimitedAccess, 10);
  OnLineFor(36);
  RefreshStatusText();
  EXPECT_STREQ(statusText, "\nType of Account: Limited Access account\n Time Consumed this month : 1.01 Hrs.");
}

TEST_F(StatusText, ConnectionWithoutAnAccountSaysSo) {
  OnLineFor(5);
  RefreshStatusText();
  EXPECT_STREQ(statusText, "\nType of Account:  Account info not yet configured for Orvalen's database\n ");
}

TEST_F(StatusText, OffLineShowsNoActiveConnections) {
  RefreshStatusText();
  EXPECT_STREQ(statusText, kOffLineStatusText);
}

TEST_F(StatusText, PreviousSessionSummaryLines) {
  std::strcpy(settings.previousSession.connectionName, "Card ISP");
  settings.previousSession.dayOfWeek = 1;
  settings.previousSession.month = 1;
  settings.previousSession.day = 7;
  settings.previousSession.year = 2002;
  settings.previousSession.logOn = {14, 5, 9};
  settings.previousSession.logOff = {15, 10, 0};
  settings.previousSession.durationSeconds = 3725;
  Log("card isp", 3600);
  Account("Card ISP", PrePaidCard, 10);
  const std::vector<std::string> expected = {
      "----------------------  Previous Session  ----------------------",
      " Connection  :                   Card ISP",
      " Date :                              Mon.  Jan.  7, 2002",
      " ON:  2 : 05 : 09  PM       OFF:  3 : 10 : 00  PM",
      " Duration :                        1 Hr: 2 Min: 5 Sec",
      " Card :                    1.00 Hrs.   of  10 Hrs. used",
  };
  EXPECT_EQ(PreviousSessionLines(), expected);
}

TEST_F(StatusText, PreviousSessionWithoutAccountEndsWithAnEmptyLine) {
  std::memset(settings.previousSession.connectionName, 'N', kPreviousNameSize);  // damaged: no terminator
  const std::vector<std::string> lines = PreviousSessionLines();
  ASSERT_EQ(lines.size(), 6u);
  EXPECT_EQ(lines[1], " Connection  :                   " + std::string(kPreviousNameSize, 'N'));
  EXPECT_EQ(lines[5], "");
}

}  // namespace

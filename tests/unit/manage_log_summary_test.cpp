#include "logview/manage_log_summary.h"

#include <cstdint>
#include <string>
#include <vector>

#include "storage/account_record.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

class ManageLog : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    ManageLogResult = kLogUnchanged;
  }

  // Status bytes of the records in the saved log file.
  std::vector<uint32_t> SavedStatuses() const {
    const std::vector<uint8_t> bytes = ReadBytes(LogFilePath());
    std::vector<uint32_t> statuses;
    for (std::size_t at = 8; at + sizeof(SessionRecord) <= bytes.size(); at += sizeof(SessionRecord)) {
      statuses.push_back(bytes[at]);
    }
    return statuses;
  }

  std::vector<uint8_t> SavedSettings() const { return ReadBytes(SettingsPath()); }
};

using Statuses = std::vector<uint32_t>;

TEST_F(ManageLog, SummaryOfEachAccountKind) {
  AppendToLog(UsedRecord("Card", 5400));                 // this month (January 2002)
  AppendToLog(UsedRecord("card", 1800, 12, 2001));       // same connection in another case, last year
  AppendToLog(UsedRecord("Limited", 900));
  AppendToLog(UsedRecord("Limited", 2700, 11, 2001));
  AppendToLog(UsedRecord("Flat", 60));
  AppendToLog(UsedRecord("Nobody", 60));
  AppendToLog(UsedRecord("Unset", 60));
  ConfigureAccount(0, "Card", PrePaidCard, 10);
  ConfigureAccount(1, "Limited", LimitedAccess, 5, 9.5f, 0.1f, 16.0f);
  ConfigureAccount(2, "Flat", UnlimitedAccess);
  ConfigureAccount(3, "Unset", LimitedAccess).configured = 0;

  // 7200 s of 36000 logged in every letter case: 2 hours used, 8 left.
  EXPECT_EQ(ManageLogSummaryText("Card"), "Pre-paid Internet Card\nTotal Time : 2.00 Hrs.\nRemaining : 8.00 Hrs.");
  EXPECT_EQ(ManageLogSummaryText("Limited"), "Limited Access\nThis Month: 0.25 Hrs\nLogged Total :1.00 Hrs");
  EXPECT_EQ(ManageLogSummaryText("Flat"), "Unlimited Access");
  EXPECT_EQ(ManageLogSummaryText("Nobody"), "");
  EXPECT_EQ(ManageLogSummaryText("Unset"), "");
  EXPECT_EQ(ManageLogSummaryText(""), "");
}

TEST_F(ManageLog, UsedUpCardShowsNothingLeft) {
  AppendToLog(UsedRecord("Card", 4 * 3600 + 1));
  ConfigureAccount(0, "Card", PrePaidCard, 4);
  EXPECT_EQ(ManageLogSummaryText("Card"), "Pre-paid Internet Card\nTotal Time : 4.00 Hrs.\nRemaining : 0.00 Hrs.");
}

TEST_F(ManageLog, DeleteEntryTakesTheExactNameAndItsAccountAndSavesBoth) {
  AppendToLog(UsedRecord("Home ISP", 60));
  AppendToLog(UsedRecord("home isp", 60));
  AppendToLog(UsedRecord("Work", 60));
  AppendToLog(UsedRecord("Home ISP", 60));
  ConfigureAccount(0, "Home ISP", PrePaidCard, 10);
  ConfigureAccount(1, "home isp", UnlimitedAccess);

  EXPECT_EQ(DeleteConnectionEntries("Home ISP"), kRecordsDeleted);
  EXPECT_EQ(ManageLogResult, kRecordsDeleted);
  EXPECT_EQ(SavedStatuses(), (Statuses{Deleted, InUse, InUse, Deleted}));
  EXPECT_EQ(sessionLog.count, 4u);
  EXPECT_EQ(settings.accounts[0].configured, 0u);
  EXPECT_STREQ(settings.accounts[0].connectionName, "");
  EXPECT_STREQ(settings.accounts[1].connectionName, "home isp");
  const std::vector<uint8_t> saved = SavedSettings();
  ASSERT_EQ(saved.size(), sizeof(Settings));
  EXPECT_EQ(U32At(saved, offsetof(Settings, accounts)), 0u);                    // configured
  EXPECT_EQ(saved[offsetof(Settings, accounts) + 4], 0u);                       // name
  EXPECT_EQ(U32At(saved, offsetof(Settings, accounts) + sizeof(AccountRecord)), 1u);

  // Nothing of that name is left: the result says nothing changed.
  EXPECT_EQ(DeleteConnectionEntries("Home ISP"), kLogUnchanged);
  EXPECT_EQ(ManageLogResult, kLogUnchanged);
}

TEST_F(ManageLog, ClearEntireLogKeepsTheArrayAndTheAccounts) {
  AppendToLog(UsedRecord("Home ISP", 60));
  SessionRecord blank = UsedRecord("", 0);
  blank.status = Blank;
  AppendToLog(blank);
  AppendToLog(UsedRecord("Work", 60));
  ConfigureAccount(0, "Work", UnlimitedAccess);

  EXPECT_EQ(ClearEntireLog(), kLogCleared);
  EXPECT_EQ(ManageLogResult, kLogCleared);
  EXPECT_EQ(SavedStatuses(), (Statuses{Deleted, Deleted, Deleted}));
  EXPECT_TRUE(IsLogEmpty());
  EXPECT_EQ(settings.accounts[0].configured, 1u);
  EXPECT_STREQ(settings.accounts[0].connectionName, "Work");
  EXPECT_EQ(SavedSettings().size(), sizeof(Settings));
}

}  // namespace

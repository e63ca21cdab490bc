#include <cstring>
#include <string>

#include "storage/accounts.h"
#include "storage/fixed_text.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

constexpr int32_t kMinute = 60;
constexpr int32_t kHour = 3600;

class Accounts : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    clock_.now = {2002, 1, 1, 7, 10, 0, 0};  // January 2002
    cardSecondsRemaining = 0.0f;
  }

  // Appends one record to the in-memory log.
  void Log(const char* name, int32_t seconds, uint32_t month = 1, uint32_t year = 2002,
           RecordStatus status = InUse) {
    SessionRecord record = UsedRecord(name, seconds, month, year);
    record.status = status;
    AppendToLog(record);
  }

  AccountRecord& Configure(int k, const char* name, uint32_t kind, uint32_t hours = 0, float monthlyCharge = 0.0f,
                           float excessPerMinute = 0.0f, float vatPercent = 0.0f) {
    return ConfigureAccount(k, name, kind, hours, monthlyCharge, excessPerMinute, vatPercent);
  }

  // The limited-access plan of the worked example: 10 hours included, 20.0 a
  // month, 0.05 a minute beyond, 5 % VAT.
  void ConfigureLimited(const char* name) { Configure(0, name, LimitedAccess, 10, 20.0f, 0.05f, 5.0f); }
};

// --- Limited access -------------------------------------------------------

TEST_F(Accounts, LimitedAccessChargesTheMinutesBeyondTheBasicUsageWithVat) {
  ConfigureLimited("Home ISP");
  Log("Home ISP", 400 * kMinute);
  Log("Home ISP", 300 * kMinute);
  UsageSummary summary;
  const float cost = ComputeUsage("Home ISP", summary);
  EXPECT_FLOAT_EQ(cost, 26.25f);
  EXPECT_FLOAT_EQ(summary.cost, 26.25f);
  EXPECT_EQ(summary.kind, LimitedAccess);
  EXPECT_EQ(summary.excessMinutes, 100);
  EXPECT_EQ(summary.allotted, 600);
  EXPECT_EQ(summary.secondsThisMonth, 700 * kMinute);
  EXPECT_EQ(summary.totalSeconds, 700 * kMinute);
}

TEST_F(Accounts, LimitedAccessIgnoresTheSecondsOfAnUnfinishedMinute) {
  ConfigureLimited("Home ISP");
  Log("Home ISP", 600 * kMinute + 59);
  UsageSummary summary;
  EXPECT_FLOAT_EQ(ComputeUsage("Home ISP", summary), 21.0f);
  EXPECT_EQ(summary.excessMinutes, 0);
  EXPECT_EQ(summary.allotted, 600);
  EXPECT_EQ(summary.secondsThisMonth, 600 * kMinute + 59);
}

TEST_F(Accounts, OtherMonthsCountInTheTotalButNotInTheMonthOrTheCost) {
  ConfigureLimited("Home ISP");
  Log("Home ISP", 650 * kMinute);              // January 2002: this month
  Log("Home ISP", 100 * kMinute, 12, 2001);    // the previous month
  Log("Home ISP", 100 * kMinute, 1, 2001);     // the same month a year earlier
  UsageSummary summary;
  const float cost = ComputeUsage("Home ISP", summary);
  EXPECT_EQ(summary.secondsThisMonth, 650 * kMinute);
  EXPECT_EQ(summary.totalSeconds, 850 * kMinute);
  EXPECT_EQ(summary.excessMinutes, 50);
  EXPECT_FLOAT_EQ(cost, (20.0f + 50 * 0.05f) * 1.05f);
}

TEST_F(Accounts, TheMonthFollowsTheClock) {
  ConfigureLimited("Home ISP");
  Log("Home ISP", 700 * kMinute);  // January
  clock_.now.month = 2;
  UsageSummary summary;
  EXPECT_FLOAT_EQ(ComputeUsage("Home ISP", summary), 21.0f) << "February starts with the basic charge";
  EXPECT_EQ(summary.secondsThisMonth, 0);
  EXPECT_EQ(summary.totalSeconds, 700 * kMinute);
}

// --- Pre-paid card and unlimited access -----------------------------------

TEST_F(Accounts, CardGivesTheSecondsLeftAndNeverLessThanZero) {
  Configure(0, "Card", PrePaidCard, 10);
  Log("Card", 4 * kHour);
  UsageSummary summary;
  EXPECT_FLOAT_EQ(ComputeUsage("Card", summary), 6.0f * kHour);
  EXPECT_FLOAT_EQ(cardSecondsRemaining, 6.0f * kHour);
  EXPECT_EQ(summary.kind, PrePaidCard);
  EXPECT_EQ(summary.allotted, 10);
  EXPECT_FLOAT_EQ(summary.cost, 0.0f);

  Log("Card", 7 * kHour);  // 11 hours on a card of 10
  EXPECT_FLOAT_EQ(ComputeUsage("Card", summary), 0.0f);
  EXPECT_FLOAT_EQ(cardSecondsRemaining, 0.0f);
  EXPECT_EQ(summary.totalSeconds, 11 * kHour);
}

TEST_F(Accounts, UnlimitedAccessReturnsOneAndNoFigures) {
  Configure(0, "Flat", UnlimitedAccess, 5, 9.0f, 1.0f, 10.0f);
  Log("Flat", 900 * kMinute);
  UsageSummary summary;
  EXPECT_FLOAT_EQ(ComputeUsage("Flat", summary), 1.0f);
  EXPECT_EQ(summary.kind, UnlimitedAccess);
  EXPECT_EQ(summary.secondsThisMonth, 900 * kMinute);
  EXPECT_EQ(summary.allotted, 0);
  EXPECT_EQ(summary.excessMinutes, 0);
  EXPECT_FLOAT_EQ(summary.cost, 0.0f);
}

TEST_F(Accounts, KindNotChosenOrUnknownGivesZeroButKeepsTheSeconds) {
  Configure(0, "None", NotChosen);
  Configure(1, "Odd", 9);
  Log("None", 120);
  Log("Odd", 240);
  UsageSummary summary;
  EXPECT_FLOAT_EQ(ComputeUsage("None", summary), 0.0f);
  EXPECT_EQ(summary.kind, NotChosen);
  EXPECT_EQ(summary.totalSeconds, 120);
  EXPECT_FLOAT_EQ(ComputeUsage("Odd", summary), 0.0f);
  EXPECT_EQ(summary.kind, 9u);
  EXPECT_EQ(summary.secondsThisMonth, 240);
}

// --- Which records and which account count ---------------------------------

TEST_F(Accounts, RecordNamesMatchIgnoringCaseButAccountNamesDoNot) {
  Configure(0, "Home ISP", UnlimitedAccess);
  Log("home isp", 100);
  Log("HOME ISP", 200);
  Log("Home ISP2", 400);
  UsageSummary summary;
  EXPECT_FLOAT_EQ(ComputeUsage("Home ISP", summary), 1.0f);
  EXPECT_EQ(summary.totalSeconds, 300);

  // Records of "home isp" exist, but the account is named "Home ISP".
  EXPECT_FLOAT_EQ(ComputeUsage("home isp", summary), 0.0f);
  EXPECT_EQ(summary.kind, NotChosen);
  EXPECT_EQ(summary.totalSeconds, 0);
  EXPECT_EQ(FindAccount("home isp"), kNoAccount);
  EXPECT_EQ(AccountIndexByName("HOME ISP"), kNoAccount);
  EXPECT_EQ(FindAccount("Home ISP"), 0);
}

TEST_F(Accounts, NamedButUnconfiguredEntryGivesZero) {
  AddAccountName("Home ISP");
  Log("Home ISP", 700 * kMinute);
  UsageSummary summary;
  summary.totalSeconds = 77;
  EXPECT_FLOAT_EQ(ComputeUsage("Home ISP", summary), 0.0f);
  EXPECT_EQ(summary.kind, NotChosen);
  EXPECT_EQ(summary.totalSeconds, 0) << "the summary is all zero";
  EXPECT_EQ(AccountIndexByName("Home ISP"), 0);
  EXPECT_EQ(FindAccount("Home ISP"), kNoAccount);
}

TEST_F(Accounts, ConfiguredAccountWithoutRecordsGivesZero) {
  Configure(0, "Card", PrePaidCard, 10);
  Log("Other", 100);
  UsageSummary summary;
  EXPECT_FLOAT_EQ(ComputeUsage("Card", summary), 0.0f);
  EXPECT_EQ(summary.kind, NotChosen);
  EXPECT_EQ(summary.allotted, 0);
}

TEST_F(Accounts, DeletedRecordsAreNotCounted) {
  Configure(0, "Home ISP", UnlimitedAccess);
  Log("Home ISP", 100);
  Log("Home ISP", 5000, 1, 2002, Deleted);
  UsageSummary summary;
  ComputeUsage("Home ISP", summary);
  EXPECT_EQ(summary.totalSeconds, 100);
  EXPECT_EQ(summary.secondsThisMonth, 100);

  // Only deleted records: as if the connection had none.
  sessionLog.records[0].status = Deleted;
  EXPECT_FLOAT_EQ(ComputeUsage("Home ISP", summary), 0.0f);
  EXPECT_EQ(summary.kind, NotChosen);
}

TEST_F(Accounts, TheLowestConfiguredEntryWins) {
  AddAccountName("Home ISP");                                   // entry 0, not configured
  Configure(1, "Home ISP", PrePaidCard, 2);
  Configure(2, "Home ISP", UnlimitedAccess);
  Log("Home ISP", kHour);
  EXPECT_EQ(AccountIndexByName("Home ISP"), 0);
  EXPECT_EQ(FindAccount("Home ISP"), 1);
  UsageSummary summary;
  EXPECT_FLOAT_EQ(ComputeUsage("Home ISP", summary), 1.0f * kHour);
}

TEST_F(Accounts, TotalIsAFloatSumAndTheMonthAnIntegerSum) {
  Configure(0, "Long", UnlimitedAccess);
  Log("Long", 16777216);  // 2^24: the next odd second is lost in a 32-bit float
  Log("Long", 1);
  UsageSummary summary;
  ComputeUsage("Long", summary);
  EXPECT_EQ(summary.totalSeconds, 16777216);
  EXPECT_EQ(summary.secondsThisMonth, 16777217);
}

TEST_F(Accounts, AccessorsEachReturnOneFigure) {
  Configure(0, "Card", PrePaidCard, 10);
  Configure(1, "Home ISP", LimitedAccess, 10, 20.0f, 0.05f, 5.0f);
  Log("Card", 3 * kHour, 12, 2001);
  Log("Card", kHour);
  Log("Home ISP", 125);

  EXPECT_EQ(AccountKindOf("Card"), PrePaidCard);
  EXPECT_EQ(AllottedAmount("Card"), 10);
  EXPECT_EQ(SecondsThisMonth("Card"), kHour);
  EXPECT_EQ(TotalSeconds("Card"), 4 * kHour);
  EXPECT_FLOAT_EQ(CardSecondsRemaining("Card"), 6.0f * kHour);

  EXPECT_EQ(AccountKindOf("Home ISP"), LimitedAccess);
  EXPECT_EQ(AllottedAmount("Home ISP"), 600);
  EXPECT_EQ(SecondsThisMonth("Home ISP"), 125);
  EXPECT_EQ(AccountKindOf("Nobody"), NotChosen);
}

// --- The table: adding, deleting, names -----------------------------------

TEST_F(Accounts, AddAccountNameFillsTheLowestFreeEntryOnce) {
  AddAccountName("First");
  AddAccountName("Second");
  AddAccountName("First");
  EXPECT_STREQ(AccountName(0), "First");
  EXPECT_STREQ(AccountName(1), "Second");
  EXPECT_STREQ(AccountName(2), "");
  EXPECT_EQ(settings.accounts[0].configured, 0u);

  CopyFixedText(AccountName(0), kAccountNameSize, "");  // free entry 0 again
  AddAccountName("Third");
  EXPECT_STREQ(AccountName(0), "Third");
  EXPECT_EQ(AccountIndexByName("Second"), 1);
}

TEST_F(Accounts, AddAccountNameDoesNothingWhenTheTableIsFull) {
  for (int k = 0; k < 50; ++k) AddAccountName(("Connection " + std::to_string(k)).c_str());
  EXPECT_STREQ(AccountName(49), "Connection 49");
  const Settings before = settings;
  AddAccountName("One too many");
  EXPECT_EQ(0, std::memcmp(&before, &settings, sizeof settings));
  EXPECT_EQ(AccountIndexByName("One too many"), kNoAccount);
}

TEST_F(Accounts, EmptyNamesAreNeitherAddedNorFound) {
  AddAccountName("");
  AddAccountName(nullptr);
  EXPECT_STREQ(AccountName(0), "");
  EXPECT_EQ(AccountIndexByName(""), kNoAccount) << "a free entry is not an entry named \"\"";
  EXPECT_FALSE(DeleteAccount(""));
}

TEST_F(Accounts, DeleteAccountFreesTheEntryButKeepsKindAndFigures) {
  AccountRecord& account = Configure(3, "Home ISP", LimitedAccess, 10, 20.0f, 0.05f, 5.0f);
  EXPECT_FALSE(DeleteAccount("home isp")) << "account names are compared exactly";
  EXPECT_TRUE(DeleteAccount("Home ISP"));
  EXPECT_STREQ(account.connectionName, "");
  EXPECT_EQ(account.configured, 0u);
  EXPECT_EQ(account.kind, LimitedAccess);
  EXPECT_EQ(account.hours, 10u);
  EXPECT_FLOAT_EQ(account.monthlyCharge, 20.0f);
  EXPECT_FALSE(DeleteAccount("Home ISP"));

  // Reused for a new name, the entry still carries the old figures, unconfigured.
  for (int k = 0; k < 3; ++k) AddAccountName(("Taken " + std::to_string(k)).c_str());
  AddAccountName("New ISP");
  EXPECT_EQ(AccountIndexByName("New ISP"), 3);
  EXPECT_EQ(account.kind, LimitedAccess);
  EXPECT_EQ(FindAccount("New ISP"), kNoAccount);
}

TEST_F(Accounts, AccountNameGivesTheWritableFieldWithinTheTable) {
  EXPECT_EQ(AccountName(0), settings.accounts[0].connectionName);
  EXPECT_EQ(AccountName(49), settings.accounts[49].connectionName);
  EXPECT_EQ(AccountName(50), nullptr);
  EXPECT_EQ(AccountName(-1), nullptr);
}

TEST_F(Accounts, LongConnectionNamesAreCutTo31CharactersEverywhere) {
  const std::string longName = "Dial-up Networking connection to the office";  // 43 characters
  const std::string stored = longName.substr(0, 31);
  AddAccountName(longName.c_str());
  EXPECT_EQ(std::string(AccountName(0)), stored);
  AddAccountName(longName.c_str());
  EXPECT_STREQ(AccountName(1), "") << "the long name finds its entry again";
  EXPECT_EQ(AccountIndexByName(longName.c_str()), 0);
  EXPECT_EQ(AccountIndexByName(stored.c_str()), 0);
  EXPECT_EQ(AccountIndexByName(stored.substr(0, 30).c_str()), kNoAccount);

  settings.accounts[0].configured = 1;
  settings.accounts[0].kind = UnlimitedAccess;
  Log(longName.c_str(), 300);
  EXPECT_EQ(FindAccount(longName.c_str()), 0);
  EXPECT_EQ(AccountKindOf(longName.c_str()), UnlimitedAccess);
  EXPECT_EQ(TotalSeconds(longName.c_str()), 300);

  EXPECT_TRUE(DeleteAccount(longName.c_str()));
  EXPECT_EQ(AccountIndexByName(longName.c_str()), kNoAccount);
}

TEST_F(Accounts, UnterminatedNameFieldsMatchNothing) {
  // A damaged file: 32 name bytes without a terminator, followed by the kind.
  AccountRecord& account = settings.accounts[0];
  std::memset(account.connectionName, 'A', kAccountNameSize);
  account.configured = 1;
  account.kind = UnlimitedAccess;
  const std::string name(40, 'A');
  EXPECT_EQ(AccountIndexByName(name.c_str()), kNoAccount);
  EXPECT_EQ(AccountIndexByName(name.substr(0, 31).c_str()), kNoAccount);
  EXPECT_EQ(FindAccount(name.c_str()), kNoAccount);
  AddAccountName("Next");
  EXPECT_EQ(AccountIndexByName("Next"), 1) << "a damaged entry is not free";
}

TEST_F(Accounts, LongRecordNamesMatchTheNameTheyWereCutFrom) {
  const std::string name(120, 'x');
  Configure(0, name.c_str(), UnlimitedAccess);
  Log(name.c_str(), 50);  // stored as its first 104 characters
  EXPECT_EQ(TotalSeconds(name.c_str()), 50);
}

}  // namespace

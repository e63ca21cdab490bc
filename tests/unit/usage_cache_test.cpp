// The usage cache against the straightforward walk of the log: after every kind of
// change (log, accounts, month) the cached figures must be exactly the fresh ones.
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

#include "app/status_text.h"
#include "monitor/dial_up_probe.h"
#include "monitor/session.h"
#include "storage/accounts.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "storage/usage_cache.h"
#include "test_support.h"

namespace {

uint32_t Bits(float value) {
  uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

class UsageCache : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    clock_.now = {2002, 3, 1, 12, 9, 0, 0};  // Tuesday 12 March 2002
    AppendToLog(UsedRecord("Card ISP", 4 * 3600, 3, 2002));
    AppendToLog(UsedRecord("card isp", 1800, 2, 2002));
    AppendToLog(UsedRecord("Month ISP", 700 * 60, 3, 2002));
    AppendToLog(UsedRecord("Month ISP", 5 * 3600, 1, 2002));
    AppendToLog(UsedRecord("Flat ISP", 99, 3, 2002));
    AppendToLog(SessionRecord{});
    ConfigureAccount(0, "Card ISP", PrePaidCard, 10);
    ConfigureAccount(1, "Month ISP", LimitedAccess, 10, 20.0f, 0.05f, 5.0f);
    ConfigureAccount(2, "Flat ISP", UnlimitedAccess);
  }

  // Every figure and the result, through the cache and afresh, bit for bit.
  void ExpectSameAsFresh(const char* name) {
    SCOPED_TRACE(std::string("connection \"") + (name ? name : "(null)") + "\"");
    UsageSummary fresh;
    const float freshResult = ComputeUsage(name, fresh);
    const float freshCard = cardSecondsRemaining;
    cardSecondsRemaining = -1.0f;
    UsageSummary cached;
    const float cachedResult = CachedComputeUsage(name, cached);
    EXPECT_EQ(Bits(cachedResult), Bits(freshResult));
    EXPECT_EQ(cached.kind, fresh.kind);
    EXPECT_EQ(cached.secondsThisMonth, fresh.secondsThisMonth);
    EXPECT_EQ(cached.totalSeconds, fresh.totalSeconds);
    EXPECT_EQ(cached.excessMinutes, fresh.excessMinutes);
    EXPECT_EQ(cached.allotted, fresh.allotted);
    EXPECT_EQ(Bits(cached.cost), Bits(fresh.cost));
    if (fresh.kind == PrePaidCard) {
      EXPECT_EQ(Bits(cardSecondsRemaining), Bits(freshCard));
    }
    EXPECT_EQ(CachedAccountKindOf(name), AccountKindOf(name));
    EXPECT_EQ(CachedAllottedAmount(name), AllottedAmount(name));
    EXPECT_EQ(CachedSecondsThisMonth(name), SecondsThisMonth(name));
    EXPECT_EQ(CachedTotalSeconds(name), TotalSeconds(name));
    if (fresh.kind == PrePaidCard) {
      EXPECT_EQ(Bits(CachedCardSecondsRemaining(name)), Bits(CardSecondsRemaining(name)));
    }
  }

  void ExpectAllSameAsFresh() {
    for (const char* name : {"Card ISP", "CARD ISP", "Month ISP", "Flat ISP", "Nobody", ""}) ExpectSameAsFresh(name);
  }

  // Warms the cache, applies the change, and checks that the figure the change
  // touches really moved (so the check cannot pass on a stale cache by luck).
  template <typename Change>
  void ExpectChangeSeen(const char* name, Change change) {
    const int32_t before = CachedTotalSeconds(name) + CachedSecondsThisMonth(name);
    change();
    EXPECT_NE(CachedTotalSeconds(name) + CachedSecondsThisMonth(name), before) << "the change is seen";
    ExpectAllSameAsFresh();
  }
};

TEST_F(UsageCache, RepeatedQueriesWalkTheLogOncePerConnection) {
  ExpectAllSameAsFresh();
  const uint64_t walks = UsageCacheLogWalks();
  for (int i = 0; i < 100; ++i) {
    CachedAccountKindOf("Card ISP");
    CachedCardSecondsRemaining("Card ISP");
    CachedSecondsThisMonth("Month ISP");
  }
  EXPECT_EQ(UsageCacheLogWalks(), walks);
  // The status text of a whole on-line minute at twelve rebuilds a second.
  ras_.Connect("Card ISP");
  TickConnected = DialUpProbe().IsConnected();
  SessionStartSeconds = clock_.tickMs / 1000;
  for (int i = 0; i < 720; ++i) RefreshStatusText();
  EXPECT_EQ(UsageCacheLogWalks(), walks);
  EXPECT_NE(std::strstr(statusText, "5.50 Hrs."), nullptr) << statusText;
}

TEST_F(UsageCache, EveryLogOperationIsSeen) {
  ExpectChangeSeen("Card ISP", [] { SetRecordDuration(0, 60); });
  ExpectChangeSeen("Card ISP", [] { SetRecordDate(0, 0, 2, 3, 2002); });  // leaves the month
  ExpectChangeSeen("Card ISP", [] { SetRecordName(1, "Elsewhere"); });
  ExpectChangeSeen("Card ISP", [] { SetRecordStatus(1, Deleted); SetRecordName(1, "Card ISP"); SetRecordStatus(1, InUse); });
  ExpectChangeSeen("Month ISP", [] { EXPECT_TRUE(MarkConnectionDeleted("Month ISP")); });
  ExpectChangeSeen("Flat ISP", [] { ClearLog(); });
}

TEST_F(UsageCache, FreeSlotsRecordsAndWholeLogReplacementsAreSeen) {
  // A slot taken as the recorder does it.
  ExpectChangeSeen("Flat ISP", [] {
    const uint32_t slot = FindFreeSlot();
    SetRecordStatus(slot, InUse);
    SetRecordDuration(slot, 1000);
    SetRecordDate(slot, 2, 3, 12, 2002);
    SetRecordName(slot, "Flat ISP");
  });
  ExpectChangeSeen("Flat ISP", [] { AppendBlankRecords(); SetRecordStatus(sessionLog.count - 1, InUse);
                                    SetRecordName(sessionLog.count - 1, "Flat ISP");
                                    SetRecordDuration(sessionLog.count - 1, 7); });
  ASSERT_TRUE(SaveLog(Path("saved.ovb").c_str()));
  ExpectChangeSeen("Card ISP", [this] { EXPECT_TRUE(CreateEmptyLog(Path("empty.ovb").c_str())); });
  ExpectChangeSeen("Card ISP", [this] { EXPECT_TRUE(LoadLog(Path("saved.ovb").c_str())); });
  ExpectChangeSeen("Card ISP", [] {
    std::memset(LegacyLogTable, 0, sizeof LegacyLogTable);
    LegacyLogTable[3] = UsedRecord("Card ISP", 36000, 3, 2002);
    ConvertLegacyLog();
  });
}

TEST_F(UsageCache, ARecordedSessionIsInTheNextStatusText) {
  ras_.Connect("Month ISP");
  DialUpProbe probe;
  RunSessionStep(probe);  // opens the session
  clock_.Advance(90 * 60);
  RefreshStatusText();
  EXPECT_NE(std::strstr(statusText, "13.17 Hrs."), nullptr) << "700 min logged, 90 running: " << statusText;
  ras_.state = ScriptedRas::State::Disconnected;
  RunSessionStep(probe);  // records it
  ASSERT_EQ(SessionOpen, 0u);
  ExpectSameAsFresh("Month ISP");
  ras_.Connect("Month ISP");
  RunSessionStep(probe);
  clock_.Advance(30 * 60);
  RefreshStatusText();
  EXPECT_NE(std::strstr(statusText, "13.67 Hrs."), nullptr) << "790 min logged, 30 running: " << statusText;
}

TEST_F(UsageCache, AccountChangesNeedNoInvalidation) {
  ExpectAllSameAsFresh();
  const uint64_t walks = UsageCacheLogWalks();
  settings.accounts[0].hours = 2;  // the card: 4.5 h logged of 2
  EXPECT_EQ(CachedCardSecondsRemaining("Card ISP"), 0.0f);
  ExpectAllSameAsFresh();
  settings.accounts[1].kind = PrePaidCard;
  ExpectAllSameAsFresh();
  settings.accounts[2].configured = 0;
  EXPECT_EQ(CachedAccountKindOf("Flat ISP"), static_cast<uint32_t>(NotChosen));
  ExpectAllSameAsFresh();
  EXPECT_TRUE(DeleteAccount("Card ISP"));
  AddAccountName("Flat ISP");
  ConfigureAccount(5, "CARD ISP", UnlimitedAccess);
  ExpectAllSameAsFresh();
  EXPECT_EQ(UsageCacheLogWalks(), walks) << "the log's sums stay valid";
}

TEST_F(UsageCache, ANewMonthRestartsTheMonthFigures) {
  EXPECT_EQ(CachedSecondsThisMonth("Month ISP"), 700 * 60);
  clock_.now = {2002, 4, 1, 1, 0, 0, 1};
  EXPECT_EQ(CachedSecondsThisMonth("Month ISP"), 0);
  ExpectAllSameAsFresh();
  clock_.now = {2003, 3, 6, 12, 9, 0, 0};  // the same month a year on
  EXPECT_EQ(CachedSecondsThisMonth("Month ISP"), 0);
  ExpectAllSameAsFresh();
}

TEST_F(UsageCache, LongNamesCaseAndManyConnectionsInTurn) {
  const std::string longName(300, 'x');
  const std::string sameFirst104 = std::string(104, 'x') + "different tail";
  AppendToLog(UsedRecord(longName.c_str(), 77, 3, 2002));  // stored as its first 104
  ConfigureAccount(3, longName.c_str(), PrePaidCard, 1);  // stored as its first 31
  ExpectSameAsFresh(longName.c_str());
  ExpectSameAsFresh(sameFirst104.c_str());
  ExpectSameAsFresh(std::string(103, 'x').c_str());
  ExpectSameAsFresh(nullptr);
  // More connections than the cache holds, asked for in turn, twice over.
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 20; ++i) {
      const std::string name = "Conn " + std::to_string(i);
      if (round == 0) {
        AppendToLog(UsedRecord(name.c_str(), 60 * (i + 1), 3, 2002));
        ConfigureAccount(10 + i, name.c_str(), LimitedAccess, 1);
      }
      EXPECT_EQ(CachedSecondsThisMonth(name.c_str()), 60 * (i + 1)) << name;
    }
  }
  ExpectAllSameAsFresh();
}

// Any sequence of the shared log and account operations keeps the cache exact.
TEST_F(UsageCache, RandomOperationsNeverLeaveItStale) {
  std::mt19937 random(20021203);
  const char* const names[] = {"Card ISP", "card isp", "Month ISP", "Flat ISP", "New ISP"};
  auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int step = 0; step < 400; ++step) {
    const char* name = names[pick(5)];
    const uint32_t index = static_cast<uint32_t>(pick(static_cast<int>(sessionLog.count) + 1));
    switch (pick(9)) {
      case 0: {
        const uint32_t slot = FindFreeSlot();
        SetRecordStatus(slot, InUse);
        SetRecordDuration(slot, pick(20000));
        SetRecordDate(slot, 0, 1 + static_cast<uint32_t>(pick(4)), 1, 2002);
        SetRecordName(slot, name);
        break;
      }
      case 1: SetRecordDuration(index, pick(5000)); break;
      case 2: SetRecordName(index, name); break;
      case 3: MarkConnectionDeleted(name); break;
      case 4: if (pick(10) == 0) ClearLog(); break;
      case 5: clock_.now.month = 1 + static_cast<uint32_t>(pick(4)); break;
      case 6: settings.accounts[pick(4)].kind = static_cast<uint32_t>(pick(4)); break;
      case 7: settings.accounts[pick(4)].hours = static_cast<uint32_t>(pick(12)); break;
      default: ConfigureAccount(pick(6), name, static_cast<uint32_t>(pick(4)), 3, 9.5f, 0.1f, 17.5f); break;
    }
    ExpectSameAsFresh(names[pick(5)]);
    if (HasFailure()) FAIL() << "after step " << step;
  }
}

}  // namespace

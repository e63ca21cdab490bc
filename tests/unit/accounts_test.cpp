// Accounts: the table of connection names and plans, the usage and cost each plan
// gives from the log, the figures the accounts page reads, and the usage cache,
// which must always give exactly what the straightforward walk of the log gives.
#include <cstdint>
#include <cstdio>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "app/status_text.h"
#include "storage/account_figures.h"
#include "storage/storage.h"
#include "test_support.h"

namespace {

constexpr int32_t kMinute = 60;
constexpr int32_t kHour = 3600;

class Accounts : public ProgramStateTest {};  // the clock in January 2002

constexpr const char* kIsp = "Azure ISP";  // an A and a Z for the letter-case rows

struct LogRow {
  int32_t seconds;
  uint32_t month = 1, year = 2002;
  RecordStatus status = InUse;
  const char* name = kIsp;
};
struct AccountRow {
  uint32_t kind;
  uint32_t hours = 0;
  uint32_t configured = 1;
  const char* name = kIsp;
};
struct UsageRow {
  const char* what;
  std::vector<LogRow> log;
  std::vector<AccountRow> accounts;  // entries 0, 1, ...; limited plans charge 20.0 + 0.05/min beyond, 5 % VAT
  float result;
  UsageSummary summary;  // kind, secondsThisMonth, totalSeconds, excessMinutes, allotted, cost
  uint32_t clockMonth = 1;
  const char* query = kIsp;
};

// One connection's usage: which records count, which account entry, and what each plan makes of them.
TEST_F(Accounts, UsageTable) {
  const std::vector<AccountRow> limited = {{LimitedAccess, 10}}, card = {{PrePaidCard, 10}}, flat = {{UnlimitedAccess}};
  const UsageRow rows[] = {
      {"limited: minutes beyond the basic usage with VAT", {{400 * kMinute}, {300 * kMinute}}, limited, 26.25f,
       {LimitedAccess, 700 * kMinute, 700 * kMinute, 100, 600, 26.25f}},
      {"limited: the seconds of an unfinished minute are free", {{600 * kMinute + 59}}, limited, 21.0f,
       {LimitedAccess, 600 * kMinute + 59, 600 * kMinute + 59, 0, 600, 21.0f}},
      {"other months count in the total only", {{650 * kMinute}, {100 * kMinute, 12, 2001}, {100 * kMinute, 1, 2001}},
       limited, 22.5f * 1.05f, {LimitedAccess, 650 * kMinute, 850 * kMinute, 50, 600, 22.5f * 1.05f}},
      {"the month follows the clock", {{700 * kMinute}}, limited, 21.0f,
       {LimitedAccess, 0, 700 * kMinute, 0, 600, 21.0f}, 2},
      {"card: the seconds left", {{4 * kHour}}, card, 6.0f * kHour, {PrePaidCard, 4 * kHour, 4 * kHour, 0, 10, 0.0f}},
      {"card: never less than zero", {{11 * kHour}}, card, 0.0f, {PrePaidCard, 11 * kHour, 11 * kHour, 0, 10, 0.0f}},
      {"unlimited: one and no figures", {{900 * kMinute}}, {{UnlimitedAccess, 5}}, 1.0f,
       {UnlimitedAccess, 900 * kMinute, 900 * kMinute, 0, 0, 0.0f}},
      {"kind not chosen", {{120}}, {{NotChosen}}, 0.0f, {NotChosen, 120, 120, 0, 0, 0.0f}},
      {"unknown kind", {{240}}, {{9}}, 0.0f, {9, 240, 240, 0, 0, 0.0f}},
      {"record names match ignoring case",
       {{100, 1, 2002, InUse, "azure isp"}, {200, 1, 2002, InUse, "AZURE ISP"}, {400, 1, 2002, InUse, "Azure ISP2"}},
       flat, 1.0f, {UnlimitedAccess, 300, 300, 0, 0, 0.0f}},
      {"account names do not", {{100, 1, 2002, InUse, "azure isp"}}, flat, 0.0f, {}, 1, "azure isp"},
      {"named but not configured", {{700 * kMinute}}, {{LimitedAccess, 10, 0}}, 0.0f, {}},
      {"configured without records", {{100, 1, 2002, InUse, "Other"}}, card, 0.0f, {}},
      {"deleted records are not counted", {{100}, {5000, 1, 2002, Deleted}}, flat, 1.0f,
       {UnlimitedAccess, 100, 100, 0, 0, 0.0f}},
      {"only deleted records", {{5000, 1, 2002, Deleted}}, flat, 0.0f, {}},
      {"the lowest configured entry wins", {{kHour}}, {{LimitedAccess, 0, 0}, {PrePaidCard, 2}, {UnlimitedAccess}},
       1.0f * kHour, {PrePaidCard, kHour, kHour, 0, 2, 0.0f}},
      {"the total is a float sum, the month an integer sum", {{16777216}, {1}}, flat, 1.0f,
       {UnlimitedAccess, 16777217, 16777216, 0, 0, 0.0f}},
  };
  for (const UsageRow& row : rows) {
    SCOPED_TRACE(row.what);
    storage_.sessionLog = SessionLog{};
    std::memset(storage_.settings.accounts, 0, sizeof storage_.settings.accounts);
    clock_.now.month = row.clockMonth;
    for (const LogRow& r : row.log) LogSession(r.name, r.seconds, r.month, r.year, r.status);
    for (std::size_t k = 0; k < row.accounts.size(); ++k) {
      const AccountRow& a = row.accounts[k];
      ConfigureAccount(static_cast<int>(k), a.name, a.kind, a.hours, 20.0f, 0.05f, 5.0f).configured = a.configured;
    }
    UsageSummary summary;
    summary.totalSeconds = 77;  // the summary is rewritten whole
    EXPECT_FLOAT_EQ(storage_.ComputeUsage(row.query, summary), row.result);
    const auto figures = [](const UsageSummary& u) {
      return std::vector<double>{double(u.kind), double(u.secondsThisMonth), double(u.totalSeconds),
                                 double(u.excessMinutes), double(u.allotted), std::round(u.cost * 1e4) / 1e4};
    };
    EXPECT_EQ(figures(summary), figures(row.summary));
    EXPECT_FLOAT_EQ(summary.kind == PrePaidCard ? storage_.cardSecondsRemaining : row.result, row.result)
        << "the card balance";
  }
}

TEST_F(Accounts, LongConnectionNamesAreCutTo31CharactersAndFoundAgain) {
  const std::string longName = "Dial-up Networking connection to the office";  // 43 characters
  const std::string stored = longName.substr(0, 31);
  storage_.AddAccountName(longName.c_str());
  EXPECT_EQ(std::string(storage_.AccountName(0)), stored);
  storage_.AddAccountName(longName.c_str());
  EXPECT_STREQ(storage_.AccountName(1), "") << "the long name finds its entry again";
  EXPECT_EQ(storage_.AccountName(-1), nullptr);
  EXPECT_EQ(storage_.AccountIndexByName(stored.c_str()), 0);
  EXPECT_EQ(storage_.AccountIndexByName(stored.substr(0, 30).c_str()), kNoAccount);
  ConfigureAccount(0, longName.c_str(), UnlimitedAccess);
  EXPECT_EQ(storage_.FindAccount(longName.c_str()), 0);
  EXPECT_TRUE(storage_.DeleteAccount(longName.c_str()));
  EXPECT_EQ(storage_.AccountIndexByName(longName.c_str()), kNoAccount);

  // A damaged entry: 32 name bytes without a terminator match nothing and are not free.
  std::memset(storage_.settings.accounts[0].connectionName, 'A', kAccountNameSize);
  storage_.settings.accounts[0].configured = 1;
  EXPECT_EQ(storage_.AccountIndexByName(std::string(40, 'A').c_str()), kNoAccount);
  EXPECT_EQ(storage_.FindAccount(std::string(31, 'A').c_str()), kNoAccount);
  storage_.AddAccountName("N");
  EXPECT_EQ(storage_.AccountIndexByName("N"), 1);
  const std::string longer(120, 'x');  // a record keeps 104 characters, an account 31
  ConfigureAccount(2, longer.c_str(), UnlimitedAccess);
  LogSession(longer.c_str(), 50);
  EXPECT_EQ(storage_.TotalSeconds(longer.c_str()), 50);
}

TEST(AccountFigures, ReadAsTheDialogReadsThem) {
  const struct {
    const char* text;
    float value;
  } figures[] = {{"12.50", 12.5f}, {"100.75", 100.0f}, {"12345", 1234.0f}, {"0.125", 0.12f}, {"3", 3.0f},
                 {".5", 0.5f},     {"  2.5", 2.0f},    {"1.5x", 1.5f},      {"-1.5", -1.5f},  {"1e3", 1000.0f},
                 {"", 0.0f},       {nullptr, 0.0f},    {"abc", 0.0f},       {".", 0.0f},      {"-", 0.0f},
                 {"nan", 0.0f},    {"inf", 0.0f},      {"9e99", 0.0f}};
  for (const auto& row : figures) EXPECT_FLOAT_EQ(ReadFigure(row.text), row.value) << (row.text ? row.text : "null");
  const struct {
    const char* text;
    uint32_t value;
  } wholes[] = {{"05", 5}, {"40", 40},    {"  40 ", 40}, {"0", 0},    {"4294967295", 4294967295u}, {"4294967296", 0},
                {"", 0},   {nullptr, 0}, {"ten", 0},    {"12.5", 0}, {"-3", 0},                   {"3 4", 0}};
  for (const auto& row : wholes) EXPECT_EQ(ReadWholeNumber(row.text), row.value) << (row.text ? row.text : "null");
}

// What the accounts page shows of an entry, per plan: whether the kind is known, the
// checked radio, the card and the limited controls (enabled, filled) and their texts.
TEST_F(Accounts, PageViewPerPlan) {
  const struct {
    uint32_t kind;
    const char* view;
  } rows[] = {{PrePaidCard, "1 1 11 00 |40|||||7"},
              {LimitedAccess, "1 2 00 11 ||40|12.50|0.05|17.5|7"},
              {UnlimitedAccess, "1 3 00 00 ||||||"},
              {NotChosen, "1 2 00 10 ||||||"},  // a new entry offers the limited plan, empty
              {9, "0 2 00 10 ||||||"}};
  for (const auto& row : rows) {
    ConfigureAccount(0, "Home ISP", row.kind, 40, 12.5f, 0.05f, 17.5f).warnPercent = 7;
    const AccountEntryView v = ViewAccountEntry(storage_.settings.accounts[0]);
    char text[400];
    std::snprintf(text, sizeof text, "%d %u %d%d %d%d |%s|%s|%s|%s|%s|%s", v.known, v.radio, v.cardControlsEnabled,
                  v.fillCard, v.limitedControlsEnabled, v.fillLimited, v.cardHours, v.basicHours, v.monthlyCharge,
                  v.excessPerMinute, v.vatPercent, v.warnPercent);
    EXPECT_EQ(text, std::string(row.view)) << row.kind;
  }
  EXPECT_FALSE(storage_.SaveAccountInput(nullptr, AccountPageInput{})) << "no connection chosen: nothing saved";
  EXPECT_TRUE(storage_.SaveAccountInput("Home ISP", AccountPageInput{PrePaidCard, "12"}));
  EXPECT_EQ(storage_.settings.accounts[0].hours, 12u) << "saved to the connection's entry";
}

// --- The usage cache against the straightforward walk -----------------------

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

  // Every figure and the result, through the cache or afresh, with the floats' bits.
  std::string Figures(const char* name, bool cached) {
    UsageSummary u;
    storage_.cardSecondsRemaining = -1.0f;
    const float result = cached ? storage_.CachedComputeUsage(name, u) : storage_.ComputeUsage(name, u);
    const bool card = u.kind == PrePaidCard;
    const float remaining =
        card ? (cached ? storage_.CachedCardSecondsRemaining(name) : storage_.CardSecondsRemaining(name)) : 0.0f;
    char text[200];
    std::snprintf(text, sizeof text, "%x %u %d %d %d %d %x %x | %u %d %d %d %x", Bits(result), u.kind,
                  u.secondsThisMonth, u.totalSeconds, u.excessMinutes, u.allotted, Bits(u.cost),
                  card ? Bits(storage_.cardSecondsRemaining) : 0u,
                  cached ? storage_.CachedAccountKindOf(name) : storage_.AccountKindOf(name),
                  cached ? storage_.CachedAllottedAmount(name) : storage_.AllottedAmount(name),
                  cached ? storage_.CachedSecondsThisMonth(name) : storage_.SecondsThisMonth(name),
                  cached ? storage_.CachedTotalSeconds(name) : storage_.TotalSeconds(name), Bits(remaining));
    return text;
  }
  void ExpectSameAsFresh(const std::vector<const char*>& names) {
    for (const char* name : names) EXPECT_EQ(Figures(name, true), Figures(name, false)) << "connection " << name;
  }
  void ExpectAllSameAsFresh() { ExpectSameAsFresh({"Card ISP", "CARD ISP", "Month ISP", "Flat ISP", "Nobody", ""}); }
};

TEST_F(UsageCache, WalksTheLogOncePerConnectionAndNeverGoesStale) {
  ExpectAllSameAsFresh();
  const uint64_t walks = storage_.Cache().LogWalks();
  // The status text of a whole on-line minute at twelve rebuilds a second.
  ras_.Connect("Card ISP");
  Tick();
  clock_.Advance(1800);  // half an hour on-line
  for (int i = 0; i < 720; ++i) RefreshStatusText(monitor_);
  EXPECT_EQ(storage_.Cache().LogWalks(), walks);
  EXPECT_NE(std::strstr(statusState.statusText, "5.00 Hrs."), nullptr) << statusState.statusText;

  // Account changes need no new walk: the log's sums stay valid.
  storage_.settings.accounts[0].hours = 2;  // the card: 4.5 h logged of 2
  storage_.settings.accounts[1].kind = PrePaidCard;
  EXPECT_TRUE(storage_.DeleteAccount("Flat ISP"));
  ConfigureAccount(5, "CARD ISP", UnlimitedAccess);
  ExpectAllSameAsFresh();
  EXPECT_EQ(storage_.Cache().LogWalks(), walks);
  // The same month a year on restarts the month figures (other months: the steps below).
  clock_.now.year = 2003;
  EXPECT_EQ(storage_.CachedSecondsThisMonth("Month ISP"), 0);
  ExpectAllSameAsFresh();
  clock_.now.year = 2002;

  // Any sequence of the shared log and account operations keeps the cache exact.
  std::mt19937 random(20021203);
  const char* const names[] = {"Card ISP", "card isp", "Month ISP", "Flat ISP", "New ISP"};
  auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int step = 0; step < 400; ++step) {
    const char* name = names[pick(5)];
    const uint32_t index = static_cast<uint32_t>(pick(static_cast<int>(storage_.sessionLog.count) + 1));
    switch (pick(15)) {
      case 0: {
        const uint32_t slot = storage_.FindFreeSlot();
        storage_.SetRecordStatus(slot, InUse);
        storage_.SetRecordDuration(slot, pick(20000));
        storage_.SetRecordDate(slot, 0, 1 + static_cast<uint32_t>(pick(4)), 1, 2002);
        storage_.SetRecordName(slot, name);
        break;
      }
      case 1:
        storage_.SetRecordDuration(index, pick(5000));
        break;
      case 2:
        storage_.SetRecordName(index, name);
        break;
      case 3:
        storage_.MarkConnectionDeleted(name);
        break;
      case 4:
        if (pick(10) == 0) storage_.ClearLog();
        break;
      case 5: clock_.now.month = 1 + static_cast<uint32_t>(pick(4)); break;
      case 6:
        storage_.settings.accounts[pick(4)].kind = static_cast<uint32_t>(pick(4));
        break;
      case 7:
        storage_.settings.accounts[pick(4)].hours = static_cast<uint32_t>(pick(12));
        break;
      case 8:
        storage_.SetRecordStatus(index, pick(2) == 0 ? InUse : Deleted);
        break;
      case 9:
        storage_.SetRecordDate(index, 0, 1 + static_cast<uint32_t>(pick(4)), 1, 2002);
        break;
      case 10:
        storage_.AppendBlankRecords();
        break;
      case 11:  // the whole log replaced: saved and loaded, emptied, or converted from the older table
        if (pick(3) == 0 &&
            !(storage_.SaveLog(Path("saved.ovb").c_str()) && storage_.LoadLog(Path("saved.ovb").c_str())))
          FAIL();
        if (pick(20) == 0 && !storage_.CreateEmptyLog(Path("empty.ovb").c_str())) FAIL();
        if (pick(20) == 0) {
          std::vector<SessionRecord> table(kLegacyLogSlots);
          table[3] = UsedRecord(name, 36000, 3, 2002);
          WriteBytes(Path("legacy.ovb"), RecordBytes(table));
          EXPECT_TRUE(storage_.LoadLegacyLog(Path("legacy.ovb").c_str()) && storage_.ConvertLegacyLog());
        }
        break;
      case 12:  // a billing period or a recharge
        storage_.settings.accounts[pick(4)].periodStartDay = static_cast<uint8_t>(pick(32));
        storage_.settings.accounts[pick(4)].recharged = {2002, static_cast<uint8_t>(1 + pick(4)), 1, 0, 0, 0, 0};
        break;
      case 13: clock_.now.day = 1 + static_cast<uint32_t>(pick(28)); break;
      default: ConfigureAccount(pick(6), name, static_cast<uint32_t>(pick(4)), 3, 9.5f, 0.1f, 17.5f); break;
    }
    ExpectSameAsFresh({names[pick(5)]});
    if (HasFailure()) FAIL() << "after step " << step;
  }
}

}  // namespace

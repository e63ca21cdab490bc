#include <cstring>
#include <string>
#include <vector>

#include "monitor/unconfigured_connections.h"
#include "storage/accounts.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

std::vector<std::string> events;
std::vector<intptr_t> dialogResults;  // one per dialog, 0 when exhausted

class Unconfigured : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    ResetUnconfiguredState();
    events.clear();
    dialogResults.clear();
    unconfiguredHooks.showConfigureNotice = [](const char* text, const char* caption) {
      events.push_back(std::string("notice[") + caption + "]" + text);
    };
    unconfiguredHooks.showNotSetUp = [](const char* text, const char* caption) {
      events.push_back(std::string("not set up[") + caption + "]" + text);
    };
    unconfiguredHooks.runAccountDialog = []() -> intptr_t {
      events.push_back(std::string("dialog ") + ConnectionToConfigure + (OpenedFromNotice ? " from notice" : ""));
      OpenedFromNotice = 0;  // the dialog clears it
      if (dialogResults.empty()) return 0;
      const intptr_t result = dialogResults.front();
      dialogResults.erase(dialogResults.begin());
      if (result != 0) {
        const int k = AccountIndexByName(ConnectionToConfigure);
        if (k != kNoAccount) settings.accounts[k].configured = 1;
      }
      return result;
    };
    ASSERT_TRUE(CreateSettings(SettingsPath()));
  }
  void TearDown() override {
    ResetUnconfiguredState();
    ProgramStateTest::TearDown();
  }

  void Log(const std::string& name, uint8_t status = InUse) {
    SessionRecord record{};
    record.status = status;
    std::strncpy(record.connectionName, name.c_str(), kRecordNameSize - 1);
    sessionLog.records.push_back(record);
    sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());
  }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const AccountRecord& account : settings.accounts) {
      if (account.connectionName[0] != '\0') names.push_back(account.connectionName);
    }
    return names;
  }

  static std::string Notice(const std::string& name) {
    return "notice[Orvalen Notification...]Orvalen detected a connection   (- " + name +
           " -) that hasn't been configured for its database.\nBest to configure this connection now";
  }
  static std::string NotSetUp() {
    return "not set up[Orvalen Notification]This connection was not properly set up for Orvalen's database. \n"
           "You will be asked to do this at a later time";
  }

  std::string NameOnDisk(int k) {
    const std::vector<uint8_t> bytes = ReadBytes(SettingsPath());
    return std::string(reinterpret_cast<const char*>(&bytes.at(136 + 120 * k + 4)));
  }
};

TEST_F(Unconfigured, EmptyLogAndEmptyTableAskNothing) {
  EXPECT_TRUE(CheckUnconfiguredConnections());
  EXPECT_TRUE(events.empty());
  EXPECT_TRUE(Names().empty());
}

TEST_F(Unconfigured, EmptyLogStillAsksAboutNamedEntriesNotSetUp) {
  AddAccountName("Old ISP");
  CheckUnconfiguredConnections();
  EXPECT_EQ(events, (std::vector<std::string>{Notice("Old ISP"), "dialog Old ISP from notice", NotSetUp()}));
}

TEST_F(Unconfigured, DuplicatesGiveOneEntryAndOneNotice) {
  Log("Home ISP");
  Log("Home ISP");
  CheckUnconfiguredConnections();
  EXPECT_EQ(Names(), std::vector<std::string>{"Home ISP"});
  EXPECT_EQ(events, (std::vector<std::string>{Notice("Home ISP"), "dialog Home ISP from notice", NotSetUp()}));
  EXPECT_STREQ(ConnectionToConfigure, "Home ISP") << "kept when the dialog did not save";
  EXPECT_EQ(settings.accounts[0].configured, 0u);
  EXPECT_EQ(NameOnDisk(0), "Home ISP") << "the added names are saved";
}

TEST_F(Unconfigured, NamesDifferingInCaseAreDifferentConnections) {
  Log("Home ISP");
  Log("home isp");
  AddLogConnectionsToAccounts();
  EXPECT_EQ(Names(), (std::vector<std::string>{"Home ISP", "home isp"}));
}

TEST_F(Unconfigured, DeletedAndBlankRecordsAreNotConsidered) {
  Log("Gone ISP", Deleted);
  Log("", Blank);
  Log("Blank Name", Blank);
  Log("Home ISP");
  CheckUnconfiguredConnections();
  EXPECT_EQ(Names(), std::vector<std::string>{"Home ISP"});
  EXPECT_EQ(events.size(), 3u);
}

TEST_F(Unconfigured, NamesGoToTheLowestFreeEntriesInLogOrder) {
  AddAccountName("A");
  AddAccountName("B");
  DeleteAccount("A");
  Log("C");
  Log("B");
  Log("D");
  AddLogConnectionsToAccounts();
  EXPECT_STREQ(settings.accounts[0].connectionName, "C");
  EXPECT_STREQ(settings.accounts[1].connectionName, "B");
  EXPECT_STREQ(settings.accounts[2].connectionName, "D");
}

TEST_F(Unconfigured, MoreThanFiftyNamesFillTheTableAndTheRestAreSkipped) {
  for (int i = 0; i < 53; ++i) Log("ISP " + std::to_string(i));
  CheckUnconfiguredConnections();
  const std::vector<std::string> names = Names();
  ASSERT_EQ(names.size(), 50u);
  EXPECT_EQ(names.front(), "ISP 0");
  EXPECT_EQ(names.back(), "ISP 49");
  EXPECT_EQ(AccountIndexByName("ISP 50"), kNoAccount);
  EXPECT_EQ(events.size(), 150u) << "fifty notices, dialogs and not-set-up boxes, none for the skipped names";
  EXPECT_EQ(events[147], Notice("ISP 49"));
}

TEST_F(Unconfigured, ConfiguredEntriesAreNotAskedAbout) {
  Log("Home ISP");
  Log("Office");
  AddAccountName("Home ISP");
  settings.accounts[0].configured = 1;
  CheckUnconfiguredConnections();
  EXPECT_EQ(events, (std::vector<std::string>{Notice("Office"), "dialog Office from notice", NotSetUp()}));
}

TEST_F(Unconfigured, OnlyConfiguredOneCountsAsSetUp) {
  AddAccountName("Odd");
  settings.accounts[0].configured = 2;  // damaged file
  CheckUnconfiguredConnections();
  EXPECT_EQ(events.size(), 3u);
}

TEST_F(Unconfigured, TwoConnectionsAreAskedInIndexOrder) {
  Log("Home ISP");
  Log("Office");
  dialogResults = {1, 0};
  CheckUnconfiguredConnections();
  EXPECT_EQ(events, (std::vector<std::string>{Notice("Home ISP"), "dialog Home ISP from notice", Notice("Office"),
                                              "dialog Office from notice", NotSetUp()}));
  EXPECT_EQ(settings.accounts[0].configured, 1u);
  EXPECT_EQ(settings.accounts[1].configured, 0u);

  events.clear();
  CheckUnconfiguredConnections();
  EXPECT_EQ(events, (std::vector<std::string>{Notice("Office"), "dialog Office from notice", NotSetUp()}))
      << "asked again until it is set up";
}

TEST_F(Unconfigured, AskToConfigureReportsTheDialogsResult) {
  dialogResults = {1};
  AddAccountName("Home ISP");
  EXPECT_TRUE(AskToConfigure("Home ISP"));
  EXPECT_STREQ(ConnectionToConfigure, "") << "emptied after a saved account";
  EXPECT_FALSE(AskToConfigure("Home ISP"));
  EXPECT_STREQ(ConnectionToConfigure, "Home ISP");
  EXPECT_EQ(events[0], Notice("Home ISP"));
  EXPECT_EQ(events[1], "dialog Home ISP from notice");
}

TEST_F(Unconfigured, WithoutHooksNothingIsShownAndTheCheckStillSaves) {
  unconfiguredHooks = UnconfiguredHooks{};
  Log("Home ISP");
  EXPECT_TRUE(CheckUnconfiguredConnections());
  EXPECT_EQ(NameOnDisk(0), "Home ISP");
  EXPECT_EQ(OpenedFromNotice, 1) << "no dialog ran to clear it";
}

TEST_F(Unconfigured, LongNamesAreCutToTheEntryAndFoundAgain) {
  const std::string longName(60, 'x');
  Log(longName);
  Log(longName);
  CheckUnconfiguredConnections();
  EXPECT_EQ(Names(), std::vector<std::string>{std::string(31, 'x')});
  EXPECT_EQ(events[0], Notice(std::string(31, 'x')));
  EXPECT_EQ(events.size(), 3u);
}

TEST_F(Unconfigured, NoticeTextFitsItsBuffer) {
  char text[kConfigureNoticeSize];
  BuildConfigureNotice(text, std::string(31, 'n').c_str());
  EXPECT_EQ(std::string(text), Notice(std::string(31, 'n')).substr(std::string("notice[Orvalen Notification...]").size()));
  BuildConfigureNotice(text, std::string(300, 'n').c_str());
  EXPECT_EQ(std::strlen(text), kConfigureNoticeSize - 1);
}

TEST_F(Unconfigured, ACheckDuringAQuestionOnlyAddsNamesAndSaves) {
  Log("Home ISP");
  unconfiguredHooks.runAccountDialog = []() -> intptr_t {
    events.push_back(std::string("dialog ") + ConnectionToConfigure);
    // A session ends under the dialog and records a new connection.
    SessionRecord record{};
    record.status = InUse;
    std::strcpy(record.connectionName, "Office");
    sessionLog.records.push_back(record);
    sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());
    if (events.size() < 4) CheckUnconfiguredConnections();
    return 0;
  };
  CheckUnconfiguredConnections();
  EXPECT_EQ(Names(), (std::vector<std::string>{"Home ISP", "Office"}));
  EXPECT_EQ(events, (std::vector<std::string>{Notice("Home ISP"), "dialog Home ISP", NotSetUp(), Notice("Office"),
                                              "dialog Office", NotSetUp()}))
      << "the outer check reaches the new entry; the inner one asked nothing";
}

TEST_F(Unconfigured, SaveFailureIsReturned) {
  ASSERT_TRUE(CheckUnconfiguredConnections());
  SetWindowsDirectory(Path("missing/folder"));
  EXPECT_FALSE(CheckUnconfiguredConnections());
}

}  // namespace

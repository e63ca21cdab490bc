// The plain logic of the program's windows: the main status dialog's texts and
// what the settings pages store.
#include <cstring>
#include <string>
#include <vector>

#include "app/sheet_settings.h"
#include "app/shell_rules.h"
#include "app/status_text.h"
#include "storage/storage.h"
#include "resources/resource_ids.h"
#include "test_support.h"

namespace {

class StatusText : public ProgramStateTest {};

TEST_F(StatusText, PreviousSessionSummaryLines) {
  // Monday 7 January 2002, 14:05:09 to 16:05:10, 61 h 1 min.
  storage_.settings.previousSession = {"Card ISP", 1, 1, 7, 2002, {16, 5, 10}, {14, 5, 9}, 219660};
  AppendToLog(UsedRecord("card isp", 3600));
  ConfigureAccount(0, "Card ISP", PrePaidCard, 10);
  const std::vector<std::string> expected = {
      "----------------------  Previous Session  ----------------------",
      " Connection  :                   Card ISP",
      " Date :                              Mon.  Jan.  7, 2002",
      " ON:  2 : 05 : 09  PM       OFF:  4 : 05 : 10  PM",
      " Duration :                        61 Hr: 1 Min: 0 Sec",
      " Card :                    1.00 Hrs.   of  10 Hrs. used",
  };
  EXPECT_EQ(PreviousSessionLines(storage_), expected);

  // Without an account the last line is empty; a damaged name stays inside its field.
  std::memset(storage_.settings.previousSession.connectionName, 'N', kPreviousNameSize);
  const std::vector<std::string> lines = PreviousSessionLines(storage_);
  EXPECT_EQ(lines.at(1), " Connection  :                   " + std::string(kPreviousNameSize, 'N'));
  EXPECT_EQ(lines.at(5), "");
}

TEST_F(StatusText, SettingsPagesStoreWhatIsChecked) {
  for (const bool on : {true, false}) {
    StoreGeneralPage(storage_.settings, {on ? "Zimbabwe dollars of 2008, very many" : nullptr, on, on, !on});
    EXPECT_STREQ(storage_.settings.currencyName, on ? "Zimbabwe dolla" : "") << "cut to fourteen characters";
    EXPECT_EQ(std::vector<uint32_t>({storage_.settings.use24HourClock, storage_.settings.showMainWindowAtStart,
                                     storage_.settings.runAtStartup}),
              std::vector<uint32_t>({on, on, !on}));
  }
  // The log page: show-all only for filter 1; neither radio keeps the filter.
  const struct {
    uint8_t stored;
    bool showAll, previous, colours;
    uint8_t filter;
  } rows[] = {
      {.stored = 1, .showAll = false, .previous = true, .colours = true, .filter = 2},
      {.stored = 2, .showAll = false, .previous = false, .colours = false, .filter = 2},
      {.stored = 1, .showAll = false, .previous = false, .colours = false, .filter = 1},
      {.stored = 2, .showAll = true, .previous = false, .colours = false, .filter = 1},
  };
  for (const auto& row : rows) {
    storage_.settings.logInitialFilter = row.stored;
    StoreLogPage(storage_.settings, row.showAll, row.previous, row.colours);
    EXPECT_EQ(storage_.settings.logInitialFilter, row.filter);
    EXPECT_EQ(storage_.settings.logSystemColours, row.colours ? 1u : 0u);
  }
}

TEST(ShellRules, TrayMenuAndASecondStart) {
  using A = MenuAction;
  EXPECT_EQ(std::vector<A>({MenuActionFor(IDM_TRAY_SHOW), MenuActionFor(IDM_TRAY_ABOUT), MenuActionFor(IDM_TRAY_VIEW_LOG),
                            MenuActionFor(IDM_TRAY_HIDE), MenuActionFor(IDM_TRAY_EXIT), MenuActionFor(4321)}),
            std::vector<A>({A::kShowMainDialog, A::kShowAbout, A::kOpenViewLog, A::kHideMainDialog, A::kAskToQuit,
                            A::kAskToQuit}));
  using F = ForwardWindow;
  const struct {
    bool startupDone, boxWaiting, dialogShown, show;
    F forward;
  } rows[] = {
      {.startupDone = false, .boxWaiting = true, .dialogShown = false, .show = false, .forward = F::kWaitingBox},
      {.startupDone = false, .boxWaiting = false, .dialogShown = false, .show = false, .forward = F::kNone},
      {.startupDone = false, .boxWaiting = false, .dialogShown = true, .show = false, .forward = F::kMainDialog},
      {.startupDone = true, .boxWaiting = false, .dialogShown = false, .show = true, .forward = F::kMainDialog},
      {.startupDone = true, .boxWaiting = true, .dialogShown = true, .show = true, .forward = F::kWaitingBox},
  };
  for (const auto& row : rows) {
    const ActivateAnswer answer = AnswerActivate(row.startupDone, row.boxWaiting, row.dialogShown);
    EXPECT_EQ(std::make_pair(answer.showMainDialog, answer.forward), std::make_pair(row.show, row.forward));
  }
}

}  // namespace

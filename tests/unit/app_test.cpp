// The plain logic of the program's windows: the main status dialog's texts and
// what the settings pages store.
#include <cstring>
#include <string>
#include <vector>

#include "app/sheet_settings.h"
#include "app/status_text.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

class StatusText : public ProgramStateTest {};

TEST_F(StatusText, PreviousSessionSummaryLines) {
  // Monday 7 January 2002, 14:05:09 to 16:05:10, 61 h 1 min.
  settings.previousSession = {"Card ISP", 1, 1, 7, 2002, {16, 5, 10}, {14, 5, 9}, 219660};
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
  EXPECT_EQ(PreviousSessionLines(), expected);

  // Without an account the last line is empty; a damaged name stays inside its field.
  std::memset(settings.previousSession.connectionName, 'N', kPreviousNameSize);
  const std::vector<std::string> lines = PreviousSessionLines();
  EXPECT_EQ(lines.at(1), " Connection  :                   " + std::string(kPreviousNameSize, 'N'));
  EXPECT_EQ(lines.at(5), "");
}

TEST_F(StatusText, SettingsPagesStoreWhatIsChecked) {
  for (const bool on : {true, false}) {
    StoreGeneralPage({on ? "Zimbabwe dollars of 2008, very many" : nullptr, on, on, !on});
    EXPECT_STREQ(settings.currencyName, on ? "Zimbabwe dolla" : "") << "cut to fourteen characters";
    EXPECT_EQ(std::vector<uint32_t>({settings.use24HourClock, settings.showMainWindowAtStart, settings.runAtStartup}),
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
    settings.logInitialFilter = row.stored;
    StoreLogPage(row.showAll, row.previous, row.colours);
    EXPECT_EQ(settings.logInitialFilter, row.filter);
    EXPECT_EQ(settings.logSystemColours, row.colours ? 1u : 0u);
  }
}

}  // namespace

#include <cstring>
#include <string>

#include "app/sheet_settings.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

class SheetPages : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    ApplyDefaultSettings();
  }
};

TEST(CurrencyList, FifteenNamesInTheirOrderDollarsFirstWhenSorted) {
  ASSERT_EQ(kCurrencyCount, 15u);
  const char* const expected[] = {"Dollars", "Pesos",  "Naira",   "Yen",   "Euro",    "Schillings", "Ringgit", "Rupees",
                                  "Rands",   "Francs", "Rubbles", "Riyal", "Shekels", "Lira",       "Pounds"};
  for (std::size_t i = 0; i < kCurrencyCount; ++i) EXPECT_STREQ(kCurrencyNames[i], expected[i]) << i;
  std::string first = kCurrencyNames[0];
  for (const char* name : kCurrencyNames) {
    if (std::string(name) < first) first = name;
    EXPECT_LE(std::strlen(name), kCurrencyNameSize - 1) << name;
  }
  EXPECT_EQ(first, "Dollars") << "the sorted combo box shows Dollars first";
}

TEST_F(SheetPages, GeneralOkStoresTheCurrencyAndTheThreeFlags) {
  GeneralPageInput input;
  input.currency = "Pounds";
  input.use24HourClock = true;
  input.showMainWindowAtStart = true;
  input.runAtStartup = false;
  StoreGeneralPage(input);
  EXPECT_STREQ(settings.currencyName, "Pounds");
  EXPECT_EQ(settings.use24HourClock, 1);
  EXPECT_EQ(settings.showMainWindowAtStart, 1u);
  EXPECT_EQ(settings.runAtStartup, 0u);

  input.use24HourClock = false;
  input.showMainWindowAtStart = false;
  input.runAtStartup = true;
  StoreGeneralPage(input);
  EXPECT_EQ(settings.use24HourClock, 0);
  EXPECT_EQ(settings.showMainWindowAtStart, 0u);
  EXPECT_EQ(settings.runAtStartup, 1u);
}

TEST_F(SheetPages, CurrencyIsCutToFourteenCharactersAndNothingPastTheField) {
  const uint8_t alarmHoursBefore = static_cast<uint8_t>(settings.alarmRepeatHours);
  GeneralPageInput input;
  input.currency = "Zimbabwe dollars of 2008, very many";
  StoreGeneralPage(input);
  EXPECT_STREQ(settings.currencyName, "Zimbabwe dolla");
  EXPECT_EQ(static_cast<uint8_t>(settings.alarmRepeatHours), alarmHoursBefore) << "the byte after the field";

  input.currency = "Yen";  // a shorter name over a longer one keeps the old tail after the NUL
  StoreGeneralPage(input);
  EXPECT_STREQ(settings.currencyName, "Yen");
  input.currency = nullptr;
  StoreGeneralPage(input);
  EXPECT_STREQ(settings.currencyName, "");
}

TEST_F(SheetPages, LogPageOpensWithShowAllOnlyForFilterOne) {
  settings.logInitialFilter = 1;
  EXPECT_TRUE(LogPageShowsAllConnections());
  settings.logInitialFilter = 2;
  EXPECT_FALSE(LogPageShowsAllConnections());
  settings.logInitialFilter = 0;  // never saved through the page
  EXPECT_FALSE(LogPageShowsAllConnections());
}

TEST_F(SheetPages, LogOkStoresTheCheckedFilterAndColours) {
  StoreLogPage(false, true, true);
  EXPECT_EQ(settings.logInitialFilter, 2);
  EXPECT_EQ(settings.logSystemColours, 1u);
  StoreLogPage(true, false, false);
  EXPECT_EQ(settings.logInitialFilter, 1);
  EXPECT_EQ(settings.logSystemColours, 0u);
}

TEST_F(SheetPages, LogOkWithNeitherRadioKeepsTheFilter) {
  settings.logInitialFilter = 2;
  StoreLogPage(false, false, false);
  EXPECT_EQ(settings.logInitialFilter, 2);
}

}  // namespace

#include <cstring>
#include <string>

#include "storage/account_figures.h"
#include "storage/accounts.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

TEST(AccountFigures, OnlyTheFirstFourCharactersAreRead) {
  EXPECT_FLOAT_EQ(ReadFigure("12.50"), 12.5f);
  EXPECT_FLOAT_EQ(ReadFigure("100.75"), 100.0f);
  EXPECT_FLOAT_EQ(ReadFigure("12345"), 1234.0f);
  EXPECT_FLOAT_EQ(ReadFigure("0.125"), 0.12f);
  EXPECT_FLOAT_EQ(ReadFigure("17.5"), 17.5f);
  EXPECT_FLOAT_EQ(ReadFigure("3"), 3.0f);
  EXPECT_FLOAT_EQ(ReadFigure(".5"), 0.5f);
}

TEST(AccountFigures, ConvertsLikePercentF) {
  EXPECT_FLOAT_EQ(ReadFigure("  2.5"), 2.0f) << "leading blanks use up the four";
  EXPECT_FLOAT_EQ(ReadFigure("1.5x"), 1.5f) << "trailing text is ignored";
  EXPECT_FLOAT_EQ(ReadFigure("-1.5"), -1.5f);
  EXPECT_FLOAT_EQ(ReadFigure("1e3"), 1000.0f);
}

TEST(AccountFigures, NonNumbersAreStoredAsZero) {
  EXPECT_EQ(ReadFigure(""), 0.0f);
  EXPECT_EQ(ReadFigure(nullptr), 0.0f);
  EXPECT_EQ(ReadFigure("abc"), 0.0f);
  EXPECT_EQ(ReadFigure("."), 0.0f);
  EXPECT_EQ(ReadFigure("-"), 0.0f);
  EXPECT_EQ(ReadFigure("nan"), 0.0f);
  EXPECT_EQ(ReadFigure("inf"), 0.0f);
  EXPECT_EQ(ReadFigure("9e99"), 0.0f) << "beyond a float";
}

TEST(AccountFigures, WholeNumbersAsTheDialogManagerReadsThem) {
  EXPECT_EQ(ReadWholeNumber("40"), 40u);
  EXPECT_EQ(ReadWholeNumber("  40 "), 40u);
  EXPECT_EQ(ReadWholeNumber("0"), 0u);
  EXPECT_EQ(ReadWholeNumber("4294967295"), 4294967295u);
  EXPECT_EQ(ReadWholeNumber("4294967296"), 0u);
  EXPECT_EQ(ReadWholeNumber(""), 0u);
  EXPECT_EQ(ReadWholeNumber(nullptr), 0u);
  EXPECT_EQ(ReadWholeNumber("ten"), 0u);
  EXPECT_EQ(ReadWholeNumber("12.5"), 0u);
  EXPECT_EQ(ReadWholeNumber("-3"), 0u);
  EXPECT_EQ(ReadWholeNumber("3 4"), 0u);
}

AccountRecord Entry(uint32_t kind) {
  AccountRecord entry{};
  std::strcpy(entry.connectionName, "Home ISP");
  entry.kind = kind;
  entry.hours = 40;
  entry.monthlyCharge = 12.5f;
  entry.excessPerMinute = 0.05f;
  entry.vatPercent = 17.5f;
  return entry;
}

TEST(AccountFigures, UnlimitedStoresOnlyTheKind) {
  AccountRecord entry = Entry(LimitedAccess);
  AccountPageInput input;
  input.checked = UnlimitedAccess;
  input.cardHours = "99";
  input.basicHours = "99";
  input.monthlyCharge = "99";
  ApplyAccountInput(entry, input);
  EXPECT_EQ(entry.configured, 1u);
  EXPECT_EQ(entry.kind, UnlimitedAccess);
  EXPECT_EQ(entry.hours, 40u);
  EXPECT_FLOAT_EQ(entry.monthlyCharge, 12.5f);
  EXPECT_FLOAT_EQ(entry.excessPerMinute, 0.05f);
  EXPECT_FLOAT_EQ(entry.vatPercent, 17.5f);
}

TEST(AccountFigures, CardStoresItsHoursOnly) {
  AccountRecord entry = Entry(LimitedAccess);
  AccountPageInput input;
  input.checked = PrePaidCard;
  input.cardHours = "25";
  input.basicHours = "99";
  input.monthlyCharge = "99";
  ApplyAccountInput(entry, input);
  EXPECT_EQ(entry.kind, PrePaidCard);
  EXPECT_EQ(entry.hours, 25u);
  EXPECT_FLOAT_EQ(entry.monthlyCharge, 12.5f);

  input.cardHours = "lots";
  ApplyAccountInput(entry, input);
  EXPECT_EQ(entry.hours, 0u) << "hours that are not a number are stored as 0";
}

TEST(AccountFigures, LimitedStoresHoursAndTheThreeFigures) {
  AccountRecord entry = Entry(NotChosen);
  AccountPageInput input;
  input.checked = LimitedAccess;
  input.cardHours = "7";
  input.basicHours = "20";
  input.monthlyCharge = "100.75";
  input.excessPerMinute = "0.035";
  input.vatPercent = "abc";
  ApplyAccountInput(entry, input);
  EXPECT_EQ(entry.configured, 1u);
  EXPECT_EQ(entry.kind, LimitedAccess);
  EXPECT_EQ(entry.hours, 20u);
  EXPECT_FLOAT_EQ(entry.monthlyCharge, 100.0f);
  EXPECT_FLOAT_EQ(entry.excessPerMinute, 0.03f);
  EXPECT_EQ(entry.vatPercent, 0.0f);
}

TEST(AccountFigures, NoRadioCheckedOnlyMarksTheEntry) {
  AccountRecord entry = Entry(PrePaidCard);
  AccountPageInput input;
  input.checked = NotChosen;
  input.cardHours = "1";
  ApplyAccountInput(entry, input);
  EXPECT_EQ(entry.configured, 1u);
  EXPECT_EQ(entry.kind, PrePaidCard);
  EXPECT_EQ(entry.hours, 40u);
}

TEST(AccountFigures, ViewOfEachKind) {
  AccountEntryView none = ViewAccountEntry(Entry(NotChosen));
  EXPECT_TRUE(none.known);
  EXPECT_EQ(none.radio, LimitedAccess);
  EXPECT_FALSE(none.cardControlsEnabled);
  EXPECT_TRUE(none.limitedControlsEnabled);
  EXPECT_FALSE(none.fillCard);
  EXPECT_FALSE(none.fillLimited);

  AccountEntryView card = ViewAccountEntry(Entry(PrePaidCard));
  EXPECT_EQ(card.radio, PrePaidCard);
  EXPECT_TRUE(card.cardControlsEnabled);
  EXPECT_FALSE(card.limitedControlsEnabled);
  EXPECT_TRUE(card.fillCard);
  EXPECT_FALSE(card.fillLimited);
  EXPECT_STREQ(card.cardHours, "40");

  AccountEntryView limited = ViewAccountEntry(Entry(LimitedAccess));
  EXPECT_EQ(limited.radio, LimitedAccess);
  EXPECT_FALSE(limited.cardControlsEnabled);
  EXPECT_TRUE(limited.limitedControlsEnabled);
  EXPECT_TRUE(limited.fillLimited);
  EXPECT_FALSE(limited.fillCard);
  EXPECT_STREQ(limited.basicHours, "40");
  EXPECT_STREQ(limited.monthlyCharge, "12.50");
  EXPECT_STREQ(limited.excessPerMinute, "0.05");
  EXPECT_STREQ(limited.vatPercent, "17.5");

  AccountEntryView unlimited = ViewAccountEntry(Entry(UnlimitedAccess));
  EXPECT_EQ(unlimited.radio, UnlimitedAccess);
  EXPECT_FALSE(unlimited.cardControlsEnabled);
  EXPECT_FALSE(unlimited.limitedControlsEnabled);
  EXPECT_FALSE(unlimited.fillCard);
  EXPECT_FALSE(unlimited.fillLimited);

  EXPECT_FALSE(ViewAccountEntry(Entry(9)).known);
}

class AccountSaving : public ProgramStateTest {};

TEST_F(AccountSaving, WithoutAChosenConnectionNothingChanges) {
  AddAccountName("Home ISP");
  AccountPageInput input;
  input.checked = UnlimitedAccess;
  EXPECT_FALSE(SaveAccountInput("", input));
  EXPECT_FALSE(SaveAccountInput(nullptr, input));
  EXPECT_FALSE(SaveAccountInput("Connection", input)) << "a list item without an entry cannot be saved";
  EXPECT_EQ(settings.accounts[0].configured, 0u);
  EXPECT_EQ(settings.accounts[0].kind, 0u);
}

TEST_F(AccountSaving, SavesIntoTheChosenConnectionsEntry) {
  AddAccountName("Office");
  AddAccountName("Home ISP");
  AccountPageInput input;
  input.checked = LimitedAccess;
  input.basicHours = "10";
  input.monthlyCharge = "12.50";
  EXPECT_TRUE(SaveAccountInput("Home ISP", input));
  EXPECT_EQ(settings.accounts[0].configured, 0u);
  EXPECT_EQ(settings.accounts[1].configured, 1u);
  EXPECT_EQ(settings.accounts[1].kind, LimitedAccess);
  EXPECT_EQ(settings.accounts[1].hours, 10u);
  EXPECT_FLOAT_EQ(settings.accounts[1].monthlyCharge, 12.5f);
}

}  // namespace

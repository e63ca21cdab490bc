#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "storage/fixed_text.h"

TEST(FixedText, CutsLongTextAtTheFieldAndNeverWritesPastIt) {
  char field[8 + 4];
  std::memset(field, 'x', sizeof field);
  const std::string longName(256, 'N');
  CopyFixedText(field, 8, longName.c_str());
  EXPECT_EQ(std::string(field), std::string(7, 'N'));
  EXPECT_EQ(field[8], 'x') << "byte behind the field was written";
}

TEST(FixedText, ShortTextKeepsTheOldTailBehindItsTerminator) {
  char field[10] = "abcdefghi";
  CopyFixedText(field, "XY");
  EXPECT_STREQ(field, "XY");
  EXPECT_EQ(field[3], 'd');
}

TEST(FixedText, NullSourceGivesEmptyText) {
  char field[4] = "abc";
  CopyFixedText(field, nullptr);
  EXPECT_STREQ(field, "");
}

TEST(FixedText, LengthStaysInsideAnUnterminatedField) {
  const char field[4] = {'a', 'b', 'c', 'd'};
  EXPECT_EQ(FixedTextLength(field, sizeof field), 4u);
}

TEST(FixedText, CaseInsensitiveComparisonIsBoundedAndExact) {
  const char marker[20] = "ORVALEN_v015";
  EXPECT_TRUE(FixedTextEqualsIgnoringCase(marker, sizeof marker, "orvalen_v015"));
  EXPECT_FALSE(FixedTextEqualsIgnoringCase(marker, sizeof marker, "orvalen_v01"));
  EXPECT_FALSE(FixedTextEqualsIgnoringCase(marker, sizeof marker, "orvalen_v0155"));
  char unterminated[4] = {'a', 'b', 'c', 'd'};
  EXPECT_TRUE(FixedTextEqualsIgnoringCase(unterminated, sizeof unterminated, "ABCD"));
  EXPECT_FALSE(FixedTextEqualsIgnoringCase(unterminated, sizeof unterminated, "ABCDE"));
}

#include <string>

#include "monitor/session.h"
#include "monitor/time_text.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

class TimeText : public ProgramStateTest {
 protected:
  std::string Clock(uint32_t hour, uint32_t minute, uint32_t second) {
    char text[kClockTextSize];
    FormatClock(text, hour, minute, second);
    return text;
  }
  std::string Date(uint32_t dayOfWeek, uint32_t month, uint32_t day, uint32_t year) {
    char text[kDateTextSize];
    FormatDate(text, dayOfWeek, month, day, year);
    return text;
  }
  std::string Elapsed(int32_t seconds) {
    FormatElapsed(seconds);
    return ElapsedText;
  }
};

TEST_F(TimeText, TwelveHourClockHasNoLeadingHourZeroAndAnAmPmSuffix) {
  EXPECT_EQ(Clock(14, 5, 9), "2 : 05 : 09  PM");
  EXPECT_EQ(Clock(0, 30, 0), "12 : 30 : 00  AM");
  EXPECT_EQ(Clock(12, 0, 0), "12 : 00 : 00  PM");
  EXPECT_EQ(Clock(11, 59, 59), "11 : 59 : 59  AM");
  EXPECT_EQ(Clock(23, 10, 5), "11 : 10 : 05  PM");
  EXPECT_EQ(Clock(1, 9, 10), "1 : 09 : 10  AM");
}

TEST_F(TimeText, TwentyFourHourClockEndsInThreeBlanks) {
  settings.use24HourClock = 1;
  EXPECT_EQ(Clock(14, 5, 9), "14 : 05 : 09   ");
  EXPECT_EQ(Clock(0, 10, 10), "0 : 10 : 10   ");
  settings.use24HourClock = 7;  // any non-zero value
  EXPECT_EQ(Clock(12, 0, 0), "12 : 00 : 00   ");
}

TEST_F(TimeText, ClockTextReadsTheClockAndFollowsTheSettingAtOnce) {
  clock_.now.hour = 13;
  clock_.now.minute = 2;
  clock_.now.second = 3;
  EXPECT_STREQ(ClockText(), "1 : 02 : 03  PM");
  NoteLogOnTime(13, 2, 3);
  settings.use24HourClock = 1;
  EXPECT_STREQ(ClockText(), "13 : 02 : 03   ");
  EXPECT_STREQ(GetLogOnText(), "1 : 02 : 03  PM") << "the log-on text keeps its form";
  EXPECT_EQ(LogOnHour, 13u);
}

TEST_F(TimeText, NoteLogOnTimeTakesItsTextFromTheClockNotTheArguments) {
  clock_.now.hour = 9;
  clock_.now.minute = 0;
  clock_.now.second = 0;
  NoteLogOnTime(20, 20, 20);
  EXPECT_STREQ(LogOnText, "9 : 00 : 00  AM");
  EXPECT_EQ(LogOnMinute, 20u);
}

TEST_F(TimeText, DatesUseFixedAbbreviationsAndBlanks) {
  EXPECT_EQ(Date(1, 1, 7, 2002), "Mon.  Jan.  7, 2002");
  EXPECT_EQ(Date(5, 5, 3, 2002), "Fri.  May  3, 2002");
  EXPECT_EQ(Date(0, 9, 30, 2001), "Sun. Sept.  30, 2001");
  EXPECT_EQ(Date(6, 12, 31, 1999), "Sat.  Dec.  31, 1999");
  EXPECT_EQ(Date(3, 7, 4, 2003), "Wed.  July  4, 2003");
}

TEST_F(TimeText, DamagedWeekdayOrMonthLeavesThatPartOut) {
  EXPECT_EQ(Date(7, 1, 7, 2002), "Jan.  7, 2002");
  EXPECT_EQ(Date(2, 0, 7, 2002), "Tue.    7, 2002");
  EXPECT_EQ(Date(0xFFFFFFFF, 13, 0xFFFFFFFF, 0xFFFFFFFF), "  -1, -1");
}

TEST_F(TimeText, DurationsSplitIntoHoursMinutesAndSeconds) {
  EXPECT_EQ(Elapsed(125), "0 Hr : 2 Min : 5 sec");
  EXPECT_EQ(Elapsed(0), "0 Hr : 0 Min : 0 sec");
  EXPECT_EQ(Elapsed(3600), "1 Hr : 0 Min : 0 sec");
  EXPECT_EQ(Elapsed(-65), "0 Hr : -1 Min : -5 sec");
  EXPECT_EQ(Elapsed(2147483647), "596523 Hr : 14 Min : 7 sec");
  EXPECT_EQ(Elapsed(-2147483647 - 1), "-596523 Hr : -14 Min : -8 sec");
  int32_t hours = 0, minutes = 0, seconds = 0;
  SplitSeconds(3725, &hours, &minutes, &seconds);
  EXPECT_EQ(hours, 1);
  EXPECT_EQ(minutes, 2);
  EXPECT_EQ(seconds, 5);
  char text[kLastDurationTextSize];
  FormatDuration(text, 10, 70, 80);
  EXPECT_STREQ(text, "10 Hr : 70 Min : 80 sec") << "already split values are not normalised";
}

TEST_F(TimeText, ElapsedTextIsTheRunningSessionsDuration) {
  SessionStartSeconds = clock_.tickMs / 1000;
  clock_.Advance(3661);
  EXPECT_STREQ(GetElapsedText(), "1 Hr : 1 Min : 1 sec");
}

}  // namespace

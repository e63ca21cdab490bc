#include "monitor/time_text.h"

#include <cstdio>

#include "storage/fixed_text.h"

namespace {

const char* const kWeekdayTexts[7] = {"Sun. ", "Mon.  ", "Tue.  ", "Wed.  ", "Thu.  ", "Fri.  ", "Sat.  "};
const char* const kMonthTexts[12] = {"Jan.", "Feb.", "Mar.", "Apr.",  "May",  "June",
                                     "July", "Aug.", "Sept.", "Oct.", "Nov.", "Dec."};

// Minutes and seconds below ten get a leading zero; the hour never does.
const char* ClockFormat(uint32_t minute, uint32_t second) {
  if (minute < 10) return second < 10 ? "%d : 0%d : 0%d%s" : "%d : 0%d : %d%s";
  return second < 10 ? "%d : %d : 0%d%s" : "%d : %d : %d%s";
}

}  // namespace

void FormatClock(char* out, std::size_t outSize, uint32_t hour, uint32_t minute, uint32_t second, bool twentyFourHour) {
  uint32_t shownHour = hour;
  const char* suffix = "   ";
  if (!twentyFourHour) {
    suffix = hour < 12 ? "  AM" : "  PM";
    if (hour == 0) shownHour = 12;
    else if (hour > 12) shownHour = hour - 12;
  }
  std::snprintf(out, outSize, ClockFormat(minute, second), static_cast<int>(shownHour),
                static_cast<int>(minute), static_cast<int>(second), suffix);
}

void FormatDate(char* out, std::size_t outSize, uint32_t dayOfWeek, uint32_t month, uint32_t day,
                uint32_t year) {
  // Damaged values outside the tables leave their part out.
  const char* weekday = dayOfWeek < 7 ? kWeekdayTexts[dayOfWeek] : "";
  const char* monthText = (month >= 1 && month <= 12) ? kMonthTexts[month - 1] : "";
  std::snprintf(out, outSize, "%s%s  %d, %d", weekday, monthText, static_cast<int>(day),
                static_cast<int>(year));
}

void SplitSeconds(int32_t seconds, int32_t* hours, int32_t* minutes, int32_t* secs) {
  *hours = seconds / 3600;
  const int32_t rest = seconds - 3600 * *hours;
  *minutes = rest / 60;
  *secs = rest - 60 * *minutes;
}

void FormatDuration(char* out, std::size_t outSize, int32_t hours, int32_t minutes, int32_t seconds) {
  std::snprintf(out, outSize, "%d Hr : %d Min : %d sec", static_cast<int>(hours),
                static_cast<int>(minutes), static_cast<int>(seconds));
}

void FormatElapsed(char (&out)[kElapsedTextSize], int32_t seconds) {
  int32_t hours = 0, minutes = 0, secs = 0;
  SplitSeconds(seconds, &hours, &minutes, &secs);
  // The longest text a 32-bit count gives is 29 characters, but the compiler cannot
  // see that through the split, so build it in a roomy buffer first.
  char text[64];
  FormatDuration(text, hours, minutes, secs);
  CopyFixedText(out, text);
}

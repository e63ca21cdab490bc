// The program's clock, date and duration texts: fixed English forms, independent
// of the system's regional settings, in 12- or 24-hour form as the user chose.
#pragma once
#include <cstddef>
#include <cstdint>

constexpr std::size_t kClockTextSize = 160;
constexpr std::size_t kLogOnTextSize = 20;
constexpr std::size_t kElapsedTextSize = 32;
constexpr std::size_t kLastDurationTextSize = 52;
constexpr std::size_t kDateTextSize = 48;  // room for any date, damaged ones too

// The texts the Monitor keeps for the running and the last session. The clock
// text's buffer is ClockTextBuffer because Monitor::ClockText() is the call that fills it.
struct SessionTexts {
  char ClockTextBuffer[kClockTextSize] = "";
  char LogOnText[kLogOnTextSize] = "";
  char ElapsedText[kElapsedTextSize] = "";
  char LastDurationText[kLastDurationTextSize] = "";
};

// The 12-hour form ends in "  AM" or "  PM", the 24-hour form in three blanks.
void FormatClock(char* out, std::size_t outSize, uint32_t hour, uint32_t minute, uint32_t second, bool twentyFourHour);
void FormatDate(char* out, std::size_t outSize, uint32_t dayOfWeek, uint32_t month, uint32_t day,
                uint32_t year);
// "1 Hr : 2 Min : 5 sec", cut to the running session's text.
void FormatElapsed(char (&out)[kElapsedTextSize], int32_t seconds);
void FormatDuration(char* out, std::size_t outSize, int32_t hours, int32_t minutes, int32_t seconds);
void SplitSeconds(int32_t seconds, int32_t* hours, int32_t* minutes, int32_t* secs);

template <std::size_t N>
void FormatClock(char (&out)[N], uint32_t hour, uint32_t minute, uint32_t second, bool twentyFourHour) {
  FormatClock(out, N, hour, minute, second, twentyFourHour);
}
template <std::size_t N>
void FormatDate(char (&out)[N], uint32_t dayOfWeek, uint32_t month, uint32_t day, uint32_t year) {
  FormatDate(out, N, dayOfWeek, month, day, year);
}
template <std::size_t N>
void FormatDuration(char (&out)[N], int32_t hours, int32_t minutes, int32_t seconds) {
  FormatDuration(out, N, hours, minutes, seconds);
}

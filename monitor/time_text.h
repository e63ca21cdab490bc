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

// The texts kept for the running and the last session. The clock text's buffer is
// ClockTextBuffer because ClockText() is the call that fills it.
struct SessionTexts {
  char ClockTextBuffer[kClockTextSize] = "";
  char LogOnText[kLogOnTextSize] = "";
  char ElapsedText[kElapsedTextSize] = "";
  char LastDurationText[kLastDurationTextSize] = "";
};
extern SessionTexts sessionTexts;

// Clock text of the local time now; valid until the next call.
const char* ClockText();
void FormatClock(char* out, std::size_t outSize, uint32_t hour, uint32_t minute, uint32_t second);
void FormatDate(char* out, std::size_t outSize, uint32_t dayOfWeek, uint32_t month, uint32_t day,
                uint32_t year);
void FormatElapsed(int32_t seconds);
void FormatDuration(char* out, std::size_t outSize, int32_t hours, int32_t minutes, int32_t seconds);
void SplitSeconds(int32_t seconds, int32_t* hours, int32_t* minutes, int32_t* secs);
const char* GetLastDurationText();
const char* GetLogOnText();

template <std::size_t N>
void FormatClock(char (&out)[N], uint32_t hour, uint32_t minute, uint32_t second) {
  FormatClock(out, N, hour, minute, second);
}
template <std::size_t N>
void FormatDate(char (&out)[N], uint32_t dayOfWeek, uint32_t month, uint32_t day, uint32_t year) {
  FormatDate(out, N, dayOfWeek, month, day, year);
}
template <std::size_t N>
void FormatDuration(char (&out)[N], int32_t hours, int32_t minutes, int32_t seconds) {
  FormatDuration(out, N, hours, minutes, seconds);
}

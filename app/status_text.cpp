#include "app/status_text.h"

#include <cstdio>
#include <cstring>

#include "monitor/monitor.h"
#include "storage/fixed_text.h"
#include "storage/storage.h"

StatusState statusState;

namespace {

constexpr float kHoursPerSecond = 0.00027777778f;

template <typename... Args>
std::string Format(const char* format, Args... args) {
  char text[512];  // room for two full clock texts
  std::snprintf(text, sizeof text, format, args...);
  return text;
}

std::string PreviousAccountLine(Storage& store, const UsageQueries& usage, const char* name) {
  switch ((store.*usage.accountKindOf)(name)) {
    case PrePaidCard:
      return Format(" Card :                    %.2f Hrs.   of  %.0f Hrs. used",
                    static_cast<double>(static_cast<float>((store.*usage.totalSeconds)(name)) * kHoursPerSecond),
                    static_cast<double>((store.*usage.allottedAmount)(name)));
    case LimitedAccess:
      return Format("Limited: %.2f Hrs this month/ %.2f Hrs Logged",
                    static_cast<double>(static_cast<float>((store.*usage.secondsThisMonth)(name)) * kHoursPerSecond),
                    static_cast<double>(static_cast<float>((store.*usage.totalSeconds)(name)) * kHoursPerSecond));
    case UnlimitedAccess:
      return "Account Type : Unlimited Access Account";
    default:
      return "";
  }
}

}  // namespace

std::string HoursText(float hours) {
  return Format("%.2f", static_cast<double>(hours)) + (hours > 1.0f ? " Hrs." : " Hr.");
}

StatusInputs StatusInputsOf(const Monitor& monitor) {
  return {.connected = monitor.TickConnected(),
          .connectionName = monitor.Probe().ConnectionName(),
          .elapsedSeconds = monitor.ElapsedSeconds()};
}

void RefreshStatusText(Monitor& monitor) {
  RefreshStatusTextWith(monitor.Store(), StatusInputsOf(monitor), kCachedUsage);
}

void RefreshStatusTextWith(Storage& store, const StatusInputs& inputs, const UsageQueries& usage) {
  const int32_t elapsed = inputs.elapsedSeconds;
  const char* const name = inputs.connectionName;
  if (inputs.connected) {
    std::string kind;
    std::string detail;
    switch ((store.*usage.accountKindOf)(name)) {
      case NotChosen:
        kind = " Account info not yet configured for Orvalen's database";
        break;
      case PrePaidCard: {
        const float remaining = (store.*usage.cardSecondsRemaining)(name) - static_cast<float>(elapsed);
        const float hours = remaining > 0.0f ? remaining * kHoursPerSecond : 0.0f;
        kind = "Pre-paid Internet Card ";
        detail = "Time remaining on this card : " + HoursText(hours);
        break;
      }
      case LimitedAccess: {
        const float seconds = static_cast<float>((store.*usage.secondsThisMonth)(name) + elapsed);
        kind = "Limited Access account";
        detail = "Time Consumed this month : " + HoursText(seconds * kHoursPerSecond);
        break;
      }
      case UnlimitedAccess:
        kind = "Unlimited Access account";
        break;
      default:
        kind = " not yet defined for this dial-up connection.";
        break;
    }
    char* const text = statusState.statusText;
    std::snprintf(text, kStatusTextSize, "\nType of Account: %s\n %s", kind.c_str(), detail.c_str());
    return;
  }
  CopyFixedText(statusState.statusText, kOffLineStatusText);
}

void ResetStatusState() { statusState = StatusState{}; }

SessionChange OnMainWindowTimer(bool pollTick, bool statusShown, Monitor& monitor) {
  const SessionChange change = pollTick ? monitor.OnPollTick() : SessionChange::kNone;
  if (statusShown) RefreshStatusText(monitor);
  return change;
}

std::vector<std::string> PreviousSessionLines(Storage& store) { return PreviousSessionLinesWith(store, kCachedUsage); }

std::vector<std::string> PreviousSessionLinesWith(Storage& store, const UsageQueries& usage) {
  const PreviousSession& last = store.settings.previousSession;
  // A damaged file may leave the name unterminated: take the field alone.
  char name[kPreviousNameSize + 1] = {};
  std::memcpy(name, last.connectionName, kPreviousNameSize);

  char date[kDateTextSize];
  char logOn[kClockTextSize];
  char logOff[kClockTextSize];
  FormatDate(date, last.dayOfWeek, last.month, last.day, last.year);
  const bool twentyFourHour = store.settings.use24HourClock != 0;
  FormatClock(logOn, last.logOn.hour, last.logOn.minute, last.logOn.second, twentyFourHour);
  FormatClock(logOff, last.logOff.hour, last.logOff.minute, last.logOff.second, twentyFourHour);
  const uint32_t seconds = last.durationSeconds;
  return {
      "----------------------  Previous Session  ----------------------",
      Format(" Connection  :                   %s", name),
      Format(" Date :                              %s", date),
      Format(" ON:  %s       OFF:  %s", logOn, logOff),
      Format(" Duration :                        %d Hr: %d Min: %d Sec", static_cast<int>(seconds / 3600),
             static_cast<int>(seconds % 3600 / 60), static_cast<int>(seconds % 60)),
      PreviousAccountLine(store, usage, name),
  };
}

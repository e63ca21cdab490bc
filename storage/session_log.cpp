#include "storage/session_log.h"

#include <algorithm>
#include <cstring>

#include "storage/billing_period.h"
#include "storage/settings.h"

bool SameSession(const SessionRecord& a, const SessionRecord& b) {
  if (a.logOnHour != b.logOnHour || a.logOnMinute != b.logOnMinute || a.logOnSecond != b.logOnSecond ||
      std::strncmp(a.connectionName, b.connectionName, kCheckpointNameSize - 1) != 0) {
    return false;
  }
  // The longer one is the later record: made at the end, or the whole session.
  const SessionRecord& later = a.durationSeconds >= b.durationSeconds ? a : b;
  const SessionRecord& earlier = &later == &a ? b : a;
  const int64_t reach =
      (a.logOnHour * 3600 + a.logOnMinute * 60 + a.logOnSecond + std::max(later.durationSeconds, 0)) / 86400 + 1;
  const int64_t apart = DayNumber(CalendarDate{later.year, later.month, later.day}) -
                        DayNumber(CalendarDate{earlier.year, earlier.month, earlier.day});
  return apart >= -1 && apart <= reach;
}

bool HoldsSession(const std::vector<SessionRecord>& records, const SessionRecord& session) {
  for (const SessionRecord& record : records) {
    if (record.status == InUse && SameSession(record, session)) return true;
  }
  return false;
}

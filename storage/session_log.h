// The log of sessions (Storage's log): held whole in memory, rewritten whole
// when it changed.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "storage/session_record.h"

constexpr uint32_t kLegacyLogSlots = 2000;
constexpr uint32_t kNoSlot = 0xFFFFFFFFu;

// The header stores the record area's byte length in 32 bits, so the log can
// never hold more records than that length can describe.
constexpr uint32_t kMaxLogRecords = 0xFFFFFFFFu / sizeof(SessionRecord);

// A file whose count promises more records than it holds gets the missing ones
// as Blank records, up to this many; a count that overshoots further is damage,
// and only the records actually present are loaded (nothing recorded is lost, and
// a count like 4,000,000,000 cannot exhaust memory).
constexpr uint32_t kMissingRecordsPadded = 4096;

struct SessionLog {
  std::vector<SessionRecord> records;
  uint32_t count = 0;  // always records.size(); Blank and Deleted records count too
};

// Whether two records are one session: the same connection, begun at the same
// second, dated no further apart than its length reaches from its log-on (a
// session recorded at its end carries its end date, one recovered from its
// checkpoint its start date), with a day to spare for a clock set back or on.
// The longer one is taken for the later record.
bool SameSession(const SessionRecord& a, const SessionRecord& b);
// Whether an InUse record of the records is that session.
bool HoldsSession(const std::vector<SessionRecord>& records, const SessionRecord& session);

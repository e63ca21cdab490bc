// The usage figures of the accounts (Storage::ComputeUsage), remembered per
// connection between queries (Storage::CachedComputeUsage).
//
// The status text is rebuilt about twelve times a second and each rebuild asks for
// two or three figures; walking the whole log for every one of them costs in
// proportion to the log. Here the log's part of the computation (seconds this month,
// seconds in total) is kept per connection and the log is walked only when that part
// can have changed:
//   - the log changed: every log operation moves LogGeneration() on (session
//     recorded or recovered, record deleted, log cleared, loaded, created,
//     converted), and the log's length is compared too;
//   - the calendar month changed: the local date is read at every query;
//   - the account's window changed: its billing period (a new period, or another
//     start day) or a card's recharge; it is worked out at every query (a fixed
//     50-entry lookup) and kept with each connection's sums.
// The account's part (kind, card balance, cost) is not kept at all: it takes the
// account table as it is at the moment of the query, a fixed 50-entry lookup, so a
// change of the accounts needs no invalidation that a settings page could forget.
// The results are the same, bit for bit, as those of Storage::ComputeUsage.
#pragma once
#include <cstddef>
#include <cstdint>

#include "storage/accounts.h"
#include "storage/session_record.h"

// What the entries were computed from: when any of it changes, every entry goes.
struct UsageBasis {
  uint64_t logGeneration = 0;
  std::size_t logLength = 0;
  uint32_t logCount = 0;
  uint32_t year = 0;
  uint32_t month = 0;
};

class UsageCache {
 public:
  // Log records match a name on at most its first 104 characters (their field's
  // width), so names that agree that far have the same sums: the key is that cut.
  static constexpr std::size_t kKeySize = kRecordNameSize;
  using Key = char[kKeySize];
  static void MakeKey(const char* name, Key& key);

  // The entry for the key in the window: *found tells whether its sums are ready;
  // otherwise it is a claimed entry (a free one, else the one unused longest)
  // whose sums the caller fills from a walk of the log.
  LogUsageSums& Entry(const UsageBasis& basis, const Key& key, const UsageWindow& window, bool* found);
  // Forgets everything (tests; the cache never needs it to stay correct).
  void Clear() { *this = UsageCache{}; }
  // How many times the cache walked the log since it was last cleared.
  uint64_t LogWalks() const { return walks_; }

 private:
  // A few connections are asked for at a time (the current one, the previous
  // session's); more than this many in turn only cost extra walks.
  static constexpr int kEntries = 8;

  struct Slot {
    bool used = false;
    uint32_t lastUse = 0;
    Key key = {};
    UsageWindow window;
    LogUsageSums sums;
  };

  UsageBasis basis_;
  uint32_t useClock_ = 0;
  uint64_t walks_ = 0;
  Slot slots_[kEntries];
};

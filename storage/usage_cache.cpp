#include "storage/usage_cache.h"

#include <cstring>

void UsageCache::MakeKey(const char* name, Key& key) {
  std::size_t length = 0;
  while (length < kKeySize - 1 && name[length] != '\0') ++length;
  std::memcpy(key, name, length);
  std::memset(key + length, 0, kKeySize - length);
}

LogUsageSums& UsageCache::Entry(const UsageBasis& basis, const Key& key, const UsageWindow& window, bool* found) {
  if (basis.logGeneration != basis_.logGeneration || basis.logLength != basis_.logLength ||
      basis.logCount != basis_.logCount || basis.year != basis_.year || basis.month != basis_.month) {
    for (Slot& slot : slots_) slot.used = false;
    basis_ = basis;
  }
  ++useClock_;
  Slot* victim = &slots_[0];
  for (Slot& slot : slots_) {
    if (slot.used && std::memcmp(slot.key, key, kKeySize) == 0 && slot.window == window) {
      slot.lastUse = useClock_;
      *found = true;
      return slot.sums;
    }
    // Replace a free entry, else the one unused longest.
    if (victim->used && (!slot.used || slot.lastUse < victim->lastUse)) victim = &slot;
  }
  victim->used = true;
  victim->lastUse = useClock_;
  std::memcpy(victim->key, key, kKeySize);
  victim->window = window;
  ++walks_;
  *found = false;
  return victim->sums;
}

// The poll runs ten times a second for as long as the program runs:
// it must not allocate. This executable replaces the global operator new and
// delete with counting ones (its own program, so no other test is affected) and
// polls in every state of the dial-up service. The poll uses no C stdio and no
// malloc of its own, so operator new is the allocator to watch.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <new>

#include "monitor/dial_up_probe.h"
#include "platform/ras_service.h"

namespace {

// Plain counters: the tests run on one thread.
unsigned long allocations = 0;
bool counting = false;

void* Allocate(std::size_t size) {
  if (counting) ++allocations;
  if (void* block = std::malloc(size == 0 ? 1 : size)) return block;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  if (counting) ++allocations;
  return std::malloc(size == 0 ? 1 : size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  if (counting) ++allocations;
  return std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { std::free(block); }

namespace {

// A dial-up service that itself allocates nothing (the unit tests' ScriptedRas
// records every queried handle in a vector) and counts the calls made to it.
class CountingRas : public RasService {
 public:
  enum class State { None, Dialling, Connected, Disconnected, Vanished, Unavailable };
  State state = State::None;
  uintptr_t handle = 0x77;
  unsigned long enumCalls = 0;
  unsigned long statusCalls = 0;

  uint32_t EnumConnections(ras::Connection95* connections, uint32_t*, uint32_t* connectionCount) override {
    ++enumCalls;
    if (state == State::Unavailable) return 711;
    if (state == State::None || state == State::Vanished) {
      *connectionCount = 0;
      return 0;
    }
    connections[0].hrasconn = reinterpret_cast<ras::ConnectionHandle>(handle);
    std::memset(connections[0].szEntryName, 'n', ras::kEntryNameLength);  // the longest name there is
    connections[0].szEntryName[ras::kEntryNameLength] = '\0';
    *connectionCount = 1;
    return 0;
  }

  uint32_t GetConnectStatus(ras::ConnectionHandle queried, ras::ConnectionStatus95* status) override {
    ++statusCalls;
    if (reinterpret_cast<uintptr_t>(queried) != handle) return ras::kErrorInvalidHandle;
    switch (state) {
      case State::Connected: status->rasconnstate = ras::kStateConnected; return 0;
      case State::Disconnected: status->rasconnstate = ras::kStateDisconnected; return 0;
      case State::Dialling: status->rasconnstate = 0x0A; return 0;  // authenticating
      default: return ras::kErrorInvalidHandle;
    }
  }
};

class PollAllocations : public ::testing::Test {
 protected:
  void SetUp() override { UseRasService(&ras_); }
  void TearDown() override {
    counting = false;
    UseRasService(nullptr);
  }

  // Polls many times in one state; the allocations and calls of those polls.
  struct Outcome {
    unsigned long allocations, enumCalls, statusCalls;
  };
  Outcome Poll(CountingRas::State state, int polls = 1000) {
    ras_.state = state;
    ras_.enumCalls = ras_.statusCalls = 0;
    allocations = 0;
    counting = true;
    for (int i = 0; i < polls; ++i) probe_.IsConnected();
    counting = false;
    return {allocations, ras_.enumCalls, ras_.statusCalls};
  }

  CountingRas ras_;
  DialUpProbe probe_;
};

TEST_F(PollAllocations, CountingWorks) {
  // The replacement is really in use: otherwise every check below passes vacuously.
  allocations = 0;
  counting = true;
  delete new int(5);
  counting = false;
  EXPECT_EQ(allocations, 1u);
}

TEST_F(PollAllocations, NoneInAnyStateAndTwoServiceCallsPerPoll) {
  using State = CountingRas::State;
  // Each state in the order a real connection goes through them, twice, so every
  // transition (and the vanished connection's stale handle) is covered.
  const State states[] = {State::None,         State::Dialling, State::Connected, State::Vanished,
                          State::Connected,    State::Disconnected, State::None,  State::Dialling,
                          State::Connected,    State::Disconnected};
  for (State state : states) {
    SCOPED_TRACE(static_cast<int>(state));
    const Outcome outcome = Poll(state);
    EXPECT_EQ(outcome.allocations, 0u);
    EXPECT_EQ(outcome.enumCalls, 1000u);
    EXPECT_EQ(outcome.statusCalls, 1000u);
    if (state == State::Connected) ras_.handle += 1;  // the next connection gets a new handle
  }
}

TEST_F(PollAllocations, ServiceUnavailableMakesOneCallAndNoAllocation) {
  const Outcome outcome = Poll(CountingRas::State::Unavailable);
  EXPECT_EQ(outcome.allocations, 0u);
  EXPECT_EQ(outcome.enumCalls, 1000u);
  EXPECT_EQ(outcome.statusCalls, 0u) << "a failed enumeration ends the poll";
}

TEST_F(PollAllocations, ANewProbeAllocatesNothingEither) {
  // Users that create a probe where they need it (View Log) keep it on the stack.
  ras_.state = CountingRas::State::Connected;
  allocations = 0;
  counting = true;
  for (int i = 0; i < 100; ++i) {
    DialUpProbe probe;
    probe.IsConnected();
  }
  counting = false;
  EXPECT_EQ(allocations, 0u);
}

#ifdef _WIN32
// The system's own service as the program uses it: rasapi32 loaded on first use
// (Wine's built-in one here, or none). After that first poll nothing is allocated.
TEST_F(PollAllocations, SystemServiceAllocatesNothingAfterTheFirstPoll) {
  UseRasService(nullptr);
  probe_.IsConnected();  // loads rasapi32 if there is one
  allocations = 0;
  counting = true;
  for (int i = 0; i < 1000; ++i) probe_.IsConnected();
  counting = false;
  EXPECT_EQ(allocations, 0u);
}
#endif

}  // namespace

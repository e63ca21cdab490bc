// The poll runs ten times a second for as long as the program runs:
// it must not allocate. This executable replaces the global operator new and
// delete with counting ones (its own program, so no other test is affected) and
// polls in every state of the dial-up service.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <new>

#include "monitor/dial_up_probe.h"
#include "platform/ras_service.h"

namespace {

unsigned long allocations = 0;  // the tests run on one thread
bool counting = false;

void* Allocate(std::size_t size) {
  if (counting) ++allocations;
  return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

void* operator new(std::size_t size) {
  if (void* block = Allocate(size)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }

namespace {

// A dial-up service that itself allocates nothing, with the longest name there is.
class QuietRas : public RasService {
 public:
  enum class State { None, Dialling, Connected, Disconnected, Vanished, Unavailable } state = State::None;
  uintptr_t handle = 0x77;

  uint32_t EnumConnections(ras::Connection95* connections, uint32_t*, uint32_t* count) override {
    if (state == State::Unavailable) return 711;
    *count = state == State::None || state == State::Vanished ? 0 : 1;
    connections[0].hrasconn = reinterpret_cast<ras::ConnectionHandle>(handle);
    std::memset(connections[0].szEntryName, 'n', ras::kEntryNameLength);
    connections[0].szEntryName[ras::kEntryNameLength] = '\0';
    return 0;
  }
  uint32_t GetConnectStatus(ras::ConnectionHandle queried, ras::ConnectionStatus95* status) override {
    if (reinterpret_cast<uintptr_t>(queried) != handle || state == State::Vanished) return ras::kErrorInvalidHandle;
    status->rasconnstate = state == State::Connected ? ras::kStateConnected
                           : state == State::Disconnected ? ras::kStateDisconnected : 0x0A;  // authenticating
    return 0;
  }
};

TEST(PollAllocations, NoneInAnyState) {
  allocations = 0;
  counting = true;
  int* volatile block = new int(5);  // the replacement is really in use
  delete block;
  counting = false;
  ASSERT_EQ(allocations, 1u);

  QuietRas ras;
  UseRasService(&ras);
  DialUpProbe probe;
  using State = QuietRas::State;
  // The states in the order a real connection goes through them, twice, so every
  // transition (and the vanished connection's stale handle) is covered.
  for (State state : {State::None, State::Dialling, State::Connected, State::Vanished, State::Connected,
                      State::Disconnected, State::Unavailable, State::Dialling, State::Connected, State::Disconnected}) {
    ras.state = state;
    allocations = 0;
    counting = true;
    for (int i = 0; i < 1000; ++i) probe.IsConnected();
    counting = false;
    EXPECT_EQ(allocations, 0u) << static_cast<int>(state);
    if (state == State::Connected) ras.handle += 1;  // the next connection gets a new handle
  }
#ifdef _WIN32
  // The system's own service as the program uses it: rasapi32 loaded on first use
  // (Wine's built-in one here, or none). After that first poll nothing is allocated.
  UseRasService(nullptr);
  probe.IsConnected();
  allocations = 0;
  counting = true;
  for (int i = 0; i < 1000; ++i) probe.IsConnected();
  counting = false;
  EXPECT_EQ(allocations, 0u) << "the system's service";
#endif
  UseRasService(nullptr);
}

}  // namespace

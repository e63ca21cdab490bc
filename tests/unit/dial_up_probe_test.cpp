#include <cstring>
#include <string>

#include "app/status_text.h"
#include "monitor/dial_up_probe.h"
#include "monitor/session.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

using State = ScriptedRas::State;

class Probe : public ProgramStateTest {
 protected:
  DialUpProbe probe_;
};

TEST_F(Probe, NothingSeenYetQueriesAZeroHandleAndChangesNothing) {
  EXPECT_FALSE(probe_.IsConnected());
  ASSERT_EQ(ras_.queriedHandles.size(), 1u);
  EXPECT_EQ(ras_.queriedHandles[0], 0u);
  EXPECT_STREQ(CurrentConnectionName, "");
  EXPECT_EQ(OnLineFlag, 0);
  EXPECT_EQ(NoConnectionSeen, 1);
}

TEST_F(Probe, PassesTheWindows95SizesAndMakesExactlyTwoCalls) {
  ras_.Connect("Home ISP");
  probe_.IsConnected();
  EXPECT_EQ(ras_.enumCalls, 1);
  EXPECT_EQ(ras_.statusCalls, 1);
  EXPECT_EQ(ras_.lastEntrySize, sizeof(ras::Connection95));
  EXPECT_EQ(ras_.lastEnumBufferSize, 8 * sizeof(ras::Connection95));
  EXPECT_EQ(ras_.lastStatusSize, 160u);
}

TEST_F(Probe, ConnectedSetsTheNameAndTheFlags) {
  ras_.Connect("Home ISP");
  EXPECT_TRUE(probe_.IsConnected());
  EXPECT_STREQ(CurrentConnectionName, "Home ISP");
  EXPECT_EQ(OnLineFlag, 1);
  EXPECT_EQ(NoConnectionSeen, 0);
}

TEST_F(Probe, DiallingIsNotConnectedAndLeavesTheFlags) {
  ras_.Connect("Home ISP");
  probe_.IsConnected();
  ras_.state = State::Dialling;
  ras_.name = "Other";
  EXPECT_FALSE(probe_.IsConnected());
  EXPECT_EQ(OnLineFlag, 1);
  EXPECT_STREQ(CurrentConnectionName, "Home ISP");
}

TEST_F(Probe, ListedAsDisconnectedClearsTheOnLineFlag) {
  ras_.Connect("Home ISP");
  probe_.IsConnected();
  ras_.state = State::Disconnected;
  EXPECT_FALSE(probe_.IsConnected());
  EXPECT_EQ(OnLineFlag, 0);
  EXPECT_STREQ(CurrentConnectionName, "Home ISP") << "the name is kept";
  EXPECT_EQ(NoConnectionSeen, 0);
}

TEST_F(Probe, VanishedConnectionQueriesItsOldHandleAndKeepsTheFlagWhenThatFails) {
  ras_.Connect("Home ISP");
  probe_.IsConnected();
  const uintptr_t oldHandle = ras_.handle;
  ras_.state = State::Vanished;
  EXPECT_FALSE(probe_.IsConnected());
  EXPECT_EQ(ras_.queriedHandles.back(), oldHandle);
  EXPECT_EQ(OnLineFlag, 1);
  EXPECT_STREQ(CurrentConnectionName, "Home ISP");
}

TEST_F(Probe, ServiceUnavailableIsNeverConnected) {
  ras_.state = State::Unavailable;
  EXPECT_FALSE(probe_.IsConnected());
  EXPECT_EQ(ras_.statusCalls, 0);
  EXPECT_EQ(NoConnectionSeen, 1);
}

TEST_F(Probe, LongEntryNamesAreCutTo49Characters) {
  ras_.Connect(std::string(256, 'n'));
  EXPECT_TRUE(probe_.IsConnected());
  EXPECT_EQ(std::strlen(CurrentConnectionName), 49u);
}

TEST_F(Probe, EachProbeKeepsItsOwnLastHandle) {
  ras_.Connect("Home ISP");
  probe_.IsConnected();
  ras_.state = State::Vanished;
  DialUpProbe fresh;
  fresh.IsConnected();
  EXPECT_EQ(ras_.queriedHandles.back(), 0u) << "a new probe has seen no connection";
}

TEST_F(Probe, EachPollTickAsksTheServiceOnceAndTheSessionFollowsItsAnswer) {
  ASSERT_TRUE(CreateSettings(SettingsPath()));
  ASSERT_TRUE(CreateEmptyLog(LogFilePath().c_str()));
  // The service at a tick of timer 2, and whether a session is open after it.
  const struct { State state; uint32_t open; } ticks[] = {
      {State::None, 0},      {State::Dialling, 0},     {State::Connected, 1}, {State::Connected, 1},
      {State::Vanished, 0},  {State::Connected, 1},    {State::Disconnected, 0}, {State::Unavailable, 0}};
  int polls = 0;
  for (bool dialogShown : {false, true}) {
    for (const auto& tick : ticks) {
      ras_.state = tick.state;
      OnMainWindowTimer(true, dialogShown, probe_);  // timer 2
      OnMainWindowTimer(false, dialogShown, probe_);  // timer 5 or 10 in the same 100 ms
      EXPECT_EQ(ras_.enumCalls, ++polls) << "one dial-up query a tick, none for the other timers";
      EXPECT_EQ(SessionOpen, tick.open) << "opened or closed by the tick that saw the change";
    }
  }
}

}  // namespace

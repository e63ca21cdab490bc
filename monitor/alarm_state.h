// Alarm state the session lifecycle resets when a session closes.
#pragma once
#include <cstdint>

// 1 once the one-time alarm has fired in the running session.
extern uint8_t OneShotFired;

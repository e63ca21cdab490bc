// Is the first dial-up connection up right now, and what is it called?
#pragma once
#include <cstddef>
#include <cstdint>

#include "platform/ras_layout.h"

constexpr std::size_t kConnectionNameSize = 50;  // 49 characters and the NUL

// Written only by the probe. The name is kept when the connection goes away.
struct ProbeState {
  char CurrentConnectionName[kConnectionNameSize] = "";
  uint8_t OnLineFlag = 0;        // 1 from a connected poll until a poll sees "disconnected"
  uint8_t NoConnectionSeen = 1;  // 1 until the first connected poll
};
extern ProbeState probeState;

// Each user owns one; the buffers live in the probe so a poll allocates nothing.
class DialUpProbe {
 public:
  static constexpr uint32_t kConnectionSlots = 8;

  DialUpProbe();
  virtual ~DialUpProbe();

  // True when the first connection the service lists is fully connected.
  bool IsConnected();

 private:
  ras::Connection95 connections_[kConnectionSlots];
  uint32_t connectionCount_;
  uint32_t bufferSize_;
  ras::ConnectionHandle queriedHandle_;
  ras::ConnectionStatus95 status_;
};

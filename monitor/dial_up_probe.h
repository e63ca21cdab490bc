// Is the first dial-up connection up right now, and what is it called?
#pragma once
#include <cstddef>
#include <cstdint>

#include "platform/ras_layout.h"

constexpr std::size_t kConnectionNameSize = 50;  // 49 characters and the NUL

// Each user owns one; the buffers live in the probe so a poll allocates nothing.
// What its polls saw stays in it; the session's is the Monitor's probe.
class DialUpProbe {
 public:
  static constexpr uint32_t kConnectionSlots = 8;

  DialUpProbe();
  virtual ~DialUpProbe();

  // True when the first connection the service lists is fully connected.
  bool IsConnected();

  // The first connection's name at the latest connected poll, kept when it goes away.
  const char* ConnectionName() const { return connectionName_; }
  // From a connected poll until a poll sees "disconnected".
  bool OnLine() const { return onLine_; }
  // Until the first connected poll.
  bool NoConnectionSeen() const { return noConnectionSeen_; }

 private:
  ras::Connection95 connections_[kConnectionSlots];
  uint32_t connectionCount_;
  uint32_t bufferSize_;
  ras::ConnectionHandle queriedHandle_;
  ras::ConnectionStatus95 status_;
  char connectionName_[kConnectionNameSize] = "";
  bool onLine_ = false;
  bool noConnectionSeen_ = true;
};

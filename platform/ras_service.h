// The two operations of the dial-up service the probe needs. On Windows they are
// rasapi32's; tests script their answers.
#pragma once
#include <cstdint>

#include "platform/ras_layout.h"

class RasService {
 public:
  virtual ~RasService() = default;
  // RasEnumConnectionsA: 0 on success.
  virtual uint32_t EnumConnections(ras::Connection95* connections, uint32_t* bufferSize,
                                   uint32_t* connectionCount) = 0;
  // RasGetConnectStatusA: 0 on success.
  virtual uint32_t GetConnectStatus(ras::ConnectionHandle handle, ras::ConnectionStatus95* status) = 0;
};

RasService& CurrentRas();
// nullptr goes back to the system's service.
void UseRasService(RasService* service);

// The platform's dial-up service.
RasService& SystemRas();

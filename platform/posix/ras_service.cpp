#include "platform/ras_service.h"

namespace {
constexpr uint32_t kRasNotAvailable = 711;

// There is no dial-up service off Windows: every poll answers "not connected".
class NoRas : public RasService {
 public:
  uint32_t EnumConnections(ras::Connection95*, uint32_t*, uint32_t*) override { return kRasNotAvailable; }
  uint32_t GetConnectStatus(ras::ConnectionHandle, ras::ConnectionStatus95*) override {
    return kRasNotAvailable;
  }
};
}  // namespace

RasService& SystemRas() {
  static NoRas service;
  return service;
}

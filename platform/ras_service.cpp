#include "platform/ras_service.h"

namespace {
RasService* serviceInUse = nullptr;
}

RasService& CurrentRas() { return serviceInUse ? *serviceInUse : SystemRas(); }

void UseRasService(RasService* service) { serviceInUse = service; }

#include "platform/ras_service.h"

#include "platform/platform_state.h"

RasService& CurrentRas() { return platformState.serviceInUse ? *platformState.serviceInUse : SystemRas(); }

void UseRasService(RasService* service) { platformState.serviceInUse = service; }

#include "storage/startup_hooks.h"

StartupHooks startupHooks;

#include "ui/win32/app_state.h"

AppWindows appWindows;

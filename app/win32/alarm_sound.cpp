#include "app/win32/alarm_sound.h"

#include <windows.h>
#include <mmsystem.h>

#include "monitor/alarm.h"

static_assert((SND_FILENAME | SND_ASYNC) == 0x20001, "a file, played while the program goes on");

void PlayAlarmSound() { PlaySoundA(kAlarmSoundPath, nullptr, SND_FILENAME | SND_ASYNC); }

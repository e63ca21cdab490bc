// The alarm's sound, for the reminders and the Alarm page's Preview Sound.
#pragma once

// Starts the sound file and returns at once. A missing file gives the system's
// default sound; the result is not looked at.
void PlayAlarmSound();

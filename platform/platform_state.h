// The platform's program-wide state: the seams tests replace (clock, dial-up
// service, the disk) and the reason of the last failed file call. Every field's
// start value stands for the system's own behaviour.
#pragma once
#include <cstdio>

class Clock;
class RasService;

// Every file call of the loads and saves goes through these. Empty (the
// program's case): the C library's. The fault simulation puts in a disk of its
// own that fails, tears or stops any call. A failed call sets errno.
struct FileCalls {
  std::FILE* (*open)(const char* path, const char* mode) = nullptr;
  int (*remove)(const char* path) = nullptr;
  int (*rename)(const char* from, const char* to) = nullptr;
  bool (*exists)(const char* path) = nullptr;  // a file or a folder of that name
  bool (*commit)(std::FILE* file) = nullptr;   // flushed and pushed to the disk
};

// ResetPlatformState() brings it back to these values.
struct PlatformState {
  Clock* clockInUse = nullptr;         // UseClock(); nullptr: the system's clock
  RasService* serviceInUse = nullptr;  // UseRasService(); nullptr: the system's service
  FileCalls fileCalls;
  int lastError = 0;                   // errno of the last failed file call
};
extern PlatformState platformState;

// Back to the system's clock, dial-up service and disk, and no error noted
// (tests, tools). The folders are set on their own (program_paths.h).
void ResetPlatformState();

// The platform's program-wide state: the seams tests replace (clock, dial-up
// service, a cut save) and the reason of the last failed file call. Every field's
// start value stands for the system's own behaviour.
#pragma once
#include <cstddef>

class Clock;
class RasService;

// Crash tests only: given a path, the step of its save and that step's size (the
// content's byte count; 1 for a rename or deletion), answers how much of it
// happens (a kill or power cut at that point); the save then reports failure.
// Empty (the program's case): every step happens whole. The steps: the content
// write, setting an earlier "<name>.new" aside (only when there is one), the
// rename to "<name>.new", the deletions of "<name>.prev" and the old file, the
// last rename.
enum class SaveStep { Content, SetAside, Commit, RemoveOld, Rename };
using WriteCutoff = std::size_t (*)(const char* path, SaveStep step, std::size_t size);

// ResetPlatformState() brings it back to these values.
struct PlatformState {
  Clock* clockInUse = nullptr;         // UseClock(); nullptr: the system's clock
  RasService* serviceInUse = nullptr;  // UseRasService(); nullptr: the system's service
  WriteCutoff fileWriteCutoff = nullptr;
  int lastError = 0;                   // errno of the last failed file call
};
extern PlatformState platformState;

// Back to the system's clock and dial-up service, whole saves and no error noted
// (tests, tools). The folders are set on their own (program_paths.h).
void ResetPlatformState();

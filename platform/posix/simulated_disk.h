// A disk in memory for the fault simulation (tests/unit/simulation_test.cpp).
// Once in use, every file call of the loads and saves comes here through
// platformState.fileCalls; any call can be made to fail, to tear its write and
// stop the process (a power cut) or to stop the process before it (a kill), and
// files can be held by another program or have a folder in their place.
// Natively only: its FILE handles are glibc cookies.
#pragma once
#include <cstdint>
#include <functional>
#include <map>
#include <string>

struct SimulatedFile {
  bool folder = false;
  int held = 0;  // by another program: 1 with read sharing, 2 without
  std::string data;
};

struct SimulatedDisk {
  std::map<std::string, SimulatedFile> files;
  bool full = false;  // every write fails with ENOSPC
  bool dead = false;  // the process was killed: nothing more reaches the disk
  uint64_t calls = 0, faults = 0, kills = 0;
  // A save's content got its complete name ("X.tmp" became "X.new": X, the data),
  // and a save put it in place ("X.new" became X).
  std::function<void(const std::string&, const std::string&)> committed;
  std::function<void(const std::string&)> placed;

  // The call `after` calls from now fails (F), stops the process (K), or, when it
  // is a write, writes its first tornAt bytes and then stops it (T).
  void Arm(char fault, uint64_t after, uint64_t tornAt);
  // Another program holds an existing file (sharing reading or not), puts a folder
  // where nothing is; and every hold, folder, full disk and armed fault lifted.
  bool Hold(const std::string& path, bool readSharing);
  bool PutFolder(const std::string& path);
  void ReleaseHolds();
  void RemoveFolders();
  void Heal();
  SimulatedFile* Find(const std::string& path);
  // The file calls go to this disk from now on (ResetPlatformState ends it).
  void Use();

  enum Fate { kHappens, kFails, kDies, kTears };
  Fate Next(bool write);  // the fate of the next call
  uint64_t tornAt = 0;

 private:
  char armed_ = 0;
  uint64_t armedAt_ = 0;
};

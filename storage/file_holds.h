// The program's two files, held while unreadable, and what is told when one
// cannot be read or saved.
#pragma once
#include "storage/notice_queue.h"

// The file's path, then the system's reason.
constexpr char kFileUnreadableFormat[] =
    "Orvalen cannot read %s (%s).\nThe file is left as it is. Your sessions are kept "
    "and saved to it once it can be read.";
constexpr char kFileNotSavedFormat[] =
    "Orvalen could not save %s (%s).\nNothing is lost while Orvalen runs: it tries "
    "again at the next save.";

// The program's two files. An existing file that could not be read is held for
// the rest of the run: saving it writes nothing and returns false, so it is never
// replaced by defaults or by an empty log. A held log is read again at each save;
// once it can be read, the records on disk and the sessions recorded since are
// both kept and the hold ends.
enum StoredFile { kConfigurationFile, kLogFile };

class FileHolds {
 public:
  void Hold(StoredFile file, bool held) { held_[file] = held; }
  bool Held(StoredFile file) const { return held_[file]; }

  // Tells the user, once, that the file could not be read (the system's reason is
  // LastFileError()), and holds it.
  void ReportUnreadable(StoredFile file, const char* path, NoticeQueue& notices);
  // Every save's result comes here: a failure is told once until a save of that
  // file succeeds again.
  bool NoteSaveResult(StoredFile file, const char* path, bool saved, NoticeQueue& notices);

  // Forgets every hold and every failure told (a fresh start).
  void Reset();

 private:
  void TellOnce(StoredFile file, const char* format, const char* path, NoticeQueue& notices);

  bool held_[2] = {false, false};
  bool failing_[2] = {false, false};  // told already; quiet until a save succeeds
};

#include "storage/file_holds.h"

#include <cstdio>

#include "platform/binary_file.h"
#include "storage/notice_queue.h"

namespace {

bool held[2] = {false, false};
bool failing[2] = {false, false};  // told already; quiet until a save succeeds

void TellOnce(StoredFile file, const char* format, const char* path) {
  if (failing[file]) return;
  failing[file] = true;
  char text[768];
  std::snprintf(text, sizeof text, format, path, LastFileError().c_str());
  QueueNotice(NoticeKind::kFileProblem, text);
}

}  // namespace

void HoldFile(StoredFile file, bool hold) { held[file] = hold; }
bool FileHeld(StoredFile file) { return held[file]; }

void ReportUnreadable(StoredFile file, const char* path) {
  HoldFile(file, true);
  TellOnce(file, kFileUnreadableFormat, path);
}

bool NoteSaveResult(StoredFile file, const char* path, bool saved) {
  if (saved) {
    failing[file] = false;
  } else {
    TellOnce(file, kFileNotSavedFormat, path);
  }
  return saved;
}

void ResetFileHolds() {
  for (int file = 0; file < 2; ++file) held[file] = failing[file] = false;
}

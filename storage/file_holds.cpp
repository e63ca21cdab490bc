#include "storage/file_holds.h"

#include <cstdio>
#include <string>

#include "platform/binary_file.h"
#include "storage/notice_queue.h"

namespace {

bool held[2] = {false, false};
bool failing[2] = {false, false};  // told already; quiet until a save succeeds
// What the last successful save wrote; empty path: nothing saved in this run.
struct LastSave {
  std::string path;
  std::string content;
};
LastSave lastSave[2];

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

bool NoteSaveResult(StoredFile file, const char* path, bool saved, const std::string& content) {
  if (saved) {
    failing[file] = false;
    lastSave[file] = LastSave{path, content};
  } else {
    lastSave[file] = LastSave{};
    TellOnce(file, kFileNotSavedFormat, path);
  }
  return saved;
}

bool SavedAlready(StoredFile file, const char* path, const std::string& content) {
  return !lastSave[file].path.empty() && lastSave[file].path == path && lastSave[file].content == content;
}

void ResetFileHolds() {
  for (int file = 0; file < 2; ++file) {
    held[file] = failing[file] = false;
    lastSave[file] = LastSave{};
  }
}

#include "storage/file_holds.h"

#include <cstdio>

#include "platform/binary_file.h"

void FileHolds::TellOnce(StoredFile file, const char* format, const char* path, NoticeQueue& notices) {
  if (failing_[file]) return;
  failing_[file] = true;
  char text[768];
  std::snprintf(text, sizeof text, format, path, LastFileError().c_str());
  notices.Queue(NoticeKind::kFileProblem, text);
}

void FileHolds::ReportUnreadable(StoredFile file, const char* path, NoticeQueue& notices) {
  Hold(file, true);
  TellOnce(file, kFileUnreadableFormat, path, notices);
}

bool FileHolds::NoteSaveResult(StoredFile file, const char* path, bool saved, NoticeQueue& notices) {
  if (saved) {
    failing_[file] = false;
  } else {
    TellOnce(file, kFileNotSavedFormat, path, notices);
  }
  return saved;
}

void FileHolds::Reset() {
  for (int file = 0; file < 2; ++file) held_[file] = failing_[file] = false;
}

#include "storage/binary_file.h"

std::FILE* OpenOrCreateForUpdate(const char* path) {
  std::FILE* file = std::fopen(path, "r+b");
  // Only a missing file gets "w+b": it truncates, which is harmless for a new file.
  if (file == nullptr && !FileExists(path)) file = std::fopen(path, "w+b");
  return file;
}

bool FileExists(const char* path) {
  std::FILE* file = std::fopen(path, "rb");
  if (file == nullptr) return false;
  std::fclose(file);
  return true;
}

bool ReadFileStart(const char* path, void* buffer, std::size_t size, std::size_t* bytesRead) {
  *bytesRead = 0;
  std::FILE* file = OpenOrCreateForUpdate(path);
  if (file == nullptr) return false;
  *bytesRead = std::fread(buffer, 1, size, file);
  const bool failed = std::ferror(file) != 0;
  std::fclose(file);
  return !failed;
}

bool WriteFileStart(const char* path, const WriteBlock* blocks, std::size_t blockCount) {
  std::FILE* file = OpenOrCreateForUpdate(path);
  if (file == nullptr) return false;
  bool written = std::fseek(file, 0, SEEK_SET) == 0;
  for (std::size_t i = 0; written && i < blockCount; ++i) {
    if (blocks[i].size != 0) written = std::fwrite(blocks[i].data, 1, blocks[i].size, file) == blocks[i].size;
  }
  // Closing flushes: a full disk shows up here.
  return std::fclose(file) == 0 && written;
}

#include "storage/binary_file.h"

#include <algorithm>
#include <memory>
#include <new>

WriteCutoff fileWriteCutoff = nullptr;

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
  std::size_t total = 0;
  for (std::size_t i = 0; i < blockCount; ++i) total += blocks[i].size;
  std::size_t allowed = total;
  if (fileWriteCutoff != nullptr) allowed = std::min(total, fileWriteCutoff(path, total));

  std::FILE* file = OpenOrCreateForUpdate(path);
  if (file == nullptr) return false;
  // The C library's default 4096-byte buffer splits a 6352-byte configuration into
  // two system writes, and a kill between them leaves the new marker with the old
  // checkpoint. A buffer that holds the whole content makes it one write at the
  // flush. (Rounded up: some libraries round a buffer size down.)
  // The buffer is ours: with none given, some libraries keep their default size.
  std::unique_ptr<char[]> buffer;
  if (total > 0 && total <= kSingleWriteLimit) {
    const std::size_t size = (total + 15) & ~static_cast<std::size_t>(15);
    buffer.reset(new (std::nothrow) char[size]);
    if (buffer) std::setvbuf(file, buffer.get(), _IOFBF, size);
  }
  bool written = std::fseek(file, 0, SEEK_SET) == 0;
  std::size_t left = allowed;
  for (std::size_t i = 0; written && i < blockCount && left > 0; ++i) {
    const std::size_t size = std::min(blocks[i].size, left);
    if (size != 0) written = std::fwrite(blocks[i].data, 1, size, file) == size;
    left -= size;
  }
  // Closing flushes: a full disk shows up here.
  return std::fclose(file) == 0 && written && allowed == total;
}

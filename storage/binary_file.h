// Whole-block file access shared by the log and the configuration: each call
// opens, reads or writes from offset 0, and closes again, so no handle stays open.
#pragma once
#include <cstddef>
#include <cstdio>

// Opens an existing file for reading and writing, or creates it when missing.
// Writing through it never truncates: an older, longer file keeps its tail.
std::FILE* OpenOrCreateForUpdate(const char* path);

// True when the file exists and can be opened for reading.
bool FileExists(const char* path);

// Reads up to size bytes from the start of a file (created empty when missing).
// False when it cannot be opened or the read fails; bytesRead tells how many came.
bool ReadFileStart(const char* path, void* buffer, std::size_t size, std::size_t* bytesRead);

// Writes the blocks, one after the other, from offset 0 without truncating.
struct WriteBlock {
  const void* data;
  std::size_t size;
};
bool WriteFileStart(const char* path, const WriteBlock* blocks, std::size_t blockCount);

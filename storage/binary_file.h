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
// Up to kSingleWriteLimit bytes in all reach the system as one write call, so a
// process killed while saving leaves either the old file or the new one, never
// the head of one on the tail of the other.
struct WriteBlock {
  const void* data;
  std::size_t size;
};
bool WriteFileStart(const char* path, const WriteBlock* blocks, std::size_t blockCount);

constexpr std::size_t kSingleWriteLimit = 64u * 1024u * 1024u;

// Crash tests only: given a write's path and size, answers how many of its
// leading bytes reach the file (a kill or power cut at that point); the write
// then reports failure. Empty (the program's case): every byte is written.
using WriteCutoff = std::size_t (*)(const char* path, std::size_t size);
extern WriteCutoff fileWriteCutoff;

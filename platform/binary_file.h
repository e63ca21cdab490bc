// Whole-block file access shared by the log and the configuration: each call
// opens, reads or writes, and closes again, so no handle stays open.
#pragma once
#include <cstddef>
#include <cstdio>
#include <string>

#include "platform/platform_state.h"

// True when something of that name is on disk, file or folder, readable or not.
bool IsOnDisk(const char* path);

// The file or a complete copy a save left beside it ("<name>.new", "<name>.prev"):
// what a load reads.
bool StoredFileExists(const char* path);

// True when the file exists and can be opened for reading.
bool FileExists(const char* path);

// The C library's calls, or the disk platformState.fileCalls puts in.
std::FILE* OpenFile(const char* path, const char* mode);
int RemoveFile(const char* path);
int RenameFile(const char* from, const char* to);

// Opens the newest complete copy of a file for reading only ("rb", which shares
// reading and writing with other programs): a read-only file, or one another
// program holds open, still loads. nullptr when it cannot be opened.
std::FILE* OpenForReading(const char* path);

// Reads up to size bytes from the start of a file. False when it is missing,
// cannot be opened, or the read fails; bytesRead tells how many came.
bool ReadFileStart(const char* path, void* buffer, std::size_t size, std::size_t* bytesRead);

// A save never writes the file in place; it takes two steps, so a power cut or a
// kill at any point leaves the old file or a complete "<name>.new" that
// FinishInterruptedSave puts in place.
struct WriteBlock {
  const void* data;
  std::size_t size;
};
// Step one: the blocks, one after the other, into "<name>.tmp", flushed to the
// disk. With keepTail, bytes of the old file past the new content are kept, as a
// write in place would have left them. On failure nothing of it stays.
bool WriteSiblingFile(const char* path, const WriteBlock* blocks, std::size_t blockCount, bool keepTail);
// Step two: "<name>.tmp" becomes "<name>.new", the old file is deleted and
// "<name>.new" takes its name (Windows 95 has no MoveFileEx to replace in one
// step). An earlier "<name>.new" (left while the old file was held) is renamed
// "<name>.prev" before the new one takes its name and deleted after. While the old
// file cannot be deleted, "<name>.new" stays and is what the loads read.
bool PutSiblingInPlace(const char* path);
// Both steps.
bool SaveWholeFile(const char* path, const WriteBlock* blocks, std::size_t blockCount, bool keepTail);

// At start-up, before the file is looked at: deletes an unfinished "<name>.tmp",
// keeps the newer of "<name>.new" and "<name>.prev" as "<name>.new" and puts it in
// the file's place. When the old file cannot be deleted (another program holds it),
// "<name>.new" stays and OpenForReading reads it.
void FinishInterruptedSave(const char* path);

// Whether the file can be created or replaced: its "<name>.tmp" can be made.
bool CanCreate(const char* path);

// The system's text for the last failed file call ("Permission denied", ...).
std::string LastFileError();
// Notes the system's reason for a failure just seen, before clean-up calls change
// it; always false.
bool FileCallFailed();

constexpr std::size_t kSingleWriteLimit = 64u * 1024u * 1024u;

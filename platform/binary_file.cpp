#include "platform/binary_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

std::string Sibling(const char* path, const char* suffix) { return std::string(path) + suffix; }

const FileCalls& Calls() { return platformState.fileCalls; }

// Pushes the file's data to the disk before its old copy is deleted, so a power
// cut after the deletion still finds the new copy whole.
bool Commit(std::FILE* file) {
  if (Calls().commit) return Calls().commit(file);
  if (std::fflush(file) != 0) return false;
#ifdef _WIN32
  return _commit(_fileno(file)) == 0;
#else
  return fsync(fileno(file)) == 0;
#endif
}

// The bytes of the file on disk past the first `from`: kept behind the new content.
std::vector<char> TailPast(const char* path, std::size_t from) {
  std::vector<char> tail;
  std::FILE* file = OpenForReading(path);
  if (file == nullptr) return tail;
  if (std::fseek(file, 0, SEEK_END) == 0) {
    const long end = std::ftell(file);
    if (end > 0 && static_cast<std::size_t>(end) > from && std::fseek(file, static_cast<long>(from), SEEK_SET) == 0) {
      tail.resize(static_cast<std::size_t>(end) - from);
      tail.resize(std::fread(tail.data(), 1, tail.size(), file));
    }
  }
  std::fclose(file);
  return tail;
}

}  // namespace

std::FILE* OpenFile(const char* path, const char* mode) {
  return Calls().open ? Calls().open(path, mode) : std::fopen(path, mode);
}

int RemoveFile(const char* path) { return Calls().remove ? Calls().remove(path) : std::remove(path); }

int RenameFile(const char* from, const char* to) {
  return Calls().rename ? Calls().rename(from, to) : std::rename(from, to);
}

bool FileCallFailed() {
  platformState.lastError = errno;
  return false;
}

bool IsOnDisk(const char* path) {
  if (Calls().exists) return Calls().exists(path);
#ifdef _WIN32
  return FileExists(path) || _access(path, 0) == 0;
#else
  return FileExists(path) || access(path, F_OK) == 0;
#endif
}

bool StoredFileExists(const char* path) {
  return IsOnDisk(path) || IsOnDisk(Sibling(path, ".new").c_str()) || IsOnDisk(Sibling(path, ".prev").c_str());
}

bool FileExists(const char* path) {
  std::FILE* file = OpenFile(path, "rb");
  if (file == nullptr) return false;
  std::fclose(file);
  return true;
}

std::FILE* OpenForReading(const char* path) {
  // The newest complete copy: ".new", else a ".prev" a save set aside and could
  // not put back, else the file. One that cannot be opened is still the newest:
  // an older copy must not be read instead.
  std::string newest = Sibling(path, ".new");
  if (!IsOnDisk(newest.c_str())) newest = Sibling(path, ".prev");
  if (!IsOnDisk(newest.c_str())) newest = path;
  std::FILE* file = OpenFile(newest.c_str(), "rb");
  if (file == nullptr) FileCallFailed();
  return file;
}

bool ReadFileStart(const char* path, void* buffer, std::size_t size, std::size_t* bytesRead) {
  *bytesRead = 0;
  std::FILE* file = OpenForReading(path);
  if (file == nullptr) return false;
  *bytesRead = std::fread(buffer, 1, size, file);
  const bool failed = std::ferror(file) != 0 && !FileCallFailed();
  std::fclose(file);
  return !failed;
}

bool WriteSiblingFile(const char* path, const WriteBlock* blocks, std::size_t blockCount, bool keepTail) {
  std::size_t total = 0;
  for (std::size_t i = 0; i < blockCount; ++i) total += blocks[i].size;
  const std::vector<char> tail = keepTail ? TailPast(path, total) : std::vector<char>();

  const std::string temporary = Sibling(path, ".tmp");
  std::FILE* file = OpenFile(temporary.c_str(), "wb");
  if (file == nullptr) return FileCallFailed();
  // A buffer that holds the whole content makes it one system write at the flush.
  // (Rounded up: some libraries round a buffer size down. The buffer is ours: with
  // none given, some libraries keep their default size.)
  std::unique_ptr<char[]> buffer;
  const std::size_t whole = total + tail.size();
  if (whole > 0 && whole <= kSingleWriteLimit) {
    const std::size_t size = (whole + 15) & ~static_cast<std::size_t>(15);
    buffer.reset(new (std::nothrow) char[size]);
    if (buffer) std::setvbuf(file, buffer.get(), _IOFBF, size);
  }
  bool written = true;
  for (std::size_t i = 0; written && i < blockCount; ++i) {
    if (blocks[i].size != 0) written = std::fwrite(blocks[i].data, 1, blocks[i].size, file) == blocks[i].size;
  }
  if (written && !tail.empty()) written = std::fwrite(tail.data(), 1, tail.size(), file) == tail.size();
  // A full disk shows up at the flush or the close.
  written = Commit(file) && written;
  written = std::fclose(file) == 0 && written;
  if (written) return true;
  FileCallFailed();
  RemoveFile(temporary.c_str());
  return false;
}

bool PutSiblingInPlace(const char* path) {
  const std::string temporary = Sibling(path, ".tmp");
  const std::string fresh = Sibling(path, ".new");
  // A "<name>.new" an earlier save could not put in place (another program holds
  // the file) is the newest complete content until this one has that name, so it
  // is renamed "<name>.prev", never deleted first: a start then finds one of the
  // two (FinishInterruptedSave).
  const std::string previous = Sibling(path, ".prev");
  const bool setAside = IsOnDisk(fresh.c_str());
  if (setAside) {
    RemoveFile(previous.c_str());  // older than ".new"
    if (RenameFile(fresh.c_str(), previous.c_str()) != 0) {
      FileCallFailed();
      RemoveFile(temporary.c_str());
      return false;
    }
  }
  if (RenameFile(temporary.c_str(), fresh.c_str()) != 0) {
    FileCallFailed();
    RemoveFile(temporary.c_str());
    if (setAside) RenameFile(previous.c_str(), fresh.c_str());  // the earlier copy back
    return false;
  }
  // From here on the new content is what a start finds. Any ".prev" is older,
  // also one an earlier save or start could not clear: left beside no ".new" it
  // would be taken for the newest content at the next start, so while it cannot
  // go, ".new" stays and the start sorts the two out.
  if (IsOnDisk(previous.c_str()) && RemoveFile(previous.c_str()) != 0) return FileCallFailed();
  if (IsOnDisk(path) && RemoveFile(path) != 0) return FileCallFailed();  // held: ".new" stays
  return RenameFile(fresh.c_str(), path) == 0 || FileCallFailed();
}

bool SaveWholeFile(const char* path, const WriteBlock* blocks, std::size_t blockCount, bool keepTail) {
  return WriteSiblingFile(path, blocks, blockCount, keepTail) && PutSiblingInPlace(path);
}

void FinishInterruptedSave(const char* path) {
  RemoveFile(Sibling(path, ".tmp").c_str());
  const std::string fresh = Sibling(path, ".new");
  const std::string previous = Sibling(path, ".prev");
  // With a readable "<name>.new" there, "<name>.prev" is older; without one, a save
  // was killed after setting its predecessor aside, and that one is the newest
  // complete copy (a folder or a held file of that name is no newer copy).
  if (FileExists(fresh.c_str())) {
    // Put in place only once ".prev" is gone, or it would outlive the newer file.
    if (IsOnDisk(previous.c_str()) && RemoveFile(previous.c_str()) != 0) return;
  } else if (IsOnDisk(previous.c_str()) && RenameFile(previous.c_str(), fresh.c_str()) != 0) {
    return;
  }
  if (!FileExists(fresh.c_str())) return;
  if (!IsOnDisk(path) || RemoveFile(path) == 0) RenameFile(fresh.c_str(), path);
}

bool CanCreate(const char* path) {
  const std::string temporary = Sibling(path, ".tmp");
  std::FILE* file = OpenFile(temporary.c_str(), "wb");
  if (file == nullptr) return false;
  std::fclose(file);
  RemoveFile(temporary.c_str());
  return true;
}

std::string LastFileError() { return std::strerror(platformState.lastError); }

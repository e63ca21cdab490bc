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

// How much of a step happens: all of it unless a crash test cuts it.
std::size_t Allowed(const char* path, SaveStep step, std::size_t size) {
  const WriteCutoff cutoff = platformState.fileWriteCutoff;
  return cutoff != nullptr ? std::min(size, cutoff(path, step, size)) : size;
}

bool Happens(const char* path, SaveStep step) { return Allowed(path, step, 1) == 1; }

// Pushes the file's data to the disk before its old copy is deleted, so a power
// cut after the deletion still finds the new copy whole.
bool Commit(std::FILE* file) {
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

bool FileCallFailed() {
  platformState.lastError = errno;
  return false;
}

bool IsOnDisk(const char* path) {
#ifdef _WIN32
  return FileExists(path) || _access(path, 0) == 0;
#else
  return FileExists(path) || access(path, F_OK) == 0;
#endif
}

bool FileExists(const char* path) {
  std::FILE* file = std::fopen(path, "rb");
  if (file == nullptr) return false;
  std::fclose(file);
  return true;
}

std::FILE* OpenForReading(const char* path) {
  const std::string fresh = Sibling(path, ".new");
  std::FILE* file = std::fopen(fresh.c_str(), "rb");
  if (file == nullptr) file = std::fopen(path, "rb");
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

bool WriteFileStart(const char* path, const WriteBlock* blocks, std::size_t blockCount, bool keepTail) {
  std::size_t total = 0;
  for (std::size_t i = 0; i < blockCount; ++i) total += blocks[i].size;
  const std::vector<char> tail = keepTail ? TailPast(path, total) : std::vector<char>();
  const std::size_t allowed = Allowed(path, SaveStep::Content, total);

  const std::string temporary = Sibling(path, ".tmp");
  const std::string fresh = Sibling(path, ".new");
  std::FILE* file = std::fopen(temporary.c_str(), "wb");
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
  std::size_t left = allowed;
  for (std::size_t i = 0; written && i < blockCount && left > 0; ++i) {
    const std::size_t size = std::min(blocks[i].size, left);
    if (size != 0) written = std::fwrite(blocks[i].data, 1, size, file) == size;
    left -= size;
  }
  if (written && allowed == total && !tail.empty()) {
    written = std::fwrite(tail.data(), 1, tail.size(), file) == tail.size();
  }
  // A full disk shows up at the flush or the close.
  // The crash tests model what reaches the disk themselves: no need to wait for it.
  written = (platformState.fileWriteCutoff != nullptr || Commit(file)) && written;
  written = std::fclose(file) == 0 && written;
  if (allowed < total) return false;  // the process died while writing
  if (!written) {
    FileCallFailed();
    std::remove(temporary.c_str());
    return false;
  }

  // Complete and on the disk. A "<name>.new" an earlier save could not put in place
  // (another program holds the file) is the newest complete content until this one
  // has that name, so it is renamed "<name>.prev", never deleted first: a start then
  // finds one of the two (FinishInterruptedSave).
  const std::string previous = Sibling(path, ".prev");
  const bool setAside = IsOnDisk(fresh.c_str());
  if (setAside) {
    if (!Happens(path, SaveStep::SetAside)) return false;
    std::remove(previous.c_str());  // older than ".new"
    if (std::rename(fresh.c_str(), previous.c_str()) != 0) {
      FileCallFailed();
      std::remove(temporary.c_str());
      return false;
    }
  }
  if (!Happens(path, SaveStep::Commit)) return false;
  if (std::rename(temporary.c_str(), fresh.c_str()) != 0) {
    FileCallFailed();
    std::remove(temporary.c_str());
    if (setAside) std::rename(previous.c_str(), fresh.c_str());  // the earlier copy back
    return false;
  }
  // From here on the new content is what a start finds.
  if (!Happens(path, SaveStep::RemoveOld)) return false;
  // A ".prev" left beside no ".new" would be taken for the newest content at the
  // next start: while it cannot go, ".new" stays and the start sorts the two out.
  if (setAside && std::remove(previous.c_str()) != 0) return FileCallFailed();
  if (IsOnDisk(path) && std::remove(path) != 0) return FileCallFailed();  // held: ".new" stays
  if (!Happens(path, SaveStep::Rename)) return false;
  return std::rename(fresh.c_str(), path) == 0 || FileCallFailed();
}

void FinishInterruptedSave(const char* path) {
  std::remove(Sibling(path, ".tmp").c_str());
  const std::string fresh = Sibling(path, ".new");
  const std::string previous = Sibling(path, ".prev");
  // With "<name>.new" there, "<name>.prev" is older; without it, a save was killed
  // after setting its predecessor aside, and that one is the newest complete copy.
  if (IsOnDisk(fresh.c_str())) {
    // Put in place only once ".prev" is gone, or it would outlive the newer file.
    if (IsOnDisk(previous.c_str()) && std::remove(previous.c_str()) != 0) return;
  } else {
    std::rename(previous.c_str(), fresh.c_str());
  }
  if (!FileExists(fresh.c_str())) return;
  if (!IsOnDisk(path) || std::remove(path) == 0) std::rename(fresh.c_str(), path);
}

bool CanCreate(const char* path) {
  const std::string temporary = Sibling(path, ".tmp");
  std::FILE* file = std::fopen(temporary.c_str(), "wb");
  if (file == nullptr) return false;
  std::fclose(file);
  std::remove(temporary.c_str());
  return true;
}

std::string LastFileError() { return std::strerror(platformState.lastError); }

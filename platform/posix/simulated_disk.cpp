#include "platform/posix/simulated_disk.h"

#ifdef __GLIBC__
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "platform/platform_state.h"

namespace {

SimulatedDisk* disk = nullptr;  // the one in use; the C callbacks reach it here

struct Cookie {
  std::string path;
  std::size_t position = 0;
};

int Fail(int error) {
  errno = error;
  return -1;
}

bool EndsWith(const std::string& text, const char* tail) {
  const std::size_t length = std::strlen(tail);
  return text.size() > length && text.compare(text.size() - length, length, tail) == 0;
}

ssize_t Read(void* cookie, char* buffer, std::size_t size) {
  Cookie* c = static_cast<Cookie*>(cookie);
  const SimulatedFile* file = disk->Find(c->path);
  if (disk->Next(false) != SimulatedDisk::kHappens || file == nullptr) return Fail(EIO);
  const std::size_t n = c->position < file->data.size() ? std::min(size, file->data.size() - c->position) : 0;
  std::memcpy(buffer, file->data.data() + c->position, n);
  c->position += n;
  return static_cast<ssize_t>(n);
}

ssize_t Write(void* cookie, const char* buffer, std::size_t size) {
  Cookie* c = static_cast<Cookie*>(cookie);
  SimulatedFile* file = disk->Find(c->path);
  const SimulatedDisk::Fate fate = disk->Next(true);
  if (fate == SimulatedDisk::kTears && file != nullptr) {
    file->data.append(buffer, std::min<std::size_t>(size, disk->tornAt));
    disk->dead = true;  // the power is gone
  }
  if (fate != SimulatedDisk::kHappens || file == nullptr) return Fail(EIO), 0;
  if (disk->full) return Fail(ENOSPC), 0;
  if (file->data.size() < c->position) file->data.resize(c->position);
  file->data.replace(c->position, size, buffer, size);
  c->position += size;
  return static_cast<ssize_t>(size);
}

int Seek(void* cookie, off64_t* offset, int whence) {
  Cookie* c = static_cast<Cookie*>(cookie);
  const SimulatedFile* file = disk->Find(c->path);
  const off64_t end = file != nullptr ? static_cast<off64_t>(file->data.size()) : 0;
  const off64_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? static_cast<off64_t>(c->position) : end;
  if (base + *offset < 0) return Fail(EINVAL);
  c->position = static_cast<std::size_t>(*offset = base + *offset);
  return 0;
}

int Close(void* cookie) {
  delete static_cast<Cookie*>(cookie);
  return 0;
}

std::FILE* Open(const char* path, const char* mode) {
  if (disk->Next(false) != SimulatedDisk::kHappens) return errno = EIO, nullptr;
  const bool write = mode[0] == 'w';
  const SimulatedFile* file = disk->Find(path);
  if (file != nullptr && (file->folder || file->held == 2 || (write && file->held != 0))) return errno = EACCES, nullptr;
  if (file == nullptr && !write) return errno = ENOENT, nullptr;
  if (write) disk->files[path] = SimulatedFile{};
  static const cookie_io_functions_t calls = {Read, Write, Seek, Close};
  return fopencookie(new Cookie{path}, mode, calls);
}

int Remove(const char* path) {
  if (disk->Next(false) != SimulatedDisk::kHappens) return Fail(EIO);
  const SimulatedFile* file = disk->Find(path);
  if (file == nullptr) return Fail(ENOENT);
  if (file->folder || file->held != 0) return Fail(EACCES);
  disk->files.erase(path);
  return 0;
}

// As on Windows: a held file or a folder is not renamed, nor over an existing name.
int Rename(const char* from, const char* to) {
  if (disk->Next(false) != SimulatedDisk::kHappens) return Fail(EIO);
  const SimulatedFile* file = disk->Find(from);
  if (file == nullptr) return Fail(ENOENT);
  if (file->folder || file->held != 0) return Fail(EACCES);
  if (disk->Find(to) != nullptr) return Fail(EEXIST);
  const std::string source = from, target = to;
  disk->files[target] = *file;
  disk->files.erase(source);
  if (EndsWith(source, ".tmp") && EndsWith(target, ".new") && disk->committed) {
    disk->committed(target.substr(0, target.size() - 4), disk->files[target].data);
  }
  if (source == target + ".new" && disk->placed) disk->placed(target);
  return 0;
}

bool Exists(const char* path) { return disk->Find(path) != nullptr; }

bool Commit(std::FILE* file) {
  if (disk->Next(false) != SimulatedDisk::kHappens) return errno = EIO, false;
  return std::fflush(file) == 0;
}

}  // namespace

void SimulatedDisk::Arm(char fault, uint64_t after, uint64_t torn) {
  armed_ = fault;
  armedAt_ = calls + after;
  tornAt = torn;
}

bool SimulatedDisk::Hold(const std::string& path, bool readSharing) {
  SimulatedFile* file = Find(path);
  if (file == nullptr || file->folder) return false;
  file->held = readSharing ? 1 : 2;
  return true;
}

bool SimulatedDisk::PutFolder(const std::string& path) {
  if (Find(path) != nullptr) return false;
  files[path].folder = true;
  return true;
}

void SimulatedDisk::ReleaseHolds() {
  for (auto& entry : files) entry.second.held = 0;
}

void SimulatedDisk::RemoveFolders() {
  for (auto it = files.begin(); it != files.end();) it = it->second.folder ? files.erase(it) : std::next(it);
}

void SimulatedDisk::Heal() {
  ReleaseHolds();
  RemoveFolders();
  full = false;
  armed_ = 0;
}

SimulatedFile* SimulatedDisk::Find(const std::string& path) {
  const auto it = files.find(path);
  return it == files.end() ? nullptr : &it->second;
}

void SimulatedDisk::Use() {
  disk = this;
  platformState.fileCalls = FileCalls{Open, Remove, Rename, Exists, Commit};
}

SimulatedDisk::Fate SimulatedDisk::Next(bool write) {
  if (dead) return kDies;
  if (++calls != armedAt_ || armed_ == 0) return kHappens;
  const char fault = armed_;
  armed_ = 0;
  ++faults;
  if (fault == 'F') return kFails;
  ++kills;
  if (fault == 'T' && write) return kTears;
  dead = true;
  return kDies;
}
#endif

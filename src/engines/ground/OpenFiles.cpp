#include "engines/ground/OpenFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>
#include <utility>

namespace trackloom::engines {

namespace {

constexpr mode_t fileMode = 0666;
constexpr mode_t folderMode = 0777;

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};
using FolderStream = std::unique_ptr<DIR, CloseFolder>;

FolderStream openStream(const FileDescriptor& folder) {
  const int descriptor = openat(folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor == -1) throwSystemError("cannot list a folder");
  DIR* stream = fdopendir(descriptor);
  if (stream == nullptr) {
    const FileDescriptor closer(descriptor);
    throwSystemError("cannot list a folder");
  }
  return FolderStream(stream);
}

std::string asideName(const std::string& name) {
  return name + ".new";
}

void writeAside(const FileDescriptor& folder, const std::string& name, const std::string& text) {
  const FileDescriptor file = makeNewFile(folder, name);
  if (writeAt(file, std::as_bytes(std::span(text)), 0) != text.size()) throwSystemError("cannot write " + name);
  if (fsync(file.get()) != 0) throwSystemError("cannot write " + name);
}

}  // namespace

void throwSystemError(const std::string& words) {
  throw std::system_error(errno, std::generic_category(), words);
}

FileDescriptor openFolder(const std::string& path) {
  FileDescriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.get() < 0) throwSystemError("cannot open the folder " + path);
  return folder;
}

FileDescriptor openFolder(const FileDescriptor& parent, const std::string& name) {
  FileDescriptor folder(openat(parent.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (folder.get() < 0) throwSystemError("cannot open the folder " + name);
  return folder;
}

FileDescriptor makeFolder(const FileDescriptor& parent, const std::string& name) {
  if (mkdirat(parent.get(), name.c_str(), folderMode) != 0 && errno != EEXIST)
    throwSystemError("cannot make the folder " + name);
  return openFolder(parent, name);
}

FileDescriptor openFile(const FileDescriptor& folder, const std::string& name, int flags) {
  FileDescriptor file(openat(folder.get(), name.c_str(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, fileMode));
  struct stat status {};
  if (file.get() < 0 || fstat(file.get(), &status) != 0) throwSystemError("cannot open " + name);
  if (!S_ISREG(status.st_mode)) {
    errno = EINVAL;
    throwSystemError(name + " is not a file");
  }
  return file;
}

std::vector<std::string> entryNames(const FileDescriptor& folder) {
  const FolderStream stream = openStream(folder);
  std::vector<std::string> names;
  while (const dirent* entry = readdir(stream.get())) {
    const std::string name(static_cast<const char*>(entry->d_name));
    if (name != "." && name != "..") names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

bool isFolder(const FileDescriptor& parent, const std::string& name) {
  struct stat status {};
  return fstatat(parent.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
}

std::vector<std::string> folderNames(const FileDescriptor& folder) {
  std::vector<std::string> names = entryNames(folder);
  std::erase_if(names, [&](const std::string& name) { return name.front() == '.' || !isFolder(folder, name); });
  return names;
}

bool entryExists(const FileDescriptor& folder, const std::string& name) {
  return faccessat(folder.get(), name.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
}

std::optional<std::int64_t> fileSize(const FileDescriptor& folder, const std::string& name) {
  struct stat status {};
  if (fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    if (errno == ENOENT) return std::nullopt;
    throwSystemError("cannot look at " + name);
  }
  if (!S_ISREG(status.st_mode)) {
    errno = EINVAL;
    throwSystemError(name + " is not a file");
  }
  return status.st_size;
}

std::string readSmallFile(const FileDescriptor& folder, const std::string& name, std::size_t limit) {
  const FileDescriptor file = openFile(folder, name, O_RDONLY);
  std::string text;
  std::array<char, 4096> buffer{};
  for (;;) {
    const ssize_t count = uninterrupted([&] { return read(file.get(), buffer.data(), buffer.size()); });
    if (count == -1) throwSystemError("cannot read " + name);
    if (count == 0) return text;
    text.append(buffer.data(), static_cast<std::size_t>(count));
    if (text.size() > limit) {
      errno = EFBIG;
      throwSystemError("cannot read " + name);
    }
  }
}

FileDescriptor makeNewFile(const FileDescriptor& folder, const std::string& name) {
  if (unlinkat(folder.get(), name.c_str(), 0) != 0 && errno != ENOENT) throwSystemError("cannot replace " + name);
  return openFile(folder, name, O_RDWR | O_CREAT | O_EXCL);
}

std::size_t writeAt(const FileDescriptor& file, std::span<const std::byte> bytes, std::int64_t position) {
  std::size_t done = 0;
  while (done != bytes.size()) {
    const auto place = position + static_cast<std::int64_t>(done);
    const ssize_t count =
        uninterrupted([&] { return pwrite(file.get(), bytes.data() + done, bytes.size() - done, place); });
    if (count == 0) errno = ENOSPC;
    if (count <= 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

std::size_t readAt(const FileDescriptor& file, std::span<std::byte> bytes, std::int64_t position) {
  std::size_t done = 0;
  while (done != bytes.size()) {
    const auto place = position + static_cast<std::int64_t>(done);
    const ssize_t count =
        uninterrupted([&] { return pread(file.get(), bytes.data() + done, bytes.size() - done, place); });
    if (count == 0) errno = 0;
    if (count <= 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

Replacement::Replacement(const FileDescriptor& folder, std::string name, const std::string& text)
    : folder_(folder), name_(std::move(name)) {
  try {
    writeAside(folder, asideName(name_), text);
  } catch (const std::system_error&) {
    unlinkat(folder.get(), asideName(name_).c_str(), 0);
    throw;
  }
}

Replacement::~Replacement() {
  // Once it is in place there is none of that name.
  unlinkat(folder_.get(), asideName(name_).c_str(), 0);
}

void Replacement::putInPlace() {
  if (renameat(folder_.get(), asideName(name_).c_str(), folder_.get(), name_.c_str()) != 0)
    throwSystemError("cannot replace " + name_);
  // Not every file system can bring a folder to the medium; the rename itself stands either way.
  fsync(folder_.get());
}

void replaceFile(const FileDescriptor& folder, const std::string& name, const std::string& text) {
  Replacement(folder, name, text).putInPlace();
}

bool moveEntry(const FileDescriptor& from, const std::string& name, const FileDescriptor& to,
               const std::string& newName) {
  if (renameat2(from.get(), name.c_str(), to.get(), newName.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno == EEXIST) return false;
  // Some network file systems do not know the flag, so the look and the move are two steps there.
  if (errno == EINVAL || errno == ENOSYS) {
    if (entryExists(to, newName)) return false;
    if (renameat(from.get(), name.c_str(), to.get(), newName.c_str()) == 0) return true;
  }
  throwSystemError("cannot move " + name);
}

}  // namespace trackloom::engines

#include "runtime/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <utility>

#include "runtime/FileDescriptor.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

namespace fs = std::filesystem;

/// Never waits, as a pipe in the place of a file would have it.
FileDescriptor opened(const std::string& path, int flags) {
  FileDescriptor file(::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, 0666));
  if (file) return file;
  // A file that would have been made is not the one that is missing.
  if (errno == ENOENT && (flags & O_CREAT) != 0) throw RuntimeError(RuntimeError::PathNotFound);
  throw RuntimeError::fromErrno(errno);
}

void closeWritten(FileDescriptor& file) {
  if (!file.close()) throw RuntimeError::fromErrno(errno);
}

void writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throw RuntimeError::fromErrno(errno);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

bool entryExists(const std::string& path) {
  struct stat entry {};
  return ::lstat(path.c_str(), &entry) == 0;
}

std::string linkTarget(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr), &std::free);
  return resolved ? std::string(resolved.get()) : path;
}

bool endsIn(std::string_view name, std::string_view upperExtension) {
  return name.size() >= upperExtension.size() &&
         UCase(name.substr(name.size() - upperExtension.size())) == upperExtension;
}

}  // namespace

bool FileExists(const HostPath& path) {
  std::error_code error;
  return fs::is_regular_file(path.text, error);
}

bool FolderExists(const HostPath& path) {
  std::error_code error;
  return fs::is_directory(path.text, error);
}

std::int64_t FileLength(const HostPath& path) {
  struct stat entry {};
  if (::stat(path.text.c_str(), &entry) != 0) throw RuntimeError::fromErrno(errno);
  return entry.st_size;
}

std::vector<std::string> ListFiles(const HostPath& folder, std::string_view extension) {
  const std::string wanted = UCase(extension);
  std::vector<std::pair<std::string, std::string>> found;
  std::error_code error;
  for (fs::directory_iterator entry(folder.text, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code skipped;
    std::string name = entry->path().filename().string();
    if (endsIn(name, wanted) && entry->is_regular_file(skipped)) found.emplace_back(UCase(name), name);
  }
  if (error) throw RuntimeError::fromErrno(error.value());
  std::sort(found.begin(), found.end());
  std::vector<std::string> names;
  names.reserve(found.size());
  for (auto& entry : found) names.push_back(std::move(entry.second));
  return names;
}

HostPath HomeFolder() {
  const char* home = std::getenv("HOME");
  return HostPath(home != nullptr && *home == HostSep ? home : "/");
}

void MakeFolder(const HostPath& path) {
  if (::mkdir(path.text.c_str(), 0777) != 0) throw RuntimeError::fromErrno(errno);
}

void TouchFile(const HostPath& path) {
  FileDescriptor file = opened(path.text, O_WRONLY | O_CREAT | O_TRUNC);
  closeWritten(file);
}

std::string ReadStart(const HostPath& path, std::size_t length) {
  const FileDescriptor file = opened(path.text, O_RDONLY);
  std::array<char, 4096> buffer;
  std::string bytes;
  while (bytes.size() < length) {
    const ssize_t got = ::read(file.get(), buffer.data(), std::min(buffer.size(), length - bytes.size()));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw RuntimeError::fromErrno(errno);
    if (got == 0) break;
    bytes.append(buffer.data(), static_cast<std::size_t>(got));
  }
  return bytes;
}

void WriteStart(const HostPath& path, std::string_view bytes) {
  const bool isNew = !entryExists(path.text);
  try {
    FileDescriptor file = opened(path.text, O_RDWR | O_CREAT);
    writeAll(file.get(), bytes);
    closeWritten(file);
  } catch (const RuntimeError&) {
    if (isNew) ::unlink(path.text.c_str());
    throw;
  }
}

void ReplaceFile(const HostPath& path, std::string_view bytes) {
  const std::string target = linkTarget(path.text);
  // A device to which a link leads would be gone for the whole system.
  if (entryExists(target) && !FileExists(HostPath(target))) throw RuntimeError(RuntimeError::PathFileAccess);
  // A short name of its own, so that the longest name that a folder takes can be replaced too.
  const std::string aside = target.substr(0, target.rfind(HostSep) + 1) + ".new" + std::to_string(::getpid());
  try {
    FileDescriptor file = opened(aside, O_WRONLY | O_CREAT | O_TRUNC);
    writeAll(file.get(), bytes);
    if (::fsync(file.get()) != 0 || !file.close()) throw RuntimeError::fromErrno(errno);
    if (::rename(aside.c_str(), target.c_str()) != 0) throw RuntimeError::fromErrno(errno);
  } catch (const RuntimeError&) {
    ::unlink(aside.c_str());
    throw;
  }
}

}  // namespace trackloom

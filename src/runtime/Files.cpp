#include "runtime/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "runtime/AsideFile.h"
#include "runtime/FileDescriptor.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

namespace fs = std::filesystem;

void closeWritten(FileDescriptor& file) {
  if (!file.close()) throw RuntimeError::fromErrno(errno);
}

bool exists(const std::string& path) {
  struct stat entry {};
  return ::stat(path.c_str(), &entry) == 0;
}

/// The file that a write to the path reaches: links are followed, also those that lead to nothing yet.
std::string linkTarget(std::string path) {
  // As many as the system itself follows.
  constexpr int MostLinks = 40;
  for (int links = 0; links <= MostLinks; ++links) {
    std::error_code noLink;
    const fs::path next = fs::read_symlink(path, noLink);
    if (noLink) return path;
    path = (fs::path(path).parent_path() / next).string();
  }
  throw RuntimeError::fromErrno(ELOOP);
}

/// What could not be written in place is not replaced either: a device to which a link leads would be gone for the
/// whole system, and a file that the user protects stays as it is.
void requireReplaceable(const std::string& path) {
  if (!exists(path)) return;
  if (!FileExists(HostPath(path))) throw RuntimeError(RuntimeError::PathFileAccess);
  if (::eaccess(path.c_str(), W_OK) != 0) throw RuntimeError::fromErrno(errno);
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
  FileDescriptor file = FileDescriptor::open(path.text, O_WRONLY | O_CREAT | O_TRUNC);
  closeWritten(file);
}

void DeleteFile(const HostPath& path) {
  if (::unlink(path.text.c_str()) != 0) throw RuntimeError::fromErrno(errno);
}

std::string ReadStart(const HostPath& path, std::size_t length) {
  return FileDescriptor::open(path.text, O_RDONLY).readUpTo(length);
}

std::string ReadEnd(const HostPath& path, std::size_t length) {
  const FileDescriptor file = FileDescriptor::open(path.text, O_RDONLY);
  const auto end = static_cast<off_t>(length);
  // Where the file is shorter there is no such place in it.
  if (::lseek(file.get(), -end, SEEK_END) == -1) {
    if (errno == EINVAL) return {};
    throw RuntimeError::fromErrno(errno);
  }
  return file.readUpTo(length);
}

void WriteEnd(const HostPath& path, std::string_view bytes) {
  FileDescriptor file = FileDescriptor::open(path.text, O_RDWR | O_CREAT);
  if (::lseek(file.get(), -static_cast<off_t>(bytes.size()), SEEK_END) == -1)
    throw errno == EINVAL ? RuntimeError(RuntimeError::BadRecordNumber) : RuntimeError::fromErrno(errno);
  file.writeAll(bytes);
  closeWritten(file);
}

void WriteStart(const HostPath& path, std::string_view bytes) {
  if (!exists(path.text)) return ReplaceFile(path, bytes);
  FileDescriptor file = FileDescriptor::open(path.text, O_WRONLY);
  file.writeAll(bytes);
  closeWritten(file);
}

void ReplaceFile(const HostPath& path, std::string_view bytes) {
  const std::string target = linkTarget(path.text);
  requireReplaceable(target);
  AsideFile file(target);
  file.write(bytes);
  file.takePlace();
}

}  // namespace trackloom

#include "engines/drives/FolderEntries.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include "runtime/FileDescriptor.h"
#include "runtime/Paths.h"
#include "runtime/Text.h"

namespace trackloom::engines::drives {

namespace {

struct DirectoryCloser {
  void operator()(DIR* directory) const { ::closedir(directory); }
};
using Directory = std::unique_ptr<DIR, DirectoryCloser>;

/// A folder, never a link to one: behind a separator at the end the system would follow it.
FileDescriptor openFolder(std::string path) {
  while (path.size() > 1 && path.ends_with(HostSep)) path.pop_back();
  return FileDescriptor(static_cast<int>(uninterrupted(
      [&] { return ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); })));
}

/// Systems before Linux 5.8 do not number mounts; they have the number of the file system.
std::uint64_t mountOf(int folder) {
  struct statx entry {};
  if (::statx(folder, "", AT_EMPTY_PATH, STATX_MNT_ID, &entry) != 0) return 0;
  return (entry.stx_mask & STATX_MNT_ID) != 0 ? entry.stx_mnt_id : makedev(entry.stx_dev_major, entry.stx_dev_minor);
}

Directory openDirectory(FileDescriptor folder) {
  Directory directory(::fdopendir(folder.get()));
  if (directory) folder.release();
  return directory;
}

bool isFolder(int folder, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_DIR;
  struct stat seen {};
  return ::fstatat(folder, entry.d_name, &seen, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(seen.st_mode);
}

/// Bytes of the regular file, or of the one to which the link leads; nothing for all else.
std::optional<std::int64_t> sizeOfFile(int folder, const dirent& entry) {
  struct stat seen {};
  if (::fstatat(folder, entry.d_name, &seen, 0) != 0 || !S_ISREG(seen.st_mode)) return std::nullopt;
  return seen.st_size;
}

void addRecord(int folder, const dirent& entry, std::vector<FindRecord>& records) {
  const std::string_view name = entry.d_name;
  if (name == "." || name == "..") return;
  if (isFolder(folder, entry))
    records.push_back({FindRecord::DirectoryAttribute, 0, std::string(name)});
  else if (const std::optional<std::int64_t> size = sizeOfFile(folder, entry))
    records.push_back({0, *size, std::string(name)});
}

std::vector<FindRecord> sortedByName(std::vector<FindRecord> records) {
  std::vector<std::pair<std::string, FindRecord>> keyed;
  keyed.reserve(records.size());
  for (FindRecord& record : records) keyed.emplace_back(UCase(record.name), std::move(record));
  std::ranges::sort(keyed, {}, [](const auto& entry) { return std::tie(entry.first, entry.second.name); });
  std::vector<FindRecord> sorted;
  sorted.reserve(keyed.size());
  for (auto& [key, record] : keyed) {
    record.name.push_back('\0');
    sorted.push_back(std::move(record));
  }
  return sorted;
}

}  // namespace

std::uint64_t mountOf(const std::string& folder) {
  const FileDescriptor opened = openFolder(folder);
  return opened ? mountOf(opened.get()) : 0;
}

std::vector<FindRecord> entriesOf(const std::string& folder, std::uint64_t mount) {
  FileDescriptor opened = openFolder(folder);
  if (!opened || mountOf(opened.get()) != mount) return {};
  const Directory directory = openDirectory(std::move(opened));
  std::vector<FindRecord> records;
  // An error in the middle ends the folder like its end.
  while (const dirent* entry = directory ? ::readdir(directory.get()) : nullptr)
    addRecord(::dirfd(directory.get()), *entry, records);
  return sortedByName(std::move(records));
}

}  // namespace trackloom::engines::drives

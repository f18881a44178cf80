#include "engines/ground/FolderStamp.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

namespace trackloom::engines {

namespace {

/// FAT counts every other second.
constexpr std::int64_t coarsestTick = 2;

std::int64_t secondsOf(std::chrono::system_clock::time_point time) {
  return std::chrono::duration_cast<std::chrono::seconds>(time.time_since_epoch()).count();
}

}  // namespace

void FolderStamp::add(const struct stat& status) {
  facts_.push_back({static_cast<std::int64_t>(status.st_dev), static_cast<std::int64_t>(status.st_ino), status.st_size,
                    status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_ctim.tv_sec, status.st_ctim.tv_nsec});
  youngest_ = std::max({youngest_, std::int64_t{status.st_mtim.tv_sec}, std::int64_t{status.st_ctim.tv_sec}});
}

void FolderStamp::add(const FileDescriptor& file) {
  struct stat status {};
  if (fstat(file.get(), &status) != 0) status = {};
  add(status);
}

void FolderStamp::add(const FileDescriptor& folder, const std::string& name) {
  struct stat status {};
  if (fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) status = {};
  add(status);
}

bool FolderStamp::counts() const {
  return youngest_ + coarsestTick < secondsOf(taken_);
}

}  // namespace trackloom::engines

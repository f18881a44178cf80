#include "HeldFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace emulated {

HeldFolder::HeldFolder(const std::filesystem::path& folder)
    : fd_(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {
  struct stat status {};
  if (fd_ >= 0 && ::fstat(fd_, &status) == 0) number_ = static_cast<std::uint64_t>(status.st_ino);
}

HeldFolder::~HeldFolder() {
  if (fd_ >= 0) ::close(fd_);
}

}  // namespace emulated

#include "HeldPath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace emulated {

HeldPath::HeldPath(const std::filesystem::path& path, int flags) : fd_(::open(path.c_str(), flags | O_CLOEXEC)) {
  struct stat status {};
  if (fd_ >= 0 && ::fstat(fd_, &status) == 0) number_ = static_cast<std::uint64_t>(status.st_ino);
}

HeldPath::~HeldPath() {
  if (fd_ >= 0) ::close(fd_);
}

}  // namespace emulated

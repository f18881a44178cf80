#include "Nodes.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>

namespace emulated {

namespace {

namespace fs = std::filesystem;

std::optional<fs::path> home() {
  const char* folder = std::getenv("EMULATED_DRIVES");
  if (folder == nullptr || *folder == '\0') return std::nullopt;
  return fs::path(folder);
}

/// What stands behind /dev/ and some prefix; empty where the path is another.
bool isNumbered(const std::string& name, const std::string& prefix) {
  return name.size() > prefix.size() && name.starts_with(prefix) &&
         std::all_of(name.begin() + static_cast<std::ptrdiff_t>(prefix.size()), name.end(),
                     [](char c) { return c >= '0' && c <= '9'; });
}

bool isOfDrives(const std::string& name) {
  constexpr std::array prefixes{"sr", "scd", "sg", "cdrom", "dvd", "cdrw", "dvdrw"};
  return std::ranges::any_of(prefixes, [&](const char* prefix) { return name == prefix || isNumbered(name, prefix); });
}

std::optional<std::string> nameIn(const char* path) {
  const std::string text = path == nullptr ? "" : path;
  if (!text.starts_with("/dev/") || text.find('/', 5) != std::string::npos) return std::nullopt;
  return text.substr(5);
}

}  // namespace

/// Never destroyed, since other libraries close their files at the very end.
Nodes& Nodes::instance() {
  static Nodes& nodes = *std::make_unique<Nodes>().release();
  return nodes;
}

Nodes::Nodes() : owner_(::getpid()) {
  // A fork must not catch the lock in the hands of a thread that the child does not have.
  ::pthread_atfork([] { instance().mutex_.lock(); }, [] { instance().mutex_.unlock(); },
                   [] { instance().mutex_.unlock(); });
}

Nodes::Sight Nodes::sightOf(const char* path) const {
  const std::optional<std::string> name = nameIn(path);
  const std::optional<fs::path> folder = home();
  if (!name || !folder || !isOfDrives(*name)) return Sight::Other;
  return isNumbered(*name, "sr") && fs::is_directory(*folder / *name) ? Sight::Drive : Sight::Hidden;
}

std::vector<std::string> Nodes::paths() const {
  std::vector<std::string> list;
  const std::optional<fs::path> folder = home();
  std::error_code none;
  if (folder)
    for (const auto& entry : fs::directory_iterator(*folder, none))
      if (isNumbered(entry.path().filename(), "sr")) list.push_back("/dev/" + entry.path().filename().string());
  std::ranges::sort(list);
  return list;
}

int Nodes::open(const char* path, int flags) {
  const fs::path folder = *home() / *nameIn(path);
  if (!Settings::load(folder / "drive.ini").rights) {
    errno = EACCES;
    return -1;
  }
  const int access = flags & O_ACCMODE;
  const int fd = ::open((folder / "node").c_str(), access | O_CREAT | O_CLOEXEC, 0660);
  if (fd < 0) return fd;
  if ((flags & O_EXCL) != 0 && ::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    ::close(fd);
    errno = EBUSY;
    return -1;
  }
  const std::lock_guard lock(mutex_);
  open_[fd] = driveIn(folder);
  return fd;
}

std::shared_ptr<Drive> Nodes::driveIn(const fs::path& folder) {
  std::shared_ptr<Drive>& drive = drives_[folder.string()];
  if (!drive) drive = std::make_shared<Drive>(folder);
  return drive;
}

std::shared_ptr<Drive> Nodes::driveOf(int fd) {
  const std::lock_guard lock(mutex_);
  const auto found = open_.find(fd);
  return found == open_.end() ? nullptr : found->second;
}

void Nodes::copied(int fd, int copy) {
  const std::lock_guard lock(mutex_);
  open_.erase(copy);
  if (const auto found = open_.find(fd); found != open_.end() && copy >= 0) open_[copy] = found->second;
}

void Nodes::closed(int fd) {
  std::shared_ptr<Drive> drive;
  {
    const std::lock_guard lock(mutex_);
    const auto found = open_.find(fd);
    if (found == open_.end()) return;
    drive = std::move(found->second);
    open_.erase(found);
    if (std::ranges::any_of(open_, [&](const auto& other) { return other.second == drive; })) return;
  }
  // A child gives back its copy alone; the drive may be at work for its parent.
  if (::getpid() == owner_) drive->letGo();
}

unsigned numberOf(const std::string& path) {
  const std::size_t digits = path.find_last_not_of("0123456789") + 1;
  return static_cast<unsigned>(std::atoi(path.c_str() + digits));
}

}  // namespace emulated

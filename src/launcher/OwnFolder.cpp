#include "launcher/OwnFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

namespace trackloom::launcher {

namespace fs = std::filesystem;

namespace {

constexpr const char* Executable = "trackloom";
constexpr const char* Recorder = "Virtual Recorder";
constexpr std::size_t Block = 65536;
constexpr std::uintmax_t Mebibyte = 1024 * 1024;

[[noreturn]] void fail(const fs::path& path) {
  throw fs::filesystem_error("", path, std::error_code(errno, std::generic_category()));
}

/// An open file, or one that could not be opened.
class File {
 public:
  File(const fs::path& path, int flags) : file_(::open(path.c_str(), flags | O_CLOEXEC, 0600)) {
    if (file_ < 0) fail(path);
  }
  ~File() { ::close(file_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  int get() const { return file_; }
  bool isAt(const fs::path& path) const {
    struct stat here {};
    struct stat there {};
    return ::fstat(file_, &here) == 0 && ::stat(path.c_str(), &there) == 0 && here.st_ino == there.st_ino &&
           here.st_dev == there.st_dev;
  }

 private:
  int file_;
};

/// One launcher's turn to change the folder. The mark is gone behind each turn, so who has waited for it looks whether
/// it still is the one of that name. Where the file system knows no locks, nobody waits.
class Turn {
 public:
  explicit Turn(fs::path mark) : mark_(std::move(mark)) {
    for (;;) {
      auto file = std::make_unique<File>(mark_, O_RDWR | O_CREAT);
      const bool locked = ::flock(file->get(), LOCK_EX) == 0;
      if (locked && !file->isAt(mark_)) continue;
      file_ = std::move(file);
      return;
    }
  }
  ~Turn() { ::unlink(mark_.c_str()); }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  fs::path mark_;
  std::unique_ptr<File> file_;
};

/// File systems keep times in steps of their own, packages in seconds.
auto second(const fs::path& file) {
  return std::chrono::floor<std::chrono::seconds>(fs::last_write_time(file));
}

void writeAll(const File& file, const fs::path& path, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file.get(), bytes.data(), bytes.size());
    if (written < 0) fail(path);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

/// A new file with the bytes and the permissions of the other, all on the disk. The standard library's own copy does
/// not tell a full disk from a broken one.
void copyFile(const fs::path& from, const fs::path& to) {
  const File source(from, O_RDONLY);
  const File copy(to, O_WRONLY | O_CREAT | O_EXCL);
  std::array<char, Block> bytes{};
  ssize_t count = 0;
  while ((count = ::read(source.get(), bytes.data(), bytes.size())) > 0) {
    writeAll(copy, to, {bytes.data(), static_cast<std::size_t>(count)});
  }
  if (count < 0) fail(from);
  fs::permissions(to, fs::status(from).permissions());
  if (::fsync(copy.get()) != 0) fail(to);
}

bool isFull(const std::error_code& cause) {
  return cause == std::errc::no_space_on_device || cause == std::errc::file_too_large || cause.value() == EDQUOT;
}

bool isForbidden(const std::error_code& cause) {
  return cause == std::errc::permission_denied || cause == std::errc::operation_not_permitted ||
         cause == std::errc::read_only_file_system;
}

bool letsNothingStart(const fs::path& folder) {
  struct statvfs disk {};
  return ::statvfs(folder.c_str(), &disk) == 0 && (disk.f_flag & ST_NOEXEC) != 0;
}

/// Room for all files of the folder, in whole mebibytes.
std::uintmax_t roomOf(const fs::path& folder) {
  std::uintmax_t bytes = 0;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) bytes += entry.file_size();
  }
  return bytes / Mebibyte + 1;
}

}  // namespace

fs::path dataFolder() {
  const char* const chosen = std::getenv("XDG_DATA_HOME");
  if (chosen != nullptr && *chosen == '/') return chosen;
  const char* const home = std::getenv("HOME");
  if (home == nullptr || *home != '/')
    throw Trouble("Trackloom keeps its files in your home folder, but you have none.");
  std::error_code none;
  if (!fs::is_directory(home, none)) {
    throw Trouble(std::string("Trackloom keeps its files in your home folder, but there is no folder ") + home + ".");
  }
  return fs::path(home) / ".local" / "share";
}

OwnFolder::OwnFolder(fs::path original, fs::path own) : original_(std::move(original)), own_(std::move(own)) {}

void OwnFolder::bringUp() const try { makeOrRenew(); } catch (const fs::filesystem_error& error) {
  throw Trouble(words(error.code()));
}

bool OwnFolder::canStart() const {
  std::error_code none;
  return fs::is_regular_file(own_ / Executable, none);
}

void OwnFolder::start(char* const arguments[]) const {
  ::execv((own_ / Executable).c_str(), arguments);
  const std::error_code cause(errno, std::generic_category());
  const std::string begin = "Trackloom cannot be started from your folder " + own_.string() + ": ";
  throw Trouble(begin + (letsNothingStart(own_)
                             ? "the disk is mounted so that no program can be started from it (noexec)."
                             : cause.message() + "."));
}

void OwnFolder::makeOrRenew() const {
  fs::create_directories(own_.parent_path());
  if (fs::create_directory(own_)) fs::permissions(own_, fs::perms::owner_all);
  const std::vector<std::string> names = files();
  const auto isNew = [this](const std::string& name) { return isCurrent(name); };
  if (std::all_of(names.begin(), names.end(), isNew)) return;
  const Turn turn(own_ / ".launching");
  if (!canStart() && !fs::exists(own_ / Recorder)) layRecorder();
  for (const std::string& name : names) {
    if (!isCurrent(name)) renew(name);
  }
}

void OwnFolder::layRecorder() const {
  fs::remove_all(aside(Recorder));
  fs::copy(original_ / Recorder, aside(Recorder), fs::copy_options::recursive);
  fs::rename(aside(Recorder), own_ / Recorder);
}

void OwnFolder::renew(const std::string& name) const try {
  fs::remove(aside(name));
  copyFile(original_ / name, aside(name));
  fs::last_write_time(aside(name), fs::last_write_time(original_ / name));
  fs::rename(aside(name), own_ / name);
} catch (const fs::filesystem_error&) {
  std::error_code none;
  fs::remove(aside(name), none);
  throw;
}

bool OwnFolder::isCurrent(const std::string& name) const {
  const fs::path mine = own_ / name;
  return fs::is_regular_file(mine) && fs::file_size(mine) == fs::file_size(original_ / name) &&
         second(mine) == second(original_ / name);
}

/// The executable comes last: it tells that the folder was whole once.
std::vector<std::string> OwnFolder::files() const {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(original_)) {
    const std::string name = entry.path().filename();
    if (entry.is_regular_file() && name != Executable) names.push_back(name);
  }
  names.emplace_back(Executable);
  return names;
}

fs::path OwnFolder::aside(const std::string& name) const {
  return own_ / ("." + name + ".new");
}

std::string OwnFolder::words(const std::error_code& cause) const {
  const std::string begin = "Trackloom keeps its files in your folder " + own_.string() + ", which could not be " +
                            (canStart() ? "renewed" : "made") + ": ";
  if (isFull(cause)) return begin + "there is too little room. It needs " + std::to_string(roomOf(original_)) + " MB.";
  if (isForbidden(cause)) return begin + "it may not be written to (" + cause.message() + ").";
  return begin + cause.message() + ".";
}

}  // namespace trackloom::launcher

#pragma once

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <array>
#include <catch2/catch.hpp>
#include <fstream>
#include <string>
#include <utility>

namespace trackloom::fakes {

/// A small disk in memory in the place of a folder, for what a test does to a disk: full, or read-only. Only this
/// process sees it, and it goes with its test. Some machines let nobody mount; then there is none.
class OwnDisk {
 public:
  OwnDisk(std::string folder, const std::string& options) : folder_(std::move(folder)) {
    mounted_ = ownMounts() && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               ::mount("tmpfs", folder_.c_str(), "tmpfs", 0, options.c_str()) == 0;
  }
  ~OwnDisk() {
    if (mounted_) ::umount2(folder_.c_str(), MNT_DETACH);
  }
  OwnDisk(const OwnDisk&) = delete;
  OwnDisk& operator=(const OwnDisk&) = delete;

  /// Says so when there is none.
  bool missing() const {
    if (!mounted_) WARN("This machine lets nobody mount a disk of his own");
    return !mounted_;
  }
  bool makeReadOnly() const { return ::mount("tmpfs", folder_.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0; }
  /// Leaves not one byte, in a file beside the others.
  void fillUp() const {
    const int file = ::open((folder_ + "/filler").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const std::array<char, 512> bytes{};
    while (::write(file, bytes.data(), bytes.size()) > 0) continue;
    ::close(file);
  }
  void makeRoom() const { ::unlink((folder_ + "/filler").c_str()); }

 private:
  static bool ownMounts() {
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    if (user == 0) return ::unshare(CLONE_NEWNS) == 0;
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << "0 " + std::to_string(user) + " 1";
    std::ofstream("/proc/self/gid_map") << "0 " + std::to_string(group) + " 1";
    return true;
  }

  std::string folder_;
  bool mounted_ = false;
};

}  // namespace trackloom::fakes

#pragma once

#include <cstdint>
#include <filesystem>
#include <utility>

namespace emulated {

/// A file or folder, or that there is none; while this lives nothing else can take its identity.
class HeldPath {
 public:
  /// `flags` as for open(2).
  HeldPath(const std::filesystem::path& path, int flags);
  HeldPath(HeldPath&& other) noexcept : fd_(std::exchange(other.fd_, -1)), number_(other.number_) {}
  HeldPath& operator=(HeldPath&& other) noexcept {
    std::swap(fd_, other.fd_);
    number_ = other.number_;
    return *this;
  }
  HeldPath(const HeldPath&) = delete;
  HeldPath& operator=(const HeldPath&) = delete;
  ~HeldPath();

  bool there() const { return fd_ >= 0; }
  bool isSame(const HeldPath& other) const { return there() == other.there() && number_ == other.number_; }

 private:
  int fd_;
  std::uint64_t number_ = 0;
};

}  // namespace emulated

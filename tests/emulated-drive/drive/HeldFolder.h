#pragma once

#include <cstdint>
#include <filesystem>
#include <utility>

namespace emulated {

/// A folder, or that there is none; while this lives no other folder can take its identity.
class HeldFolder {
 public:
  explicit HeldFolder(const std::filesystem::path& folder);
  HeldFolder(HeldFolder&& other) noexcept : fd_(std::exchange(other.fd_, -1)), number_(other.number_) {}
  HeldFolder& operator=(HeldFolder&& other) noexcept {
    std::swap(fd_, other.fd_);
    number_ = other.number_;
    return *this;
  }
  HeldFolder(const HeldFolder&) = delete;
  HeldFolder& operator=(const HeldFolder&) = delete;
  ~HeldFolder();

  bool there() const { return fd_ >= 0; }
  bool isSame(const HeldFolder& other) const { return there() == other.there() && number_ == other.number_; }

 private:
  int fd_;
  std::uint64_t number_ = 0;
};

}  // namespace emulated

#pragma once

#include <string>

namespace trackloom {

/// The desktop's service that mounts discs when they are put in.
class DiscMounts {
 public:
  DiscMounts() = default;
  DiscMounts(const DiscMounts&) = delete;
  DiscMounts& operator=(const DiscMounts&) = delete;
  virtual ~DiscMounts() = default;

  /// Unmounts what the desktop has mounted of the disc in the drive with this device node ("/dev/sr0"), and waits, at
  /// most half a minute. What the service says where it would not; empty: it did, had nothing to unmount, or is not
  /// there. On any thread but the window's.
  virtual std::string unmount(const std::string& node) = 0;
};

}  // namespace trackloom

#pragma once

#include <compare>
#include <string>
#include <utility>

namespace trackloom {

/// The separator of host paths; disc paths always use the backslash.
inline constexpr char HostSep = '/';
inline constexpr char DiscSep = '\\';

/// A path on this machine, in the bytes the host gave it.
struct HostPath {
  std::string text;

  HostPath() = default;
  explicit HostPath(std::string path) : text(std::move(path)) {}
  auto operator<=>(const HostPath&) const = default;
};

/// A path on the disc: backslashes, one of them leading.
struct DiscPath {
  std::string text;

  DiscPath() = default;
  explicit DiscPath(std::string path) : text(std::move(path)) {}
  auto operator<=>(const DiscPath&) const = default;
};

/// `folder` with exactly the separator it needs to be put before a file name; a root keeps its only one.
std::string EnsureTrailingSep(std::string folder);

}  // namespace trackloom

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "runtime/Paths.h"

namespace trackloom {

/// The version that a program file bears.
struct FileVersion {
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  std::uint16_t build = 0;
  std::uint16_t revision = 0;
};

/// What the system knows of its program files and their names.
class FileVersions {
 public:
  virtual ~FileVersions() = default;

  /// Nothing: the file bears none.
  virtual std::optional<FileVersion> versionOf(const HostPath& file) = 0;
  /// The text with the environment's variables in their places.
  virtual std::string expanded(const std::string& text) = 0;
  /// The path without shortened names.
  virtual std::string longPath(const std::string& path) = 0;
  /// The system's own version as text; empty where it has none of this kind.
  virtual std::string systemVersion() = 0;
};

}  // namespace trackloom

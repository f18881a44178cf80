#pragma once

#include <string>
#include <string_view>

#include "runtime/FileDescriptor.h"

namespace trackloom {

/// A file in the making, beside the one whose place it is to take. Aside files have few known names in their folder,
/// and whoever writes one holds a lock on it; so what a killed program left there is known, and the next aside file of
/// the folder removes it.
class AsideFile {
 public:
  /// An empty file in the folder of `target`, with the permissions of `target` where that exists. Throws RuntimeError.
  explicit AsideFile(std::string target);
  /// Removes the file, unless it has taken its place.
  ~AsideFile();
  AsideFile(const AsideFile&) = delete;
  AsideFile& operator=(const AsideFile&) = delete;

  /// Throws RuntimeError.
  void write(std::string_view bytes);
  /// Takes the target's place; returns when file and folder are on the disk. Throws RuntimeError.
  void takePlace();

 private:
  bool open(const std::string& name);

  std::string target_;
  std::string name_;
  FileDescriptor file_;
};

}  // namespace trackloom

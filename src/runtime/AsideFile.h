#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "runtime/FileDescriptor.h"

namespace trackloom {

/// The names that the aside files of one sort have in their folder: this stem and a number up to `most`.
struct AsideNames {
  const char* stem = ".trackloom-new";
  int most = 8;
};

/// A file in the making, beside the one whose place it is to take. Aside files have few known names in their folder,
/// and whoever writes one holds a lock on it; so what a killed program left there is known, and the next aside file of
/// the folder removes it.
class AsideFile {
 public:
  /// An empty file in the folder of `target`, with the permissions of `target` where that exists. Throws RuntimeError.
  explicit AsideFile(std::string target, AsideNames names = {});
  /// Removes the file, unless it has taken its place.
  ~AsideFile();
  AsideFile(const AsideFile&) = delete;
  AsideFile& operator=(const AsideFile&) = delete;

  /// Where it lies until it takes its place.
  const std::string& path() const { return name_; }

  /// Appends. Throws RuntimeError.
  void write(std::string_view bytes);
  /// Overwrites the file's beginning, and appends go on behind its end. Throws RuntimeError.
  void writeAtStart(std::string_view bytes);
  /// Lets the disk begin with what was written, so that sync() has little to wait for.
  void startSync();
  /// Returns when all bytes are on the disk. Throws RuntimeError.
  void sync();
  /// Takes the place of this file of the same folder instead.
  void setTarget(std::string target) { target_ = std::move(target); }
  /// Takes the target's place; returns when file and folder are on the disk. Throws RuntimeError.
  void takePlace();

 private:
  bool open(const std::string& name);

  std::string target_;
  std::string name_;
  FileDescriptor file_;
};

}  // namespace trackloom

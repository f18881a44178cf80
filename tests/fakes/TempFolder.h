#pragma once

#include <string>

#include "runtime/Paths.h"

namespace trackloom::fakes {

/// A folder of a test's own; it goes with everything in it.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string operator/(const std::string& name) const;
  const std::string& path() const { return path_; }
  HostPath host(const std::string& name) const;
  /// Writes the file and tells its path.
  HostPath file(const std::string& name, const std::string& bytes) const;

  void write(const std::string& name, const std::string& bytes) const;
  std::string read(const std::string& name) const;
  bool has(const std::string& name) const;

 private:
  std::string path_;
};

}  // namespace trackloom::fakes

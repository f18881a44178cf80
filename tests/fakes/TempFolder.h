#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "runtime/Paths.h"

namespace trackloom::fakes {

/// A folder of a test's own; it goes with everything in it.
class TempFolder {
 public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "trackloom-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::filesystem::filesystem_error("mkdtemp", {});
    path_ = pattern;
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  const std::string& path() const { return path_; }
  HostPath host(const std::string& name) const { return HostPath(*this / name); }
  /// Writes the file and tells its path.
  HostPath file(const std::string& name, const std::string& bytes) const {
    write(name, bytes);
    return host(name);
  }

  void write(const std::string& name, const std::string& bytes) const {
    std::filesystem::create_directories(std::filesystem::path(path_ + "/" + name).parent_path());
    std::ofstream(path_ + "/" + name, std::ios::binary) << bytes;
  }
  std::string read(const std::string& name) const {
    std::ifstream file(path_ + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  bool has(const std::string& name) const { return std::filesystem::exists(path_ + "/" + name); }

 private:
  std::string path_;
};

}  // namespace trackloom::fakes

#include "fakes/TempFolder.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <system_error>

#include "fakes/TestFiles.h"

namespace trackloom::fakes {

TempFolder::TempFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "trackloom-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) throw std::filesystem::filesystem_error("mkdtemp", {});
  path_ = pattern;
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::operator/(const std::string& name) const {
  return path_ + "/" + name;
}

HostPath TempFolder::host(const std::string& name) const {
  return HostPath(*this / name);
}

HostPath TempFolder::file(const std::string& name, const std::string& bytes) const {
  write(name, bytes);
  return host(name);
}

void TempFolder::write(const std::string& name, const std::string& bytes) const {
  std::filesystem::create_directories(std::filesystem::path(path_ + "/" + name).parent_path());
  std::ofstream(path_ + "/" + name, std::ios::binary) << bytes;
}

std::string TempFolder::read(const std::string& name) const {
  return contentOf(path_ + "/" + name);
}

bool TempFolder::has(const std::string& name) const {
  return std::filesystem::exists(path_ + "/" + name);
}

}  // namespace trackloom::fakes

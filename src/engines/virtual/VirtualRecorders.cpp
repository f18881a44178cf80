#include "engines/virtual/VirtualRecorders.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "engines/virtual/RecorderFolder.h"
#include "engines/virtual/VirtualRecorder.h"
#include "runtime/Files.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::virtualrecorder {

namespace {

constexpr const char* firstName = "Virtual Recorder";

std::string nameOf(std::size_t number) {
  return number == 1 ? firstName : std::string(firstName) + " " + std::to_string(number);
}

bool bearsOurName(const std::string& name) {
  return name.starts_with(firstName) && name.find(HostSep) == std::string::npos;
}

}  // namespace

RecorderList findVirtualRecorders(const HostPath& programFolder, const std::vector<KnownDrive>& known) {
  RecorderList recorders;
  const auto add = [&](const std::string& name) {
    HostPath path(EnsureTrailingSep(programFolder.text) + name);
    if (!FolderExists(path)) return false;
    recorders.push_back(std::make_shared<VirtualRecorder>(std::move(path)));
    return true;
  };
  const auto isListed = [&](const std::string& name) {
    return std::ranges::any_of(recorders, [&](const auto& recorder) { return recorder->id() == name; });
  };
  while (add(nameOf(recorders.size() + 1))) continue;
  for (const KnownDrive& drive : known)
    if (bearsOurName(drive.id) && !isListed(drive.id)) add(drive.id);
  return recorders;
}

void createVirtualRecorder(const HostPath& folder) {
  try {
    std::filesystem::create_directories(folder.text);
    RecorderFolder(folder).layOut();
  } catch (const std::system_error& error) {
    throw RuntimeError(RuntimeError::fromErrno(error.code().value()).number(), error.what());
  }
}

}  // namespace trackloom::engines::virtualrecorder

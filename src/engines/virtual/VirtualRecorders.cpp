#include "engines/virtual/VirtualRecorders.h"

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

HostPath recorderPath(const HostPath& programFolder, std::size_t number) {
  const std::string path = EnsureTrailingSep(programFolder.text) + "Virtual Recorder";
  return HostPath(number == 1 ? path : path + " " + std::to_string(number));
}

}  // namespace

RecorderList findVirtualRecorders(const HostPath& programFolder) {
  RecorderList recorders;
  for (;;) {
    HostPath path = recorderPath(programFolder, recorders.size() + 1);
    if (!FolderExists(path)) return recorders;
    recorders.push_back(std::make_shared<VirtualRecorder>(std::move(path)));
  }
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

#pragma once

#include "ports/CommonControls.h"
#include "ports/Process.h"
#include "runtime/Numbers.h"

namespace trackloom {

/// Here no window system wants to be asked for its controls.
class NoCommonControls final : public CommonControls {
 public:
  bool initialise(std::int32_t /*structureSize*/, std::int32_t /*classFlags*/) override { return true; }
};

/// The process as Linux sees it. A lock on the executable's own file tells a second instance, so that nothing is left
/// behind by a crash and two installations do not hinder each other.
class LinuxProcess final : public Process {
 public:
  LinuxProcess() = default;
  LinuxProcess(const LinuxProcess&) = delete;
  LinuxProcess& operator=(const LinuxProcess&) = delete;
  ~LinuxProcess() override;

  std::string executableFolder() override;
  /// The first call takes the lock, which is held for life. Where the file system knows no locks, no instance is a
  /// second.
  bool isSecondInstance() override;
  [[noreturn]] void end(int status) override;

 private:
  int lock_ = -1;
};

/// The signs of the number format that the user has chosen for the system.
Separators systemSeparators();

}  // namespace trackloom

#pragma once

#include <functional>

#include "ports/CommonControls.h"
#include "ports/FileVersions.h"
#include "ports/Process.h"
#include "ports/Registry.h"
#include "runtime/FileDescriptor.h"
#include "runtime/Numbers.h"

namespace trackloom {

/// Here no window system wants to be asked for its controls.
class NoCommonControls final : public CommonControls {
 public:
  bool initialise(std::int32_t /*structureSize*/, std::int32_t /*classFlags*/) override { return true; }
};

/// Here the system keeps no settings of this kind: every key is missing, and none can be made.
class NoRegistry final : public Registry {
 public:
  std::optional<std::string> text(Root, const std::string& /*key*/, const std::string& /*name*/) override {
    return std::nullopt;
  }
  void setText(Root, const std::string& /*key*/, const std::string& /*name*/, const std::string& /*text*/) override;
  void removeText(Root, const std::string& /*key*/, const std::string& /*name*/) override;
};

/// Program files bear no versions here, and no name is ever shortened.
class NoFileVersions final : public FileVersions {
 public:
  std::optional<FileVersion> versionOf(const HostPath& /*file*/) override { return std::nullopt; }
  std::string expanded(const std::string& text) override { return text; }
  std::string longPath(const std::string& path) override { return path; }
  std::string systemVersion() override { return ""; }
};

/// The process as Linux sees it. A lock on the program's folder tells a second instance, so that nothing is left behind
/// by a crash, two installations do not hinder each other, and an executable that is replaced while it runs lets no
/// second one in. A closed pipe and a limit on the size of files end no process but are errors of the call.
class LinuxProcess final : public Process {
 public:
  LinuxProcess();

  std::string executableFolder() override;
  /// The first call takes the lock, which is held for life. Where the file system knows no locks, no instance is a
  /// second.
  bool isSecondInstance() override;
  /// The user's home, and folders for what lasts a session or less, some of them on other disks.
  std::vector<HostPath> refuges() override;
  /// On standard error.
  void tell(const std::string& words) override;
  [[noreturn]] void end(int status) override;

  /// Runs once, when this is known to be no second instance.
  std::function<void()> whenFirst;

 private:
  FileDescriptor folder_;
  bool first_ = false;
};

/// The signs of the number format that the user has chosen for the system.
Separators systemSeparators();

}  // namespace trackloom

#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "contract/WriterWorld.h"
#include "engines/disc/Recorder.h"
#include "fakes/TempFolder.h"
#include "ports/DiscMounts.h"
#include "runtime/FileDescriptor.h"

namespace trackloom::engines::libburn {

/// The desktop's disc service, and the disc that it has mounted.
class FakeMounts final : public DiscMounts {
 public:
  FakeMounts();
  ~FakeMounts() override;

  void mount();
  bool mounted() const;

  std::string unmount(const std::string& node) override;

  /// What it says where it does not unmount.
  std::string says;
  std::vector<std::string> asked;

 private:
  FileDescriptor held_;
};

/// A recorder of this machine in the hands of a test: an emulated one, which alone can be seen. Its tracks may be as
/// short as those of the contract are.
class EmulatedDrive {
 public:
  explicit EmulatedDrive(const fakes::TempFolder& folder);
  ~EmulatedDrive();
  EmulatedDrive(const EmulatedDrive&) = delete;
  EmulatedDrive& operator=(const EmulatedDrive&) = delete;

  RecorderList recorders() const;
  void slowDown() const;
  void insert(std::int32_t blocks, bool rewritable) const;
  void takeDiscOut() const;
  void refuse(bool select, bool eject) const;
  void fail(const contract::Fault& fault) const;
  void heal() const;
  std::size_t tracksOnDisc() const;

  void configure(const std::string& text) const;
  std::string commands() const;
  std::filesystem::path place() const;

  std::shared_ptr<FakeMounts> mounts;

 private:
  const fakes::TempFolder& folder_;
};

}  // namespace trackloom::engines::libburn

#pragma once

#include <fcntl.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "contract/WriterWorld.h"
#include "engines/libburn/FoundDrives.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"
#include "ports/DiscMounts.h"
#include "runtime/FileDescriptor.h"

namespace trackloom::engines::libburn {

/// The desktop's disc service, and the disc that it has mounted.
class FakeMounts final : public DiscMounts {
 public:
  void mount() { held_ = FileDescriptor(::open("/dev/sr0", O_RDONLY | O_NONBLOCK | O_EXCL)); }
  bool mounted() const { return static_cast<bool>(held_); }

  std::string unmount(const std::string& node) override {
    asked.push_back(node);
    if (says.empty()) held_ = FileDescriptor();
    return says;
  }

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
  explicit EmulatedDrive(const fakes::TempFolder& folder) : folder_(folder) {
    insert(359849, false);
    heal();
    ::setenv("EMULATED_DRIVES", (folder / "drives").c_str(), 1);
    ::setenv("EMULATED_HASTE", "100", 1);
  }
  ~EmulatedDrive() { ::unsetenv("EMULATED_DRIVES"); }
  EmulatedDrive(const EmulatedDrive&) = delete;
  EmulatedDrive& operator=(const EmulatedDrive&) = delete;

  RecorderList recorders() const { return findRecorders(mounts); }
  void slowDown() const { configure("pace = 75\n"); }
  void insert(std::int32_t blocks, bool rewritable) const {
    takeDiscOut();
    folder_.write("drives/sr0/disc/disc", std::string("medium ") + (rewritable ? "CD-RW" : "CD-R") + "\nblocks " +
                                              std::to_string(blocks) + "\n");
  }
  void takeDiscOut() const { std::filesystem::remove_all(place() / "disc"); }
  void refuse(bool select, bool eject) const {
    configure(std::string(select ? "fault = INQUIRY 4/44/00\n" : "") + (eject ? "tray stuck = yes\n" : ""));
  }
  void fail(const contract::Fault& fault) const {
    char number[16];
    std::snprintf(number, sizeof number, "%X/%02X/%02X", fault.number >> 16, fault.number >> 8 & 0xFF,
                  fault.number & 0xFF);
    configure("fault = WRITE " + std::string(number) + " block " + std::to_string(fault.block) + "\n");
  }
  void heal() const { configure(""); }
  std::size_t tracksOnDisc() const {
    std::ifstream disc(place() / "disc" / "disc");
    std::size_t tracks = 0;
    for (std::string line; std::getline(disc, line);) tracks += line.starts_with("track ") ? 1 : 0;
    return tracks;
  }

  void configure(const std::string& text) const {
    folder_.write("drives/sr0/drive.ini", "shortest track = 1\n" + text);
  }
  std::string commands() const { return folder_.read("drives/sr0/commands"); }
  std::filesystem::path place() const { return folder_ / "drives/sr0"; }

  std::shared_ptr<FakeMounts> mounts = std::make_shared<FakeMounts>();

 private:
  const fakes::TempFolder& folder_;
};

}  // namespace trackloom::engines::libburn

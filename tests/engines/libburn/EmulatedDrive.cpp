#include "engines/libburn/EmulatedDrive.h"

#include <fcntl.h>
#include <stdlib.h>
#include <cstdio>
#include <fstream>

#include "engines/libburn/FoundDrives.h"

namespace trackloom::engines::libburn {

FakeMounts::FakeMounts() = default;

FakeMounts::~FakeMounts() = default;

void FakeMounts::mount() {
  held_ = FileDescriptor(::open("/dev/sr0", O_RDONLY | O_NONBLOCK | O_EXCL));
}

bool FakeMounts::mounted() const {
  return static_cast<bool>(held_);
}

std::string FakeMounts::unmount(const std::string& node) {
  asked.push_back(node);
  if (says.empty()) held_ = FileDescriptor();
  return says;
}

EmulatedDrive::EmulatedDrive(const fakes::TempFolder& folder)
    : mounts(std::make_shared<FakeMounts>()), folder_(folder) {
  insert(359849, false);
  heal();
  ::setenv("EMULATED_DRIVES", (folder / "drives").c_str(), 1);
  ::setenv("EMULATED_HASTE", "100", 1);
}

EmulatedDrive::~EmulatedDrive() {
  ::unsetenv("EMULATED_DRIVES");
}

RecorderList EmulatedDrive::recorders() const {
  return findRecorders(mounts);
}

void EmulatedDrive::slowDown() const {
  configure("pace = 75\n");
}

void EmulatedDrive::insert(std::int32_t blocks, bool rewritable) const {
  takeDiscOut();
  folder_.write("drives/sr0/disc/disc",
                std::string("medium ") + (rewritable ? "CD-RW" : "CD-R") + "\nblocks " + std::to_string(blocks) + "\n");
}

void EmulatedDrive::takeDiscOut() const {
  std::filesystem::remove_all(place() / "disc");
}

void EmulatedDrive::refuse(bool select, bool eject) const {
  configure(std::string(select ? "fault = INQUIRY 4/44/00\n" : "") + (eject ? "tray stuck = yes\n" : ""));
}

void EmulatedDrive::fail(const contract::Fault& fault) const {
  char number[16];
  std::snprintf(number, sizeof number, "%X/%02X/%02X", fault.number >> 16, fault.number >> 8 & 0xFF,
                fault.number & 0xFF);
  configure("fault = WRITE " + std::string(number) + " block " + std::to_string(fault.block) + "\n");
}

void EmulatedDrive::heal() const {
  configure("");
}

std::size_t EmulatedDrive::tracksOnDisc() const {
  std::ifstream disc(place() / "disc" / "disc");
  std::size_t tracks = 0;
  for (std::string line; std::getline(disc, line);) tracks += line.starts_with("track ") ? 1 : 0;
  return tracks;
}

void EmulatedDrive::configure(const std::string& text) const {
  folder_.write("drives/sr0/drive.ini", "shortest track = 1\n" + text);
}

std::string EmulatedDrive::commands() const {
  return folder_.read("drives/sr0/commands");
}

std::filesystem::path EmulatedDrive::place() const {
  return folder_ / "drives/sr0";
}

}  // namespace trackloom::engines::libburn

#pragma once

#include <catch2/catch.hpp>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <vector>

#include "drive/Drive.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"

namespace emulated {

namespace fs = std::filesystem;

/// The folder of the drives of a test, each with what lies in it.
class Rack {
 public:
  Rack() { insert(); }

  /// Puts a blank disc into a drive, which is there from then on.
  void insert(const std::string& medium = "CD-R", std::int32_t blocks = 359849,
              const std::string& drive = "sr0") const {
    fs::remove_all(folder(drive) / "disc");
    box.write(drive + "/disc/disc", "medium " + medium + "\nblocks " + std::to_string(blocks) + "\n");
  }
  void configure(const std::string& ini, const std::string& drive = "sr0") const {
    box.write(drive + "/drive.ini", ini);
  }
  fs::path folder(const std::string& drive = "sr0") const { return box / drive; }
  Disc disc(const std::string& drive = "sr0") const { return Disc::load(folder(drive) / "disc" / "disc"); }
  Sectors sectors(const std::string& drive = "sr0") const { return Sectors(folder(drive) / "disc"); }
  std::string commands(const std::string& drive = "sr0") const { return box.read(drive + "/commands"); }

  trackloom::fakes::TempFolder box;
};

using Block = std::initializer_list<std::uint32_t>;

/// A host that sends commands to one drive, and the shapes of those that writers need.
class Host {
 public:
  explicit Host(const Rack& rack, const std::string& drive = "sr0") : drive_(rack.folder(drive)) {}

  Outcome send(Block block, View sent = {}, std::size_t room = 65536);
  /// What it answers, where it succeeds.
  Bytes ask(Block block, std::size_t room = 65536);

  /// MODE SELECT of the write parameters.
  Sense parameters(WriteType type, Kind kind, bool next = false, bool test = false);
  Sense write(std::int32_t block, std::int32_t count, Kind kind);
  /// Blocks of a track, sixteen at a time.
  void writeAll(std::int32_t block, std::int32_t count, Kind kind);
  Sense cueSheet(const std::vector<std::vector<std::uint32_t>>& entries);
  /// Track, index, form and first block; the last is the lead-out.
  Sense cueSheetOf(std::int32_t begin, const std::vector<std::int32_t>& lengths, Kind kind = Kind::Audio);
  Sense synchronize() { return send({0x35}).sense; }
  Sense closeTrack() { return send({0x5B, 0, 1}).sense; }
  Sense closeSession() { return send({0x5B, 0, 2}).sense; }
  Sense blank() { return send({0xA1, 1}).sense; }
  Sense ready() { return send({0x00}).sense; }
  /// Of READ TRACK INFORMATION for the track that comes next; -1: none can be written.
  std::int32_t nextWritable();
  std::int32_t freeBlocks();
  /// The low five bits of disc information: state of the last session and of the disc.
  std::uint32_t discStates();

  /// A session of these audio tracks written at once.
  void writeSession(const std::vector<std::int32_t>& lengths, bool next = false, bool test = false);
  /// A track written at once on a disc that goes on.
  void writeTrack(std::int32_t count, Kind kind, bool test = false);

 private:
  Drive drive_;
};

/// The bytes of so many sectors from a block on, which differ from block to block.
Bytes content(std::int32_t block, std::int32_t count, Kind kind);

}  // namespace emulated

namespace Catch {
template <>
struct StringMaker<emulated::Sense> {
  static std::string convert(const emulated::Sense& sense);
};
}  // namespace Catch

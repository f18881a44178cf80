#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "engines/ground/FolderStamp.h"
#include "engines/ground/OpenFiles.h"
#include "engines/virtual/VirtualDisc.h"

namespace trackloom::engines::virtualrecorder {

/// One disc as a folder: disc.ini, and disc.bin with disc.cue or disc.iso once something is recorded.
class DiscFolder {
 public:
  DiscFolder(std::string name, FileDescriptor folder) : name_(std::move(name)), folder_(std::move(folder)) {}

  const std::string& name() const { return name_; }
  /// The same wherever the disc is moved to. Throws std::system_error.
  std::string id() const;

  /// Throws DamagedDisc when disc.ini cannot be read or understood, or the files beside it are not exactly as long as
  /// it says: content that disc.ini does not know of would be written over.
  VirtualDisc load() const;
  /// Throws std::system_error; the old disc.ini then stands.
  void save(const VirtualDisc& disc) const;
  /// The disc with its cue sheet, once all sectors are on the medium. The cue sheet takes its place after disc.ini, so
  /// a disc whose write was cut off never lists what that write brought. Throws std::system_error; the old disc.ini
  /// then stands.
  void record(const VirtualDisc& disc) const;
  /// Where a recording was cut off between the two, the cue sheet does not list yet what disc.ini does.
  void mendCueSheet(const VirtualDisc& disc) const;
  /// The sectors of a disc that has some of this kind, for writing. Throws std::system_error, also for a file that has
  /// another name somewhere, which would be written through.
  FileDescriptor openSectors(BlockKind kind) const;
  /// A new file for the sectors of a blank disc. Throws std::system_error.
  FileDescriptor makeSectors(BlockKind kind) const;
  /// Takes the file of a write away that never began; one with content stays.
  void dropEmptySectors(BlockKind kind) const;
  /// Takes all content away. Throws std::system_error.
  void removeSectors() const;
  /// The bytes of sectors. Throws std::system_error; what lies behind the end of the file is zeros.
  std::vector<std::byte> readSectors(BlockKind kind, std::int32_t block, std::int32_t count) const;
  /// Bytes that the file system below can still take.
  std::int64_t roomOnHost() const;
  /// What the system tells of the folder and the files in it; nothing of the disc changes while it stays the same.
  void stamp(FolderStamp& stamp) const;

 private:
  /// The disc that these words describe; throws DamagedDisc or std::system_error where the files beside them differ.
  VirtualDisc understood(const std::string& ini) const;

  std::string name_;
  FileDescriptor folder_;
};

}  // namespace trackloom::engines::virtualrecorder

#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "engines/ground/OpenFiles.h"
#include "engines/virtual/VirtualDisc.h"

namespace trackloom::engines::virtualrecorder {

/// Bytes of one block in the file that holds this kind: user data of a sector in mode 1 (ECMA-130, clause 14), or a
/// whole sector of audio.
constexpr std::int32_t sectorBytes(BlockKind kind) {
  return kind == AudioBlocks ? 2352 : 2048;
}

/// One disc as a folder: disc.ini, and disc.bin with disc.cue or disc.iso once something is recorded.
class DiscFolder {
 public:
  DiscFolder(std::string name, FileDescriptor folder) : name_(std::move(name)), folder_(std::move(folder)) {}

  const std::string& name() const { return name_; }

  /// Throws DamagedDisc when disc.ini cannot be read or understood, or the files beside it are not exactly as long as
  /// it says: content that disc.ini does not know of would be written over.
  VirtualDisc load() const;
  /// Throws std::system_error; the old disc.ini then stands.
  void save(const VirtualDisc& disc) const;
  void saveCueSheet(const VirtualDisc& disc) const;
  /// The file of this kind of sectors, opened for writing, made when it is missing. Throws std::system_error.
  FileDescriptor openSectors(BlockKind kind) const;
  /// Takes the file of a write away that never began; one with content stays.
  void dropEmptySectors(BlockKind kind) const;
  /// Bytes that the file system below can still take.
  std::int64_t roomOnHost() const;

 private:
  /// The disc that these words describe; throws DamagedDisc or std::system_error where the files beside them differ.
  VirtualDisc understood(const std::string& ini) const;

  std::string name_;
  FileDescriptor folder_;
};

}  // namespace trackloom::engines::virtualrecorder

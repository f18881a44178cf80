#pragma once

#include <cstdint>
#include <optional>

#include "engines/virtual/DiscFolder.h"
#include "engines/virtual/RecorderSettings.h"
#include "runtime/Paths.h"

namespace trackloom::engines::virtualrecorder {

/// The folder of a recorder, opened for one look or one operation: recorder.ini, tray/ and shelf/. Whatever else lies
/// in them (files, links, names that begin with a dot) is no disc and is left alone. All calls throw std::system_error.
class RecorderFolder {
 public:
  explicit RecorderFolder(const HostPath& path) : folder_(openFolder(path.text)) {}

  /// Defaults for what is missing, unreadable or senseless; never throws for content.
  RecorderSettings settings() const;
  /// Nothing: the tray is empty, or two discs jam it.
  std::optional<DiscFolder> discInTray() const;
  FileDescriptor tray() const;
  FileDescriptor shelf() const;
  /// The shelf, made anew where it is missing.
  FileDescriptor makeShelf() const;
  /// What the system tells of all that a look at the recorder rests on.
  FolderStamp stamp() const;
  /// False: another operation has the recorder. Held until this object and all to whom it was moved are gone, or the
  /// process ends.
  bool lock() const;
  /// Whether an operation has the recorder. Not to be asked of the one that does.
  bool isBusy() const;
  /// Moves every disc in the tray to the shelf, under a new name where its own is taken there.
  void clearTray() const;
  /// No disc, no jam: a blank disc may come into it.
  bool trayIsEmpty() const;
  /// Puts a blank disc into the tray: the first blank CD-R of the shelf, else a new CD-R of 80 minutes.
  void feedBlank() const;
  /// Puts a new disc into the tray or onto the shelf, under a number above all others.
  void addDisc(const FileDescriptor& place, const VirtualDisc& disc) const;
  /// Makes what is missing of a recorder's folder; a new tray gets a blank disc.
  void layOut() const;

 private:
  bool feedFromShelf() const;
  /// One above all numbers that discs of this recorder bear.
  std::int32_t nextNumber() const;

  FileDescriptor folder_;
};

}  // namespace trackloom::engines::virtualrecorder

#pragma once

#include <string>

#include "runtime/Paths.h"

namespace trackloom {

class Batch;
struct Session;

/// What differs between the ways by which a track enters a layout.
struct AddTrackRules {
  /// Only names that end in .WAV or .MP3, whatever their case, are looked at.
  bool testExtension = false;
  bool testDuplicates = true;
  bool testLimit = true;
  /// A name on the disc is cut at 64 characters.
  bool shortenDiscName = true;
  /// "44khz Stereo Audio file" instead of "44khz Audio file" in the refusal.
  bool saysStereo = true;
};

inline constexpr AddTrackRules PickedFiles{};
inline constexpr AddTrackRules DroppedFiles{.testExtension = true, .saysStereo = false};
inline constexpr AddTrackRules LayoutFileTracks{
    .testDuplicates = false, .testLimit = false, .shortenDiscName = false, .saysStereo = false};

/// A file that wants to become a track: `folder` has its trailing separator and with `name` makes the source path.
struct Candidate {
  HostPath path;
  std::string folder;
  std::string name;
  std::string discFolder = "No Folder";
};

enum class AddOutcome { Added, NotAdded, LayoutTooBig };

/// Takes one candidate into the open layout: tests, queues, measures and lists it, with the boxes that belong to a
/// refusal. LayoutTooBig ends the caller's batch. Lets pending window events run after a row was added; any of them can
/// close the layout.
AddOutcome AddTrack(const Batch& batch, const Candidate& candidate, const AddTrackRules& rules);

/// The play time of one file as text, by the scratch engine.
std::string MeasureTrack(Session& session, const HostPath& path);

/// The name behind the last separator; leaves the part before it in PathFolder. Without a separator nothing changes.
std::string SplitPath(Session& session, const std::string& path);

}  // namespace trackloom

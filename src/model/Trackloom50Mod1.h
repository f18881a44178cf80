#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/OptionsRecord.h"

namespace trackloom {

/// The kinds of layout as `LayoutType` holds them; 0 stands only before the first layout.
inline constexpr std::int16_t AudioLayout = 1;
inline constexpr std::int16_t Mp3Layout = 2;

/// What a write pass is, as `WritePhase` holds it.
enum WritePhases : std::int16_t { NoWriteYet = 0, TestOnly = 1, TestBeforeWrite = 2, RealWrite = 3 };

/// What a listing is printed on, as `PrintStyle` holds it.
enum PrintStyles : std::int16_t { InsertTemplate = 1, StandardPage = 2 };

/// The state that all forms share. Any form may read and write any of it, on the UI thread.
struct Trackloom50Mod1 {
  /// The folder of the executable, with one trailing separator.
  std::string AppFolder;

  bool DriveOpen = false;
  std::int16_t CurrentDrive = 0;
  /// Free space of the inserted disc for the open layout's kind.
  std::int32_t DiscBlocks = 0;
  std::int32_t DiscBytes = 0;

  bool LayoutOpen = false;
  /// Keeps its value when a layout is closed.
  std::int16_t LayoutType = 0;
  bool LayoutSaved = true;
  bool LayoutHasFile = false;
  std::string LayoutFileName;
  std::string LayoutTotalText;
  std::int16_t NextTrackNumber = 1;
  bool TrackWontFit = false;
  /// The folder part that the last SplitPath left behind.
  std::string PathFolder;

  OptionsRecord Options;

  /// 1: frmFolder lists only the tracks in the root of the disc; 0: all tracks.
  std::int16_t ShowNoFolderOnly = 0;
  /// frmChooseSort was left by its Cancel.
  bool SortChoiceCancelled = false;

  bool RecordConfirmed = false;
  std::int16_t WritePhase = NoWriteYet;
  std::int16_t CopiesWanted = 0;
  std::int16_t CopiesDone = 0;
  std::string DiscVolumeLabel;
  std::string WriteSpeedText;
  bool WriteActive = false;
  bool IsoWriteActive = false;
  bool DiscCloseActive = false;
  /// Read where a close ends, and never set.
  std::int16_t DiscClosedOnly = 0;
  bool SessionAndDiscClosed = false;

  /// At least one track that was read for printing had no tag.
  bool TagsMissing = false;
  /// The play times of the tracks that were read for printing, in the order of the listing.
  std::vector<std::string> TrackTimes;
  std::int16_t TrackTimeCount = 0;
  std::string HeaderColour;
  std::string ListingFont;
  /// Points.
  std::int16_t ListingFontSize = 0;
  std::string PrintTitle;
  std::int16_t PrintStyle = 0;
};

}  // namespace trackloom

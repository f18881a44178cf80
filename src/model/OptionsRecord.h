#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace trackloom {

/// The image of `Options.dat`: one record of 276 bytes, integers little-endian. No value is ever validated.
struct OptionsRecord {
  static constexpr std::size_t Size = 276;
  static constexpr std::size_t FolderSize = 260;

  std::int16_t PromptSave = 0;
  /// Always 260 bytes: a folder padded with blanks, or NULs where a short file had no bytes.
  std::string LastFolder = std::string(FolderSize, '\0');
  std::int16_t SortMode = 0;
  std::int16_t SavedDrive = 0;
  std::int16_t ThemeColours = 0;
  /// The window in twips; all four 0 ask for a maximised one.
  std::int16_t WinWidth = 0;
  std::int16_t WinHeight = 0;
  std::int16_t WinLeft = 0;
  std::int16_t WinTop = 0;

  bool operator==(const OptionsRecord&) const = default;

  /// What a first start has.
  static OptionsRecord defaults();
  /// Missing bytes read as zero; bytes beyond the record are not looked at.
  static OptionsRecord decode(std::string_view bytes);
  std::string encode() const;

  /// Cuts at the last whole character that fits, and pads with blanks.
  void setLastFolder(std::string_view folder);
};

}  // namespace trackloom

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trackloom {

class DockStudio;

/// What `Trackloom.dsl` remembers of the bars: their arrangement in the desktop's own form, the look, and the texts and
/// values of the status tools.
struct DockState {
  struct ToolState {
    std::string name;
    std::string text;
    std::int32_t value;
    bool operator==(const ToolState&) const = default;
  };

  std::int32_t useThemeColours;
  std::string arrangement;
  std::vector<ToolState> tools;

  bool operator==(const DockState&) const = default;

  std::string encode() const;
  /// Nothing: the bytes are no whole dock state of this version.
  static std::optional<DockState> decode(std::string_view bytes);

  static DockState of(DockStudio& bars);
  void applyTo(DockStudio& bars) const;
};

}  // namespace trackloom

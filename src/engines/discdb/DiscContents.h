#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace trackloom::engines::discdb {

/// The names that a disc bears itself (CD-TEXT, IEC 61866), any of them empty.
struct DiscText {
  std::string artist;
  std::string title;
  /// In the order of the tracks.
  std::vector<std::string> titles;
};

/// What a look-up has to know of a disc. Addresses are blocks of 1/75 second, and 0 is the place 00:02:00.
struct DiscContents {
  /// Where the content of each track begins, in all sessions, data tracks too.
  std::vector<std::int32_t> starts;
  /// Where the last session's lead-out begins.
  std::int32_t leadOut = 0;
  DiscText text;
};

/// The contents of the disc in the drive of a letter; nothing: there is none. Called on other threads than the
/// window's; throws RuntimeError or EngineError.
using ContentsOf = std::function<std::optional<DiscContents>(const std::string& letter)>;

}  // namespace trackloom::engines::discdb

#pragma once

#include <cstdint>
#include <string>

namespace trackloom {

/// The commands of the help engine; behind each, what `data` is.
enum HelpCommand : std::uint32_t {
  HelpDisplayTopic = 0,      ///< a page's address as C text, null for the file's first page
  HelpDisplayContents = 1,   ///< nothing
  HelpDisplayIndex = 2,      ///< nothing
  HelpDisplaySearch = 3,     ///< a HelpQuery
  HelpKeywordLookup = 13,    ///< keywords as C text, parted by semicolons
  HelpTextPopup = 14,        ///< a HelpPopup
  HelpContext = 15,          ///< a topic's number
  HelpCloseAll = 18,         ///< nothing
  HelpAssociativeLink = 19,  ///< names as C text, parted by semicolons
};

/// What a search begins with.
struct HelpQuery {
  std::string text;
  std::string window;
};

/// A note that stands alone until the next click. Colours are red, green and blue from the lowest byte up.
struct HelpPopup {
  std::string file;
  std::int32_t id = 0;
  std::int16_t type = 0;
  std::string text;
  std::int32_t textColour = 0;
  std::int32_t backColour = 0;
  std::string font;
  /// Points.
  std::int16_t size = 0;
  bool bold = false;
  bool italic = false;
  bool underline = false;
};

/// A record or text as the engine's `data`.
inline std::intptr_t helpData(const void* data) {
  return reinterpret_cast<std::intptr_t>(data);
}

/// The help viewer: one entry, as the system's help engine has it.
class HelpEngine {
 public:
  virtual ~HelpEngine() = default;

  /// `target` is a help file, or a file, ">" and a window's name; `data` is what the command needs, and needs to live
  /// only for the call. Opens or reuses the window and returns at once; 0: nothing could be shown.
  virtual std::intptr_t HtmlHelp(std::intptr_t owner, const std::string& target, std::uint32_t command,
                                 std::intptr_t data) = 0;

  /// The window's next click asks what is under it.
  virtual void askWhatsThis(std::intptr_t window) = 0;
};

}  // namespace trackloom

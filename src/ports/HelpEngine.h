#pragma once

#include <cstdint>
#include <string>

namespace trackloom {

/// The commands of the help engine that the program gives.
enum HelpCommand : std::uint32_t { HelpDisplayContents = 1, HelpContext = 15 };

/// The help viewer: one entry, as the system's help engine has it.
class HelpEngine {
 public:
  virtual ~HelpEngine() = default;

  /// `target` is a help file, or a file, ">" and a window's name; `data` is what the command needs, such as a topic
  /// number. Opens or reuses the window and returns at once; 0: nothing could be shown.
  virtual std::intptr_t HtmlHelp(std::intptr_t owner, const std::string& target, std::uint32_t command,
                                 std::intptr_t data) = 0;
};

}  // namespace trackloom

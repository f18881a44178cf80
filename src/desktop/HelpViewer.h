#pragma once

#include <memory>
#include <string>

#include "ports/HelpBook.h"
#include "ports/HelpEngine.h"
#include "ports/ShellOpener.h"

namespace trackloom {

class HelpWindow;

/// The help engine of the desktop: one window, whichever name a target gives it, which is made at the first use and
/// used again by all others. A file is read when it is first asked for, and again when it has changed.
class HelpViewer final : public HelpEngine {
 public:
  HelpViewer(HelpBookReader reader, ShellOpener& opener);
  ~HelpViewer() override;

  std::intptr_t HtmlHelp(std::intptr_t owner, const std::string& target, std::uint32_t command,
                         std::intptr_t data) override;
  void askWhatsThis(std::intptr_t window) override;

 private:
  bool open(const std::string& file);
  void perform(std::uint32_t command, std::intptr_t data);
  void showTopic(std::int32_t number);
  void lookUp(const std::string& keyword);

  HelpBookReader reader_;
  ShellOpener& opener_;
  /// Which file, of which size and moment, the window shows.
  std::string known_;
  std::shared_ptr<const HelpBook> book_;
  std::unique_ptr<HelpWindow> window_;
};

}  // namespace trackloom

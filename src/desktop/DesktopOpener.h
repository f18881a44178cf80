#pragma once

#include <QUrl>
#include <string>

#include "ports/ShellOpener.h"

namespace trackloom {

/// Hands files, web pages and addresses of letters to the desktop's default program. No shell takes part, and the name
/// reaches the desktop as an address in which every special byte is escaped, so no name can be taken for an option or a
/// command.
class DesktopOpener final : public ShellOpener {
 public:
  void open(const ShellOrder& order) override;
};

/// What the desktop is asked to open for a path on this machine, the address of a web page or one to write to.
QUrl desktopAddress(const std::string& target);

}  // namespace trackloom

#pragma once

#include <string>

namespace trackloom {

/// An order to the system's default handler of a file or page.
struct ShellOrder {
  std::string verb;
  std::string file;
  std::string parameters;
  std::string folder;
  int showCommand = 0;
};

class ShellOpener {
 public:
  virtual ~ShellOpener() = default;
  /// Starts the handler and returns; no shell takes part, and nobody looks at the outcome.
  virtual void open(const ShellOrder& order) = 0;
};

}  // namespace trackloom

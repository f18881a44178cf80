#pragma once

#include <string>

namespace trackloom {

/// The running program as the system sees it.
class Process {
 public:
  virtual ~Process() = default;

  /// The folder of the executable, with or without its trailing separator.
  virtual std::string executableFolder() = 0;
  /// Another instance of this very executable is running.
  virtual bool isSecondInstance() = 0;
  /// Ends the process at once; no handler of any form runs any more. A test's process throws instead of ending.
  [[noreturn]] virtual void end(int status) = 0;
};

}  // namespace trackloom

#pragma once

#include <string>
#include <vector>

#include "runtime/Paths.h"

namespace trackloom {

/// The running program as the system sees it.
class Process {
 public:
  virtual ~Process() = default;

  /// The folder of the executable, with or without its trailing separator.
  virtual std::string executableFolder() = 0;
  /// Another instance of this very executable is running.
  virtual bool isSecondInstance() = 0;
  /// Folders outside of the program's own that may take a file in need, the best one first.
  virtual std::vector<HostPath> refuges() = 0;
  /// Tells whoever started the process, where nobody can be asked.
  virtual void tell(const std::string& words) = 0;
  /// Ends the process at once; no handler of any form runs any more. A test's process throws instead of ending.
  [[noreturn]] virtual void end(int status) = 0;
};

}  // namespace trackloom

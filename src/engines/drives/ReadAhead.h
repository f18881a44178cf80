#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ports/Drives.h"
#include "ports/Patience.h"

namespace trackloom::engines::drives {

/// Reads the folders of a drive breadth first on threads of its own, in the order in which they will be asked for and
/// only so far ahead that they take bounded memory. Nobody waits for the threads, which a drive may keep for ever.
class ReadAhead final : public DriveWalk {
 public:
  /// What one folder holds; called on any thread.
  using Reader = std::function<std::vector<FindRecord>(const std::string& folder)>;

  ReadAhead(std::string root, Reader reader, Patience& patience);
  ~ReadAhead() override;
  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;

  std::vector<FindRecord> entries(const std::string& folder) override;

 private:
  class Line;

  std::shared_ptr<Line> line_;
  Patience& patience_;
  /// The system had no thread to spare.
  bool alone_ = true;
};

}  // namespace trackloom::engines::drives

#pragma once

#include <memory>
#include <string_view>

namespace trackloom::fuzz {

/// One rip engine over a virtual recorder, to which the discs of all runs are given.
class DiscFolderTrial {
 public:
  DiscFolderTrial();
  ~DiscFolderTrial();
  DiscFolderTrial(const DiscFolderTrial&) = delete;
  DiscFolderTrial& operator=(const DiscFolderTrial&) = delete;

  /// Lists a disc whose disc.ini has these bytes, up to a NUL behind which recorder.ini may follow, with as many
  /// sectors beside it as the bytes ask for, and reads all of its sound. Aborts where a track lies outside of the disc,
  /// or more or less is read than was listed.
  void run(std::string_view bytes);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace trackloom::fuzz

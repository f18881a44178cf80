#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace trackloom::engines {

/// A CD drive of this machine that answered.
struct SeenDrive {
  /// Its device node, "/dev/sr0".
  std::string node;
  /// By what it is known again at a later start (driveId).
  std::string id;
  std::string vendor;
  std::string product;
  bool writesDiscs = false;
};

/// The nodes of CD drives that this machine has, /dev/sr0 first.
std::vector<std::string> driveNodes();

/// What drives there are: all nodes are asked at once, each on a thread of its own, from the moment that this is made.
/// A drive that hangs holds up neither the others nor anybody who waits no longer than he wants to; its thread ends by
/// itself when the drive answers.
class DriveSurvey {
 public:
  /// Throws EngineError with words for the user where the drive cannot be asked.
  using Ask = std::function<SeenDrive(const std::string& node)>;

  DriveSurvey(const std::vector<std::string>& nodes, Ask ask);

  /// True: all have answered, or cannot be asked.
  bool wait(std::chrono::milliseconds atMost) const;
  struct Result {
    /// Those that have answered, in the order of their nodes.
    std::vector<SeenDrive> seen;
    /// Of each other node why it cannot be used, in words.
    std::vector<std::string> unusable;
  };
  /// As it stands at this moment.
  Result result() const;

 private:
  struct Answers;

  std::shared_ptr<Answers> answers_;
};

}  // namespace trackloom::engines

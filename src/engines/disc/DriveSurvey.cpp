#include "engines/disc/DriveSurvey.h"

#include <unistd.h>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

#include "engines/ground/EngineError.h"

namespace trackloom::engines {

namespace {

constexpr int mostNodes = 16;

struct Asked {
  std::string node;
  std::optional<SeenDrive> seen;
  /// Empty: it has not answered yet, or has been seen.
  std::string refusal;

  bool answered() const { return seen || !refusal.empty(); }
};

}  // namespace

/// Shared with the threads, since a drive may hang for longer than anybody waits.
struct DriveSurvey::Answers {
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<Asked> drives;

  void put(std::size_t place, const Ask& ask) {
    Asked answer{drives[place].node, std::nullopt, {}};
    try {
      answer.seen = ask(answer.node);
    } catch (const EngineError& error) {
      answer.refusal = error.words();
    }
    const std::lock_guard lock(mutex);
    drives[place] = std::move(answer);
    changed.notify_all();
  }
};

std::vector<std::string> driveNodes() {
  std::vector<std::string> nodes;
  for (int number = 0; number < mostNodes; ++number) {
    const std::string node = "/dev/sr" + std::to_string(number);
    if (::access(node.c_str(), F_OK) == 0) nodes.push_back(node);
  }
  return nodes;
}

DriveSurvey::DriveSurvey(const std::vector<std::string>& nodes, Ask ask) : answers_(std::make_shared<Answers>()) {
  for (const std::string& node : nodes) answers_->drives.push_back({node, std::nullopt, {}});
  for (std::size_t place = 0; place < nodes.size(); ++place) try {
      std::thread([answers = answers_, place, ask] { answers->put(place, ask); }).detach();
    } catch (const std::system_error& error) {
      const std::lock_guard lock(answers_->mutex);
      answers_->drives[place].refusal = "the drive " + nodes[place] + " cannot be asked: " + error.what();
    }
}

bool DriveSurvey::wait(std::chrono::milliseconds atMost) const {
  std::unique_lock lock(answers_->mutex);
  return answers_->changed.wait_for(lock, atMost, [this] {
    for (const Asked& drive : answers_->drives)
      if (!drive.answered()) return false;
    return true;
  });
}

DriveSurvey::Result DriveSurvey::result() const {
  const std::lock_guard lock(answers_->mutex);
  Result result;
  for (const Asked& drive : answers_->drives) {
    const std::string silence =
        "the drive " + drive.node + " does not answer; it is looked for again at the next start";
    if (drive.seen)
      result.seen.push_back(*drive.seen);
    else
      result.unusable.push_back(drive.refusal.empty() ? silence : drive.refusal);
  }
  return result;
}

}  // namespace trackloom::engines

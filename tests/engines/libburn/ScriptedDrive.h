#pragma once

#include <scsi/sg.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "engines/libburn/Node.h"
#include "fakes/TempFolder.h"

namespace trackloom::engines::libburn {

/// How a drive answers one command. Other bytes of its answers are 0xEE.
struct Answer {
  /// What it tells, which may be less than there is room for.
  Reply bytes = {};
  /// 0xKKCCQQ; 0: it succeeds.
  std::int32_t sense = 0;
  /// In place of the sense: the bytes in which it tells one, which may be none.
  std::vector<std::uint8_t> senseBytes = {};
  int status = 0;
  int hostStatus = 0;
  /// errno of a node that is gone.
  int error = 0;
  /// What it says is left of the room, where that is not the truth.
  int leftTold = 0;
};

/// How often this thread has slept for a while.
int napsTaken();

/// While this lives, what drives tell this thread is changed before anybody reads it.
class AlteredAnswers {
 public:
  /// Called with the first byte of each command that asks for something, and with the room for its answer.
  using Alter = std::function<void(std::uint8_t command, std::uint8_t* answer)>;

  explicit AlteredAnswers(Alter alter);
  AlteredAnswers(const AlteredAnswers&) = delete;
  AlteredAnswers& operator=(const AlteredAnswers&) = delete;
  ~AlteredAnswers();
};

inline Answer failing(std::int32_t sense) {
  return {.sense = sense};
}

/// A drive that answers the commands of this thread one by one as a test tells it to, and succeeds behind that. Its
/// notes are each command as the system gets it, with the room for its answer ("<36") or the bytes that it sends
/// (">4"), "slow" where it may take 200 seconds, and each nap, which takes no time.
class ScriptedDrive {
 public:
  ScriptedDrive();
  ScriptedDrive(const ScriptedDrive&) = delete;
  ScriptedDrive& operator=(const ScriptedDrive&) = delete;
  ~ScriptedDrive();

  std::string path() const { return folder_.path() + "/node"; }
  void answer(std::vector<Answer> answers) { answers_.assign(answers.begin(), answers.end()); }
  /// Those since the last call.
  std::vector<std::string> notes();
  void note(const std::string& what) { notes_.push_back(what); }

  /// What was sent last.
  Reply sent;
  /// Of the descriptor through which the last command came: its access with O_NONBLOCK, and FD_CLOEXEC.
  int access = 0;
  int descriptor = 0;

  int run(int fd, sg_io_hdr& header);

 private:
  fakes::TempFolder folder_;
  std::deque<Answer> answers_;
  std::vector<std::string> notes_;
};

}  // namespace trackloom::engines::libburn

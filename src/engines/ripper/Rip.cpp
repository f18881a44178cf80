#include "engines/ripper/Rip.h"

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

#include "engines/ripper/RipTeller.h"
#include "engines/ripper/TrackReader.h"
#include "engines/ripper/TrackWorker.h"
#include "runtime/Files.h"
#include "runtime/Statements.h"

namespace trackloom::engines::ripper {

namespace {

/// What hangs is not waited for any longer when a rip ends, and when it was cancelled; together with the way to the
/// window a cancel is then felt within 300 ms.
constexpr std::chrono::milliseconds patienceWithThreads{150};
constexpr std::chrono::milliseconds patienceWithEnd{220};

/// One of the threads that the board counts. Nobody waits for its end.
void startThread(const std::shared_ptr<RipBoard>& board, std::function<void()> work) {
  board->threadComes();
  try {
    std::thread([board, work = std::move(work)]() mutable {
      work();
      work = nullptr;
      board->threadGoes();
    }).detach();
  } catch (const std::system_error&) {
    board->threadGoes();
    throw;
  }
}

}  // namespace

Rip::Rip(RipRequest request, RipFacts facts, EventQueue& queue, std::shared_ptr<RipListener> listener)
    : request_(std::move(request)),
      facts_(std::move(facts)),
      board_(request_.tracks.size()),
      events_(std::make_shared<RipEvents>(queue, std::move(listener))) {}

void Rip::start(DriveUse use, Wakefulness::Hold awake) {
  use_ = std::move(use);
  awake_ = std::move(awake);
  events_->raise([](CDRipperEvents& listener) { listener.RipStarted(); },
                 [self = shared_from_this()](EventFate fate) {
                   if (fate == EventFate::Told)
                     self->launch();
                   else
                     self->silence();
                 });
}

void Rip::launch() {
  if (board_.cancelled()) return end({});
  try {
    std::thread([self = shared_from_this()] { self->tell(); }).detach();
  } catch (const std::system_error&) {
    events_->status(status::noBuffer, 0);
    end({});
  }
}

void Rip::takeNames() {
  RipNames names;
  for (RipTrack& track : request_.tracks) track.target = names.nameFor(track.target);
}

/// Reader first: without a worker nothing is made, and the teller is told so by whom it cannot start.
void Rip::startThreads() {
  const std::shared_ptr<RipBoard> board(shared_from_this(), &board_);
  startThread(board, [self = shared_from_this(), use = use_] { readTracks(self->request_, self->board_); });
  const std::size_t workers = std::clamp<std::size_t>(request_.cores, 1, request_.tracks.size());
  for (std::size_t worker = 0; worker < workers; ++worker)
    startThread(board, [self = shared_from_this()] { workAtTracks(self->request_, self->board_); });
}

void Rip::tell() {
  RipTeller teller(request_, board_, *events_);
  try {
    takeNames();
    startThreads();
    teller.run();
  } catch (const Stopped&) {
    // What was told so far stands.
  } catch (const std::system_error&) {
    events_->status(status::noBuffer, 0);
    board_.cancel();
  } catch (const std::bad_alloc&) {
    events_->status(status::noBuffer, 0);
    board_.cancel();
  }
  end(teller.told());
}

/// A worker that a slow disk keeps removes its file too late for the eyes of who cancelled.
void Rip::removeFilesLeft() {
  for (const HostPath& file : board_.filesLeft()) skipOnError([&] { DeleteFile(file); });
}

void Rip::end(const std::vector<RippedTrack>& told) {
  board_.release();
  board_.awaitThreads(patienceWithThreads);
  removeFilesLeft();
  if (request_.log) addToRipLog(ripReport(request_, facts_, told), told);
  use_.reset();
  awake_.reset();
  // The threads that held the sound have gone, and their memory would stay with the process.
  ::malloc_trim(0);
  board_.endTelling();
  events_->finish();
}

void Rip::cancel() {
  if (over()) return;
  // Before any thread hears of it, since the first one that does may tell the end.
  events_->cut(status::cancelled);
  board_.cancel();
  try {
    std::thread([self = shared_from_this()] {
      self->board_.awaitEndOfTelling(patienceWithEnd);
      self->events_->finish();
    }).detach();
  } catch (const std::system_error&) {
    // Then the end comes when the rip itself has ended.
  }
}

void Rip::silence() {
  board_.cancel();
  events_->silence();
}

}  // namespace trackloom::engines::ripper

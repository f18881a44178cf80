#pragma once

#include <functional>
#include <future>
#include <stop_token>
#include <thread>
#include <variant>

#include "engines/ground/EngineError.h"
#include "ports/Patience.h"

namespace trackloom::engines::writer {

struct Done {};
struct Cancelled {};

/// How an operation ended.
using Outcome = std::variant<Done, Cancelled, EngineError>;

/// Runs an operation to its end, whatever it throws.
Outcome outcomeOf(const std::function<void()>& operation);

/// An operation at a drive on a thread of its own. It ends in exactly one outcome, which that thread tells once the
/// drive is free.
class Job {
 public:
  using Operation = std::function<void(const std::stop_token& stop)>;

  /// Throws std::system_error when no thread can be had.
  Job(Operation operation, std::function<void(const Outcome&)> ended);
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  /// Stops the operation, and returns when the drive has stopped.
  void cancel(Patience& patience);

 private:
  std::promise<void> told_;
  std::future<void> end_ = told_.get_future();
  std::jthread thread_;
};

}  // namespace trackloom::engines::writer

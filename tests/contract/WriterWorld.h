#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "fakes/WriterTranscript.h"
#include "ports/CDWriterXP.h"

namespace trackloom::contract {

/// An engine with one drive, which has a blank 80-minute disc in it, and what a test needs around it.
class WriterWorld {
 public:
  virtual ~WriterWorld() = default;

  /// The instance that has the drive, with nothing queued and nothing set.
  virtual CDWriterXP& real() = 0;
  /// Another instance of the same machine, without a drive.
  virtual CDWriterXP& scratch() = 0;
  /// What the first instance told.
  virtual fakes::WriterTranscript& heard() = 0;

  /// Lets events arrive until `done`; False: it never was.
  virtual bool runUntil(const std::function<bool()>& done) = 0;
  /// Lets the events arrive that are under way.
  virtual void runPosted() = 0;
  /// From now on a write takes its time: more than ten milliseconds for a block.
  virtual void slowDown() = 0;

  /// A file that the engine takes as audio of so many blocks.
  virtual HostPath audioFile(const std::string& name, std::int32_t blocks) = 0;
  /// A file that is no audio.
  virtual HostPath plainFile(const std::string& name, std::int64_t bytes) = 0;
};

}  // namespace trackloom::contract

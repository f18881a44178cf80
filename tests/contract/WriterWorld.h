#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "fakes/WriterTranscript.h"
#include "ports/CDWriterXP.h"

namespace trackloom::contract {

/// What not every engine can do yet. A rule that needs it is passed over where the world lacks it.
enum class Ability {
  /// Fails in every phase of every operation, and not in writing alone.
  Faults,
  /// Refuses a second operation while one runs.
  Busyness
};

/// Where an operation is told to fail, and what it then tells.
struct Fault {
  enum class Place { Block, Cache, TrackClosing, SessionClosing, DiscClosing, Erase, Eject };

  Place place = Place::Block;
  /// Of a write that goes onto a blank disc, and of its cache.
  std::int32_t block = 0;
  std::int32_t code = DeviceError;
  std::int32_t number = 0x030C00;
  std::string words = "smoke";
};

/// An engine with one drive, which has a blank 80-minute disc in it, and what a test needs around it.
class WriterWorld {
 public:
  virtual ~WriterWorld() = default;

  virtual bool can(Ability ability) const = 0;
  /// All tracks of a cached write are in the cache before the first is written, not each when its turn comes.
  virtual bool cachesAllFirst() const { return false; }

  /// The instance that has the drive, with nothing queued and nothing set.
  virtual CDWriterXP& real() = 0;
  /// Another instance of the same machine, without a drive.
  virtual CDWriterXP& scratch() = 0;
  /// What either instance told.
  virtual fakes::WriterTranscript& heard() = 0;
  virtual fakes::WriterTranscript& heardScratch() = 0;

  /// Lets events arrive until `done`; False: it never was.
  virtual bool runUntil(const std::function<bool()>& done) = 0;
  /// Lets the events arrive that are under way.
  virtual void runPosted() = 0;
  /// From now on a write takes its time: more than ten milliseconds for a block.
  virtual void slowDown() = 0;

  /// Puts a blank disc of so many blocks into the drive, in the place of any other.
  virtual void insert(std::int32_t blocks, bool rewritable = false) = 0;
  /// Leaves the drive without a disc, and nothing puts one in but `insert`.
  virtual void takeDiscOut() = 0;
  /// From now on the drive cannot be selected, its tray does not open, or neither.
  virtual void refuse(bool select, bool eject) = 0;
  /// From now on this fails; without Ability::Faults, of its places `Block` alone, of its codes the device's.
  virtual void fail(const Fault& fault) = 0;
  /// From now on nothing fails.
  virtual void heal() = 0;

  /// How many tracks have been recorded on the disc in the drive.
  virtual std::size_t tracksOnDisc() = 0;

  /// A file that the engine takes as audio of so many blocks.
  virtual HostPath audioFile(const std::string& name, std::int32_t blocks) = 0;
  /// A file that is no audio.
  virtual HostPath plainFile(const std::string& name, std::int64_t bytes) = 0;
  virtual void vanish(const HostPath& file) = 0;
  /// A path in a folder of the world's own, at which nothing is yet.
  virtual HostPath place(const std::string& name) = 0;
};

}  // namespace trackloom::contract

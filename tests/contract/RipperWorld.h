#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "fakes/RipperTranscript.h"
#include "ports/CDRipperX.h"

namespace trackloom::contract {

/// What not every rip engine or drive can do. A rule that needs it is passed over where the world lacks it.
enum class RipAbility {
  /// Files hold the disc's own sound.
  Sound,
  /// Sectors can be told to be unreadable, or readable at the second try.
  BadSectors,
  /// The drive can be told to hang at a sector.
  Hanging
};

/// A track of the disc that a rule asks for, in sectors.
struct DiscPart {
  bool audio = true;
  std::int32_t start = 0;
  std::int32_t length = 0;
};

/// An engine with one drive, a folder for files, and what a test needs around them.
class RipperWorld {
 public:
  virtual ~RipperWorld() = default;

  virtual bool can(RipAbility ability) const = 0;
  virtual CDRipperX& ripper() = 0;
  virtual Mp3Stream& encoder() = 0;
  virtual fakes::RipperTranscript& heard() = 0;
  /// Lets events arrive until `done`; False: it never was.
  virtual bool runUntil(const std::function<bool()>& done) = 0;
  /// Lets all events arrive that still come.
  virtual void settle() = 0;

  /// Puts a disc of these tracks into the drive, in the place of any other.
  virtual void insert(const std::vector<DiscPart>& tracks) = 0;
  virtual void takeDiscOut() = 0;
  /// From now on the drive cannot be taken into use.
  virtual void refuseDrive() = 0;
  /// From now on the sector cannot be read; a drive that hangs there does so until the world goes.
  virtual void spoil(std::int32_t sector) = 0;
  virtual void makeHang(std::int32_t sector) = 0;
  /// What the disc holds there, 2352 bytes a sector.
  virtual std::string soundOf(std::int32_t sector, std::int32_t count) = 0;
  /// A path in a folder that is there.
  virtual HostPath out(const std::string& name) = 0;
};

}  // namespace trackloom::contract

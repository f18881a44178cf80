#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "ports/DiscDatabase.h"

namespace trackloom::fakes {

struct FakeRipDrive {
  std::string letter = "D";
  std::string vendor = "ACME";
  std::string model = "Reader";
  std::int16_t maxSpeed = 10;
  bool refuses = false;
};

/// In sectors.
struct FakeRipTrack {
  std::int32_t start = 0;
  std::int32_t length = 0;
  bool audio = true;
};

/// What all fake rip engines, encoders and disc databases of one machine share: drives, disc, what the database knows,
/// and a transcript of the calls.
struct RipperStage {
  RipperStage();
  ~RipperStage();

  std::vector<FakeRipDrive> drives;
  /// Nothing: no drive has a disc.
  std::optional<std::vector<FakeRipTrack>> disc;
  bool contentsReadable = true;
  std::vector<DiscRecord> matches;
  /// The codes that are told of a track, by its number, in the middle of it; one that ends a track spoils it.
  std::map<std::int16_t, std::vector<std::int32_t>> trouble;
  std::vector<std::string> transcript;
  /// Hears each line of the transcript as it comes.
  std::function<void(const std::string&)> onLine;
  /// The calls at which an error is raised instead of an answer, by the name that the transcript has for them.
  std::set<std::string> broken;

  void note(const std::string& call, const std::string& arguments = "");
  /// For calls too many to be noted.
  void breakAt(const std::string& call) const;
  /// The part of the transcript since the last call.
  std::vector<std::string> take();
};

}  // namespace trackloom::fakes

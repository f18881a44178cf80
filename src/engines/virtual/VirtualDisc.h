#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "engines/disc/WriteOrder.h"

namespace trackloom::engines::virtualrecorder {

/// Discs of 74 and 80 minutes, in blocks.
inline constexpr std::int32_t blocksOf74Minutes = 332849;
inline constexpr std::int32_t blocksOf80Minutes = 359849;

/// One track; `start` is the first block of its content, and the pre-gap lies before it.
struct VirtualTrack {
  BlockKind kind = AudioBlocks;
  std::int32_t start = 0;
  std::int32_t length = 0;
  std::int32_t pregap = 0;
  DiscName name = {};

  std::int32_t end() const { return start + length; }
  bool operator==(const VirtualTrack&) const = default;
};

struct VirtualSession {
  bool closed = false;
  std::vector<VirtualTrack> tracks;

  bool operator==(const VirtualSession&) const = default;
};

/// What disc.ini says makes no sense, or does not fit the files beside it; the words say where.
class DamagedDisc : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What is recorded on a disc and what it is made of, as disc.ini tells it. Its laws: a blank disc has no sessions and
/// any other has; only the last session of an open disc may be incomplete; the tracks follow one another without
/// overlap and end within the disc, and only a closed disc has some of both kinds. A disc whose write did not end keeps
/// the tracks that it had before, and is lost for writing.
struct VirtualDisc {
  enum class Medium { CdR, CdRw };
  enum class Status { Blank, Open, Closed, Writing };

  Medium medium = Medium::CdR;
  std::int32_t audioBlocks = blocksOf80Minutes;
  std::int32_t dataBlocks = blocksOf80Minutes;
  Status status = Status::Blank;
  DiscName name = {};
  std::vector<VirtualSession> sessions;

  /// Throws DamagedDisc for whatever does not keep the laws.
  static VirtualDisc parse(std::string_view ini);
  std::string ini() const;
  /// The cue sheet of an audio disc for disc.bin, as the CDRWIN manual defines it.
  std::string cueSheet() const;

  bool operator==(const VirtualDisc&) const = default;
  std::int32_t capacity(BlockKind kind) const { return kind == AudioBlocks ? audioBlocks : dataBlocks; }
  std::vector<VirtualTrack> tracks() const;
  /// The first block behind all content.
  std::int32_t end() const;
  /// The first block behind all content of this kind; 0: it has none.
  std::int32_t end(BlockKind kind) const;
  /// The kind of its first track; nothing: it has none.
  std::optional<BlockKind> kind() const;
  bool isMixed() const { return end(AudioBlocks) > 0 && end(DataBlocks) > 0; }
  DiscState state() const;
  /// This disc as it will be after the order. Throws EngineError when the order makes no sense or the disc cannot take
  /// it.
  VirtualDisc afterWriting(const WriteOrder& order) const;
  /// This disc with its last session closed, and with `alsoDisc` the disc. Throws EngineError unless that session is
  /// incomplete.
  VirtualDisc afterClosing(bool alsoDisc) const;
  /// The same medium, blank. Throws EngineError for one that can be written once only.
  VirtualDisc erased() const;
};

/// What a look answers for a disc that nobody can make sense of.
DiscState stateOfDamagedDisc();

}  // namespace trackloom::engines::virtualrecorder

#pragma once

#include "Bytes.h"
#include "Command.h"
#include "Disc.h"
#include "Settings.h"

namespace emulated {

enum class WriteType : std::uint8_t { Packet = 0, TrackAtOnce = 1, SessionAtOnce = 2, Raw = 3 };

/// The mode pages of a CD recorder (MMC-3, 6.3): 01 error recovery, 05 write parameters, 2A capabilities. Only page 05
/// takes what the host sends.
class Pages {
 public:
  WriteType writeType() const { return static_cast<WriteType>(write_[2] & 0x0FU); }
  bool test() const { return (write_[2] & 0x10U) != 0; }
  std::uint8_t control() const { return write_[3] & 0x0FU; }
  bool nextSessionAllowed() const { return (write_[3] & 0xC0U) == 0xC0U; }
  /// The sectors of a track written at once; throws CheckCondition for what no recorder here takes.
  Kind kind() const;

  /// MODE SENSE of six or of ten bytes.
  Bytes tell(const Command& command, const Settings& settings) const;
  /// MODE SELECT of six or of ten bytes.
  void take(const Command& command, const Settings& settings);
  std::uint32_t speed(const Settings& settings) const { return speed_ == 0 ? settings.speed : speed_; }
  /// In kilobytes a second, as SET CD SPEED has it; 0xFFFF is the most.
  void setSpeed(std::uint32_t kilobytes, const Settings& settings);

 private:
  Bytes capabilities(const Settings& settings) const;
  void takeWritePage(View page, const Settings& settings);

  Bytes write_ = Bytes{0x05, 0x32, 0x41, 0xC4, 0x08, 0x10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x96};
  std::uint32_t speed_ = 0;

 public:
  Pages() { write_.resize(0x34); }
};

}  // namespace emulated

#pragma once

#include <memory>
#include <string>

#include "engines/disc/ReadingDrive.h"
#include "engines/ripper/CdNode.h"

struct cdrom_drive_s;
struct cdrom_paranoia_s;

namespace trackloom::engines::ripper {

/// Reads a disc through libcdio's paranoia. What the library repairs is no trouble; a read that fails and is made again
/// is; a sector that is given up ends the reading with EngineError, since its sound is lost.
class ParanoiaReading final : public DiscReading {
 public:
  /// Throws EngineError.
  ParanoiaReading(const std::string& path, const LibraryLock& library, std::int16_t speed);
  ~ParanoiaReading() override;

  std::vector<std::byte> read(std::int32_t sector, std::int32_t count, const TroubleWatch& watch,
                              const std::stop_token& stop) override;

 private:
  struct CloseDrive {
    void operator()(cdrom_drive_s* drive) const;
  };
  struct FreeParanoia {
    void operator()(cdrom_paranoia_s* paranoia) const;
  };

  void readNext(std::vector<std::byte>& sound);

  CdNode node_;
  std::unique_ptr<cdrom_drive_s, CloseDrive> drive_;
  std::unique_ptr<cdrom_paranoia_s, FreeParanoia> paranoia_;
  /// The sector that the library gives next; below 0: it was not begun.
  std::int32_t next_ = -1;
};

}  // namespace trackloom::engines::ripper

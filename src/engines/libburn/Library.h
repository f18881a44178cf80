#pragma once

#include <libburn/libburn.h>

#include <memory>
#include <string>

#include "engines/ground/EngineError.h"

namespace trackloom::engines::libburn {

/// A drive in the hands of the library, which holds it alone until this goes. Drives are taken and given back one at a
/// time.
class GrabbedDrive {
 public:
  /// Throws EngineError where the drive is held by another program or cannot be had.
  explicit GrabbedDrive(const std::string& path);
  GrabbedDrive(const GrabbedDrive&) = delete;
  GrabbedDrive& operator=(const GrabbedDrive&) = delete;
  ~GrabbedDrive();

  burn::burn_drive* get() const { return infos_[0].drive; }

 private:
  burn::burn_drive_info* infos_ = nullptr;
};

/// Forgets what the library said until now.
void forgetMessages();
/// What the library last said went wrong, with the drive's sense where it stands in its words; `otherwise`, where it
/// said nothing.
EngineError lastFailure(const std::string& what, std::int32_t otherwise);
/// The number 0xKKCCQQ of a sense that stands between brackets in words such as "SCSI error: [3 0C 00] Medium error";
/// 0: there is none.
std::int32_t senseIn(const std::string& words);

struct FreeDisc {
  void operator()(burn::burn_disc* disc) const { burn::burn_disc_free(disc); }
};
struct FreeSession {
  void operator()(burn::burn_session* session) const { burn::burn_session_free(session); }
};
struct FreeTrack {
  void operator()(burn::burn_track* track) const { burn::burn_track_free(track); }
};
struct FreeOptions {
  void operator()(burn::burn_write_opts* options) const { burn::burn_write_opts_free(options); }
};
using OwnedDisc = std::unique_ptr<burn::burn_disc, FreeDisc>;
using OwnedSession = std::unique_ptr<burn::burn_session, FreeSession>;
using OwnedTrack = std::unique_ptr<burn::burn_track, FreeTrack>;
using OwnedOptions = std::unique_ptr<burn::burn_write_opts, FreeOptions>;

}  // namespace trackloom::engines::libburn

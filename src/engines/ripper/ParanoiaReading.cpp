#include "engines/ripper/ParanoiaReading.h"

#include <cdio/paranoia/cdda.h>
#include <cdio/paranoia/paranoia.h>

#include <span>
#include <utility>

#include "engines/disc/Sense.h"

namespace trackloom::engines::ripper {

namespace {

constexpr int mostRetries = 20;

using ReadAudio = long (*)(cdrom_drive_t*, void*, lsn_t, long);

/// The reading that this thread is in. The library calls back without telling for whom.
struct Current {
  const TroubleWatch& watch;
  const std::stop_token& stop;
  ReadAudio readAudio;
  bool readError = false;
  bool givenUp = false;
};
thread_local Current* current = nullptr;

/// In the place of the drive's own read: once the rip was cancelled the library's retries end at once.
long readUnlessStopped(cdrom_drive_t* drive, void* target, lsn_t sector, long count) {
  constexpr long stopped = -7;
  if (current->stop.stop_requested()) return stopped;
  return current->readAudio(drive, target, sector, count);
}

void hear(long position, paranoia_cb_mode_t what) {
  const auto sector = static_cast<std::int32_t>(position / CD_FRAMEWORDS);
  if (current->stop.stop_requested()) return;
  if (what == PARANOIA_CB_READERR) {
    current->readError = true;
    current->watch(ReadTrouble::Retrying, sector);
  }
  if (what == PARANOIA_CB_SKIP) {
    current->givenUp = true;
    current->watch(current->readError ? ReadTrouble::RetryFailed : ReadTrouble::Jitter, sector);
  }
}

EngineError unreadable(std::int32_t sector) {
  return deviceError(sense::readError, "sector " + std::to_string(sector) + " cannot be read");
}

}  // namespace

void ParanoiaReading::CloseDrive::operator()(cdrom_drive_s* drive) const {
  cdio_cddap_close(drive);
}

void ParanoiaReading::FreeParanoia::operator()(cdrom_paranoia_s* paranoia) const {
  cdio_paranoia_free(paranoia);
}

ParanoiaReading::ParanoiaReading(const std::string& path, const LibraryLock& library, std::int16_t speed)
    : node_(path, CdNode::Hold::Alone) {
  if (!node_.hasDisc()) throw deviceError(sense::noMedium, "no disc is in the drive " + path);
  const std::lock_guard lock(*library);
  char* message = nullptr;
  drive_.reset(cdio_cddap_identify(path.c_str(), CDDA_MESSAGE_FORGETIT, &message));
  if (!drive_) throw deviceError(sense::notReady, "the drive " + path + " cannot be read");
  cdio_cddap_verbose_set(drive_.get(), CDDA_MESSAGE_FORGETIT, CDDA_MESSAGE_FORGETIT);
  // Left alone, the library guesses the order of bytes from the music.
  drive_->bigendianp = 0;
  if (cdio_cddap_open(drive_.get()) != 0) throw deviceError(sense::notReady, "the disc in " + path + " cannot be read");
  node_.setSpeed(speed);
  paranoia_.reset(cdio_paranoia_init(drive_.get()));
  cdio_paranoia_modeset(paranoia_.get(), PARANOIA_MODE_FULL ^ PARANOIA_MODE_NEVERSKIP);
}

ParanoiaReading::~ParanoiaReading() = default;

std::vector<std::byte> ParanoiaReading::read(std::int32_t sector, std::int32_t count, const TroubleWatch& watch,
                                             const std::stop_token& stop) {
  Current mine{watch, stop, drive_->read_audio};
  current = &mine;
  drive_->read_audio = readUnlessStopped;
  if (next_ != sector) cdio_paranoia_seek(paranoia_.get(), sector, SEEK_SET);
  next_ = sector;
  std::vector<std::byte> sound;
  while (next_ < sector + count && !mine.givenUp && !stop.stop_requested()) readNext(sound);
  drive_->read_audio = mine.readAudio;
  current = nullptr;
  if (stop.stop_requested()) throw Stopped();
  if (!mine.givenUp && next_ == sector + count) return sound;
  const std::int32_t bad = std::exchange(next_, -1);
  if (!node_.hasDisc()) throw deviceError(sense::noMedium, "the disc is no longer in the drive");
  throw unreadable(bad);
}

/// Where the library gives nothing, the sector counts as given up.
void ParanoiaReading::readNext(std::vector<std::byte>& sound) {
  const std::int16_t* samples = cdio_paranoia_read_limited(paranoia_.get(), hear, mostRetries);
  if (samples == nullptr) {
    current->givenUp = true;
    return;
  }
  const auto bytes = std::as_bytes(std::span(samples, CD_FRAMEWORDS));
  sound.insert(sound.end(), bytes.begin(), bytes.end());
  ++next_;
}

}  // namespace trackloom::engines::ripper

#include "Address.h"
#include "Drive.h"
#include "Identity.h"
#include "Reading.h"
#include "Tables.h"

namespace emulated {

namespace {

/// While a write keeps up with the drive its buffer is nearly full.
constexpr std::uint32_t bufferBytes = 2 << 20;

}  // namespace

Bytes Drive::testUnitReady(const Command&) {
  return {};
}

Bytes Drive::nothing(const Command&) {
  return {};
}

Bytes Drive::requestSense(const Command& command) {
  const Sense told = background_ ? background_->sense : std::exchange(lastSense_, sense::none);
  Answer answer(18);
  answer.put(0, 0x70, 1).put(2, told.key, 1).put(7, 10, 1).put(12, told.code, 1).put(13, told.qualifier, 1);
  return answer.upTo(command[4]);
}

Bytes Drive::inquiry(const Command& command) {
  return emulated::inquiry(command, settings_);
}

/// With LoEj it opens or closes the tray.
Bytes Drive::startStop(const Command& command) {
  const bool start = (command[4] & 1U) != 0;
  if ((command[4] & 2U) == 0) return {};
  require(start || !locked_, sense::removalPrevented);
  require(start || !settings_.trayStuck, sense::trayStuck);
  const std::filesystem::path out = folder_ / "out";
  const bool lying = std::filesystem::exists(out);
  if (start && lying && !medium_) std::filesystem::rename(out, tray());
  if (!start && medium_) {
    std::filesystem::remove_all(out);
    std::filesystem::rename(tray(), out);
  }
  look();
  attention_.reset();
  return {};
}

Bytes Drive::preventRemoval(const Command& command) {
  locked_ = (command[4] & 1U) != 0;
  if (!locked_) endRehearsal();
  return {};
}

Bytes Drive::formatCapacities(const Command& command) {
  return emulated::formatCapacities(command, medium_->disc);
}

Bytes Drive::capacity(const Command& command) {
  return emulated::capacity(command, medium_->disc);
}

Bytes Drive::readBlocks(const Command& command) {
  return emulated::readBlocks(command, medium_->disc, medium_->sectors);
}

Bytes Drive::readSectors(const Command& command) {
  return emulated::readSectors(command, medium_->disc, medium_->sectors);
}

Bytes Drive::write(const Command& command) {
  rehearseIfTold();
  writing_.write(command, *medium_, pages_);
  pace(static_cast<std::int32_t>(command[0] == 0xAA ? command.number(6, 4) : command.number(7, 2)));
  return {};
}

Bytes Drive::synchronize(const Command&) {
  if (writing_.synchronize(*medium_, pages_, settings_)) endRehearsal();
  return {};
}

Bytes Drive::subChannel(const Command& command) {
  return emulated::subChannel(command);
}

Bytes Drive::table(const Command& command) {
  return tableOfContents(command, medium_->disc, medium_->sectors);
}

Bytes Drive::configuration(const Command& command) {
  return emulated::configuration(command, settings_, discOrNothing());
}

/// Class 4, the medium; of all others nothing is told (MMC-3, 6.7).
Bytes Drive::events(const Command& command) {
  require((command[1] & 1U) != 0, sense::badField);
  Answer answer(4);
  answer.put(3, 0x10, 1);
  if ((command[4] & 0x10U) == 0) return answer.put(2, 0x80, 1).length(0, 2).upTo(command.number(7, 2));
  const bool open = !medium_ && std::filesystem::exists(folder_ / "out");
  answer.put(2, 4, 1).add(std::exchange(mediumNews_, false) ? (medium_ ? 2 : 3) : 0);
  answer.add(medium_ ? 2 : open ? 1 : 0).add(0, 2);
  return answer.length(0, 2).upTo(command.number(7, 2));
}

Bytes Drive::discInformation(const Command& command) {
  return emulated::discInformation(command, medium_->disc);
}

Bytes Drive::trackInformation(const Command& command) {
  return emulated::trackInformation(command, medium_->disc, pages_);
}

Bytes Drive::reserve(const Command& command) {
  writing_.reserve(command, *medium_, pages_);
  return {};
}

Bytes Drive::calibrate(const Command&) {
  require(medium_->disc.writable() || medium_->disc.rewritable, sense::cannotWrite);
  return {};
}

Bytes Drive::modeSelect(const Command& command) {
  pages_.take(command, settings_);
  writing_.forget();
  if (!pages_.test()) endRehearsal();
  return {};
}

Bytes Drive::modeSense(const Command& command) {
  return pages_.tell(command, settings_);
}

Bytes Drive::close(const Command& command) {
  rehearseIfTold();
  writing_.close(command, *medium_, pages_, settings_);
  if ((command[2] & 7U) == 2) endRehearsal();
  if ((command[1] & 1U) != 0) workInBackground(settings_.closeTime, sense::longWriteInProgress);
  return {};
}

Bytes Drive::bufferCapacity(const Command& command) {
  return Answer(12).put(4, bufferBytes, 4).put(8, bufferBytes / 16, 4).length(0, 2).upTo(command.number(7, 2));
}

Bytes Drive::cueSheet(const Command& command) {
  rehearseIfTold();
  writing_.plan(command, *medium_, pages_, settings_);
  return {};
}

/// All kinds of blanking that concern the whole disc leave it blank.
Bytes Drive::blank(const Command& command) {
  const std::uint32_t kind = command[1] & 7U;
  require(kind <= 1, sense::badField);
  require(medium_->disc.rewritable, sense::cannotWrite);
  medium_->disc.makeBlank();
  medium_->save();
  medium_->sectors.erase();
  writing_.forget();
  if ((command[1] & 0x10U) != 0) workInBackground(settings_.eraseTime, sense::operationInProgress);
  return {};
}

Bytes Drive::performance(const Command& command) {
  require(settings_.speedIsTold, sense::unknownCommand);
  return emulated::performance(command, settings_, discOrNothing());
}

Bytes Drive::setSpeed(const Command& command) {
  pages_.setSpeed(command.number(4, 2), settings_);
  return {};
}

Bytes Drive::mechanism(const Command& command) {
  return Answer(8).upTo(command.number(8, 2));
}

}  // namespace emulated

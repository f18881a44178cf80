#include "Drive.h"

#include <fcntl.h>

#include <fstream>
#include <thread>

#include "Address.h"

namespace emulated {

namespace {

using Clock = std::chrono::steady_clock;

/// Cue sheets and pages are listed in the log byte by byte, sectors are not.
constexpr std::size_t longestListed = 2000;

std::string inHex(std::uint8_t byte) {
  constexpr const char* digits = "0123456789ABCDEF";
  return {digits[byte >> 4U], digits[byte & 0x0FU]};
}

/// The blocks that a command reaches, where it has an address.
bool reaches(const Command& command, std::int32_t block) {
  const bool cd = command[0] == 0xBE || command[0] == 0xA8 || command[0] == 0xAA;
  const auto count = static_cast<std::int32_t>(!cd                  ? command.number(7, 2)
                                               : command[0] == 0xBE ? command.number(6, 3)
                                                                    : command.number(6, 4));
  return block >= command.address(2) && block < command.address(2) + count;
}

}  // namespace

const std::map<std::uint8_t, Drive::Entry>& Drive::entries() {
  static const std::map<std::uint8_t, Entry> table{
      {0x00, {"TEST-UNIT-READY", &Drive::testUnitReady, false, true}},
      {0x03, {"REQUEST-SENSE", &Drive::requestSense, true}},
      {0x12, {"INQUIRY", &Drive::inquiry, true}},
      {0x15, {"MODE-SELECT-6", &Drive::modeSelect}},
      {0x1A, {"MODE-SENSE-6", &Drive::modeSense}},
      {0x1B, {"START-STOP-UNIT", &Drive::startStop}},
      {0x1E, {"PREVENT-ALLOW", &Drive::preventRemoval}},
      {0x23, {"READ-FORMAT-CAPACITIES", &Drive::formatCapacities, false, true}},
      {0x25, {"READ-CAPACITY", &Drive::capacity, false, true}},
      {0x28, {"READ", &Drive::readBlocks, false, true}},
      {0x2A, {"WRITE", &Drive::write, false, true}},
      {0x2B, {"SEEK", &Drive::nothing, false, true}},
      {0x35, {"SYNCHRONIZE-CACHE", &Drive::synchronize, false, true}},
      {0x42, {"READ-SUB-CHANNEL", &Drive::subChannel, false, true}},
      {0x43, {"READ-TOC", &Drive::table, false, true}},
      {0x46, {"GET-CONFIGURATION", &Drive::configuration, true}},
      {0x4A, {"GET-EVENT-STATUS", &Drive::events, true}},
      {0x51, {"READ-DISC-INFORMATION", &Drive::discInformation, false, true, true}},
      {0x52, {"READ-TRACK-INFORMATION", &Drive::trackInformation, false, true}},
      {0x53, {"RESERVE-TRACK", &Drive::reserve, false, true}},
      {0x54, {"SEND-OPC", &Drive::calibrate, false, true}},
      {0x55, {"MODE-SELECT", &Drive::modeSelect}},
      {0x5A, {"MODE-SENSE", &Drive::modeSense, false, false, true}},
      {0x5B, {"CLOSE-TRACK-SESSION", &Drive::close, false, true}},
      {0x5C, {"READ-BUFFER-CAPACITY", &Drive::bufferCapacity, false, false, true}},
      {0x5D, {"SEND-CUE-SHEET", &Drive::cueSheet, false, true}},
      {0xA1, {"BLANK", &Drive::blank, false, true}},
      {0xA8, {"READ-12", &Drive::readBlocks, false, true}},
      {0xAA, {"WRITE-12", &Drive::write, false, true}},
      {0xAC, {"GET-PERFORMANCE", &Drive::performance, false, false, true}},
      {0xB6, {"SET-STREAMING", &Drive::nothing}},
      {0xB9, {"READ-CD-MSF", &Drive::readSectors, false, true}},
      {0xBB, {"SET-CD-SPEED", &Drive::setSpeed}},
      {0xBD, {"MECHANISM-STATUS", &Drive::mechanism, false, false, true}},
      {0xBE, {"READ-CD", &Drive::readSectors, false, true}}};
  return table;
}

Outcome Drive::run(const Command& command) {
  const std::lock_guard lock(mutex_);
  for (lookAtSettings(); settings_.hangs; lookAtSettings()) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  Outcome outcome = answer(command);
  if (command[0] != 0x03) lastSense_ = outcome.sense;
  if (background_ && outcome.sense == background_->sense) {
    const auto all = background_->until - background_->since;
    outcome.progress = static_cast<std::uint16_t>(65535 * (Clock::now() - background_->since) / all);
  }
  log(command, outcome.sense);
  return outcome;
}

Outcome Drive::answer(const Command& command) {
  try {
    look();
    const auto entry = entries().find(command[0]);
    failAsToldTo(command, nameOf(command));
    require(entry != entries().end(), sense::unknownCommand);
    return {sense::none, perform(command, entry->second), 0};
  } catch (const CheckCondition& check) {
    // What a refused command began counts for nothing.
    if (medium_ && medium_->recorded()) medium_.reset();
    return {check.sense, {}, 0};
  }
}

Bytes Drive::perform(const Command& command, const Entry& entry) {
  if (!entry.always) {
    if (attention_) throw CheckCondition{*std::exchange(attention_, std::nullopt)};
    if (!entry.whileBusy) requireIdle();
    require(!entry.needsMedium || medium_.has_value(), sense::noMedium);
  }
  return (this->*entry.handler)(command);
}

const char* Drive::nameOf(const Command& command) {
  const auto entry = entries().find(command[0]);
  return entry == entries().end() ? "UNKNOWN" : entry->second.name;
}

/// A line for each command: name, block, what was sent (of a write only how many bytes), sense.
void Drive::log(const Command& command, const Sense& sense) {
  std::ofstream out(folder_ / "commands", std::ios::app);
  out << nameOf(command);
  for (std::size_t i = 0; i < 12; ++i) out << ' ' << inHex(command[i]);
  if (!command.sent.empty()) out << " sent " << command.sent.size();
  if (command.sent.size() <= longestListed)
    for (const std::uint8_t byte : command.sent) out << ' ' << inHex(byte);
  out << " -> " << inHex(sense.key) << '/' << inHex(sense.code) << '/' << inHex(sense.qualifier) << '\n';
}

void Drive::look() {
  lookAtSettings();
  if (background_ && Clock::now() >= background_->until) background_.reset();
  lookAtMedium();
}

void Drive::lookAtSettings() {
  const std::filesystem::path file = folder_ / "drive.ini";
  std::error_code none;
  const SettingsStamp stamp{std::filesystem::last_write_time(file, none), std::filesystem::file_size(file, none)};
  if (settingsSeen_ == stamp) return;
  settingsSeen_ = stamp;
  settings_ = Settings::load(file);
  faultsSeen_.clear();
}

/// A test goes on with its copy of the disc; all else looks at what lies in the folder, where others may have written.
void Drive::lookAtMedium() {
  HeldPath now(tray(), O_PATH | O_DIRECTORY);
  const bool changed = mediumSeen_ && !mediumSeen_->isSame(now);
  if (changed) {
    attention_ = now.there() ? std::optional(sense::mediumChanged) : std::nullopt;
    mediumNews_ = true;
    writing_.forget();
    medium_.reset();
  }
  const bool known = medium_ && (!medium_->recorded() || medium_->fresh());
  if (!mediumSeen_ || changed) mediumSeen_.emplace(std::move(now));
  if (known) return;
  medium_.reset();
  if (mediumSeen_->there()) medium_.emplace(tray());
}

void Drive::failAsToldTo(const Command& command, const std::string& name) {
  for (std::size_t number = 0; number < settings_.faults.size(); ++number)
    if (hits(settings_.faults[number], number, command, name)) failBy(settings_.faults[number]);
}

bool Drive::hits(const Fault& fault, std::size_t number, const Command& command, const std::string& name) {
  if (fault.command != "*" && fault.command != name) return false;
  if (fault.block && !reaches(command, *fault.block)) return false;
  const std::int32_t seen = ++faultsSeen_[number];
  return seen > fault.after && (fault.times == 0 || seen <= fault.after + fault.times);
}

void Drive::failBy(const Fault& fault) {
  if (fault.unplugged) throw Unplugged{};
  if (!fault.removed) throw CheckCondition{fault.sense};
  std::filesystem::rename(tray(), folder_ / "out");
  look();
  throw CheckCondition{sense::noMedium};
}

void Drive::requireIdle() const {
  if (background_) throw CheckCondition{background_->sense};
}

void Drive::workInBackground(std::int32_t milliseconds, const Sense& as) {
  if (milliseconds <= 0) return;
  const auto now = Clock::now();
  background_ = {now, now + std::chrono::milliseconds(milliseconds), as};
}

/// From its first block on a test has a copy of the disc to write on, until its session ends or the host turns away.
void Drive::rehearseIfTold() {
  if (pages_.test() && medium_->recorded()) medium_->rehearse();
}

void Drive::pace(std::int32_t blocks) {
  if (settings_.pace > 0) std::this_thread::sleep_for(std::chrono::microseconds(1000000LL * blocks / settings_.pace));
}

void Drive::endRehearsal() {
  if (!medium_ || medium_->recorded()) return;
  medium_.reset();
  writing_.forget();
  look();
}

void Drive::letGo() {
  const std::lock_guard lock(mutex_);
  locked_ = false;
  endRehearsal();
}

}  // namespace emulated

#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "Command.h"
#include "HeldPath.h"
#include "Medium.h"
#include "Pages.h"
#include "Sense.h"
#include "Settings.h"
#include "Writing.h"

namespace emulated {

/// How a command ended.
struct Outcome {
  Sense sense;
  Bytes data;
  /// Of an operation in the background how far it is, out of 65536.
  std::uint16_t progress = 0;
};

/// A CD recorder in a folder: drive.ini says what it is, the folder `disc` is the disc in its tray and `out` the one
/// that lies on its open tray, `commands` is the log. Safe from any thread. What the medium knows outlives the process;
/// what only the drive knows (write parameters, cue sheet) does not.
class Drive {
 public:
  explicit Drive(std::filesystem::path folder) : folder_(std::move(folder)) {}

  /// Throws Unplugged.
  Outcome run(const Command& command);
  const std::filesystem::path& folder() const { return folder_; }
  /// What a drive does when nobody has it open any more: the door is free.
  void letGo();

 private:
  struct Entry {
    const char* name;
    Bytes (Drive::*handler)(const Command&);
    /// Answers whatever has happened to medium and drive.
    bool always = false;
    bool needsMedium = false;
    /// Also while an operation goes on in the background.
    bool whileBusy = false;
  };
  static const std::map<std::uint8_t, Entry>& entries();
  static const char* nameOf(const Command& command);

  Outcome answer(const Command& command);
  Bytes perform(const Command& command, const Entry& entry);
  void log(const Command& command, const Sense& sense);
  void look();
  void lookAtSettings();
  void lookAtMedium();
  void failAsToldTo(const Command& command, const std::string& name);
  void failBy(const Fault& fault);
  bool hits(const Fault& fault, std::size_t number, const Command& command, const std::string& name);
  void requireIdle() const;
  void workInBackground(std::int32_t milliseconds, const Sense& as);
  void rehearseIfTold();
  void endRehearsal();
  void pace(std::int32_t blocks);
  std::filesystem::path tray() const { return folder_ / "disc"; }
  const Disc* discOrNothing() const { return medium_ ? &medium_->disc : nullptr; }

  Bytes testUnitReady(const Command& command);
  Bytes requestSense(const Command& command);
  Bytes inquiry(const Command& command);
  Bytes startStop(const Command& command);
  Bytes preventRemoval(const Command& command);
  Bytes formatCapacities(const Command& command);
  Bytes capacity(const Command& command);
  Bytes readBlocks(const Command& command);
  Bytes readSectors(const Command& command);
  Bytes write(const Command& command);
  Bytes synchronize(const Command& command);
  Bytes nothing(const Command& command);
  Bytes subChannel(const Command& command);
  Bytes table(const Command& command);
  Bytes configuration(const Command& command);
  Bytes events(const Command& command);
  Bytes discInformation(const Command& command);
  Bytes trackInformation(const Command& command);
  Bytes reserve(const Command& command);
  Bytes calibrate(const Command& command);
  Bytes modeSelect(const Command& command);
  Bytes modeSense(const Command& command);
  Bytes close(const Command& command);
  Bytes bufferCapacity(const Command& command);
  Bytes cueSheet(const Command& command);
  Bytes blank(const Command& command);
  Bytes performance(const Command& command);
  Bytes setSpeed(const Command& command);
  Bytes mechanism(const Command& command);

  std::filesystem::path folder_;
  std::mutex mutex_;
  Settings settings_;
  using SettingsStamp = std::pair<std::filesystem::file_time_type, std::uintmax_t>;
  std::optional<SettingsStamp> settingsSeen_;
  std::map<std::size_t, std::int32_t> faultsSeen_;
  Pages pages_;
  Writing writing_;
  std::optional<Medium> medium_;
  /// Nothing: not looked yet.
  std::optional<HeldPath> mediumSeen_;
  std::optional<Sense> attention_;
  bool mediumNews_ = false;
  bool locked_ = false;
  Sense lastSense_;
  struct Background {
    std::chrono::steady_clock::time_point since;
    std::chrono::steady_clock::time_point until;
    Sense sense;
  };
  std::optional<Background> background_;
};

}  // namespace emulated

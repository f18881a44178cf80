#include "engines/libburn/Library.h"

#include <array>
#include <cstdio>
#include <mutex>

#include "engines/disc/Sense.h"
#include "engines/libburn/SenseWords.h"

namespace trackloom::engines::libburn {

namespace {

/// The library's calls want texts that may be changed, and change none.
char* text(const char* words) {
  return const_cast<char*>(words);
}

std::mutex& gate() {
  static std::mutex mutex;
  return mutex;
}

/// Messages wait until they are asked for, and a drive that is in use is told at once.
bool started() {
  static const bool good = [] {
    if (burn::burn_initialize() == 0) return false;
    burn::burn_msgs_set_severities(text("SORRY"), text("NEVER"), text(""));
    burn::burn_preset_device_open(1, 0, 0);
    return true;
  }();
  return good;
}

/// Empty: there is none.
std::string nextMessage() {
  std::array<char, BURN_MSGS_MESSAGE_LEN> words{};
  std::array<char, 80> severity{};
  int code{};
  int error{};
  burn::burn_msgs_obtain(text("SORRY"), &code, words.data(), &error, severity.data());
  return words.data();
}

}  // namespace

GrabbedDrive::GrabbedDrive(const std::string& path) {
  const std::lock_guard lock(gate());
  if (!started()) throw deviceError(sense::notReady, "the recording library cannot be started");
  forgetMessages();
  std::string address = path;
  if (burn::burn_drive_scan_and_grab(&infos_, address.data(), 0) != 1)
    throw lastFailure("the drive cannot be used", sense::busy);
}

GrabbedDrive::~GrabbedDrive() {
  const std::lock_guard lock(gate());
  burn::burn_drive_release(infos_[0].drive, 0);
  burn::burn_drive_info_free(infos_);
}

void forgetMessages() {
  while (!nextMessage().empty()) continue;
}

std::int32_t senseIn(const std::string& words) {
  for (std::size_t at = words.find('['); at != std::string::npos; at = words.find('[', at + 1)) {
    unsigned key{};
    unsigned code{};
    unsigned qualifier{};
    if (std::sscanf(words.c_str() + at, "[%1x %2x %2x]", &key, &code, &qualifier) == 3)
      return static_cast<std::int32_t>(key << 16U | code << 8U | qualifier);
  }
  return 0;
}

EngineError lastFailure(const std::string& what, std::int32_t otherwise) {
  std::string first;
  for (std::string words = nextMessage(); !words.empty(); words = nextMessage()) {
    if (const std::int32_t number = senseIn(words); number != 0) return driveError(number, what);
    if (first.empty()) first = words;
  }
  return deviceError(otherwise, first.empty() ? what : what + ": " + first);
}

}  // namespace trackloom::engines::libburn

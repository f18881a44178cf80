#include "engines/virtual/RecorderSettings.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "engines/disc/Sense.h"
#include "engines/ground/Blocks.h"
#include "runtime/IniFile.h"
#include "runtime/Text.h"

namespace trackloom::engines::virtualrecorder {

namespace {

constexpr std::size_t longestText = 200;
constexpr std::size_t longestName = 40;
/// The speed list of a dialog has an entry for each few steps, so no higher number makes sense.
constexpr std::int32_t highestSpeed = 100;

bool isPlain(std::string_view text) {
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; };
  return std::none_of(text.begin(), text.end(), isControl) && isValidUtf8(text);
}

void takeText(const IniFile& ini, const char* section, const char* key, std::size_t longest, std::string& text) {
  const std::optional<std::string> value = ini.value(section, key);
  if (value && value->size() <= longest && isPlain(*value)) text = *value;
}

/// A sense number as `KK/CC/QQ` in hexadecimal digits.
std::optional<std::int32_t> senseNumber(std::string_view text) {
  std::int32_t number = 0;
  for (int part = 0;; ++part) {
    std::uint8_t value = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (error != std::errc{}) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    number = number * 256 + value;
    if (part == 2) break;
    if (!text.starts_with('/')) return std::nullopt;
    text.remove_prefix(1);
  }
  if (!text.empty() || number > 0x0FFFFF) return std::nullopt;
  return number;
}

constexpr std::int32_t anyBlock = std::numeric_limits<std::int32_t>::max();

void takeReadFaults(const IniFile& ini, RecorderSettings& settings) {
  settings.reading.unreadable = ini.number("faults", "failReadAt", 0, anyBlock);
  settings.reading.retried = ini.number("faults", "retryReadAt", 0, anyBlock);
  settings.reading.jitter = ini.number("faults", "jitterAt", 0, anyBlock);
  settings.reading.slowed = ini.number("faults", "slowReadAt", 0, anyBlock);
  settings.reading.hanging = ini.number("faults", "hangReadAt", 0, anyBlock);
  settings.reading.noContents = ini.flag("faults", "hideContents").value_or(false);
  settings.failContents = ini.flag("faults", "failContents").value_or(settings.failContents);
}

void takeFaults(const IniFile& ini, RecorderSettings& settings) {
  settings.failWriteAt = ini.number("faults", "failWriteAt", 0, anyBlock);
  settings.failTestAt = ini.number("faults", "failTestAt", 0, anyBlock);
  settings.failCachingAt = ini.number("faults", "failCachingAt", 0, anyBlock);
  settings.failTrack = static_cast<std::int16_t>(ini.number("faults", "failTrack", 1, 99).value_or(0));
  settings.failKind = static_cast<ErrorKind>(ini.number("faults", "failCode", 0, 99).value_or(3));
  settings.failClosing = ini.value("faults", "failClosing").value_or("");
  settings.failErasing = ini.flag("faults", "failErasing").value_or(settings.failErasing);
  settings.failEjecting = ini.flag("faults", "failEjecting").value_or(settings.failEjecting);
  settings.failNumber = senseNumber(ini.value("faults", "failNumber").value_or("")).value_or(settings.failNumber);
  takeText(ini, "faults", "failText", longestText, settings.failText);
}

}  // namespace

RecorderSettings RecorderSettings::parse(std::string_view text) {
  const IniFile ini = IniFile::parse(text);
  constexpr const char* section = "recorder";
  RecorderSettings settings;
  takeText(ini, section, "vendor", longestName, settings.vendor);
  takeText(ini, section, "product", longestName, settings.product);
  settings.maximumSpeed =
      static_cast<std::int16_t>(ini.number(section, "maximumSpeed", 0, highestSpeed).value_or(settings.maximumSpeed));
  settings.writeGuard = ini.flag(section, "writeGuard").value_or(settings.writeGuard);
  settings.realTimePacing = ini.flag(section, "realTimePacing").value_or(settings.realTimePacing);
  settings.automaticFeed = ini.flag(section, "automaticFeed").value_or(settings.automaticFeed);
  settings.refuseSelect = ini.flag(section, "refuseSelect").value_or(settings.refuseSelect);
  settings.refuseEject = ini.flag(section, "refuseEject").value_or(settings.refuseEject);
  takeFaults(ini, settings);
  takeReadFaults(ini, settings);
  return settings;
}

double RecorderSettings::blocksPerSecond(std::int16_t speed) const {
  if (!realTimePacing) return 0;
  return blocksASecond * std::max<int>(0, speed > 0 ? speed : maximumSpeed);
}

ReadConditions RecorderSettings::readConditions(std::int16_t speed) const {
  ReadConditions conditions = reading;
  conditions.sectorsPerSecond = blocksPerSecond(speed);
  if (failContents) conditions.contentsFailure = failure("the disc's contents cannot be read");
  return conditions;
}

EngineError RecorderSettings::failure(const std::string& otherwise) const {
  const std::string words = failText.empty() ? otherwise : failText;
  if (failKind == ErrorKind::Device) return deviceError(failNumber, words);
  return {failKind, 0, words};
}

void RecorderSettings::failIfClosing(const std::string& part) const {
  if (failClosing == part) fail(part + " could not be closed");
}

std::string RecorderSettings::defaultIni() {
  return R"(; The virtual recorder: a CD recorder that is a folder. The disc in tray/ is the disc in the recorder; the others lie
; in shelf/. All settings are optional, and a change is felt at the next look at the recorder.

[recorder]
vendor = Virtual
product = CD Recorder
; The highest write speed, 0 to 100 times 75 blocks a second; 0: not told.
maximumSpeed = 52
; Whether the recorder has a guard against a write buffer that runs empty.
writeGuard = yes
; Whether a write, and the reading of sound, takes as long as on a real recorder.
realTimePacing = no
; Whether a blank disc takes the place of an ejected one: the first blank CD-R of the shelf, else a new one of 80 minutes.
automaticFeed = yes
; Whether the recorder cannot be taken into use, and whether its tray is stuck.
refuseSelect = no
refuseEject = no

; Failures for trials. Take the semicolon from the lines you want.
[faults]
; The block address at which a write fails, and the one at which a test write does.
;failWriteAt = 15230
;failTestAt = 15230
; The block of a cached write, counted over its tracks, at which the cache fails.
;failCachingAt = 100
; The track before whose first block a write or a test fails, once its cache is full.
;failTrack = 2
; What fails when it is to be closed: track, session or disc.
;failClosing = session
; Whether an erase fails, and whether an eject does.
;failErasing = yes
;failEjecting = yes
; For those who read the sound of the disc: a block that cannot be read, one that needs a second try, one whose place is
; not certain, one for which the recorder slows down, and one at which it hangs until this line is gone.
;failReadAt = 15230
;retryReadAt = 15230
;jitterAt = 15230
;slowReadAt = 15230
;hangReadAt = 15230
; Whether the table of contents lists nothing, and whether it cannot be read.
;hideContents = yes
;failContents = yes
; What has failed: 0 the read buffer, 1 the write buffer, 2 a file, 3 the device, up to 99 something else.
;failCode = 3
; The number (sense key, code and qualifier, hexadecimal) and the words of these failures.
;failNumber = 3/0C/00
;failText = write error
)";
}

}  // namespace trackloom::engines::virtualrecorder

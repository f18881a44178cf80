#include "Settings.h"

#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <variant>

namespace emulated {

namespace {

std::string trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

void takeEffect(Fault& fault, const std::string& word) {
  fault.removed = word == "removed";
  fault.unplugged = word == "unplugged";
  unsigned key = 0;
  unsigned code = 0;
  unsigned qualifier = 0;
  if (std::sscanf(word.c_str(), "%x/%x/%x", &key, &code, &qualifier) == 3)
    fault.sense = {static_cast<std::uint8_t>(key), static_cast<std::uint8_t>(code),
                   static_cast<std::uint8_t>(qualifier)};
}

Fault faultFrom(const std::string& text) {
  std::istringstream in(text);
  Fault fault;
  std::string effect;
  in >> fault.command >> effect;
  takeEffect(fault, effect);
  std::string word;
  for (std::int32_t number = 0; in >> word >> number;) {
    if (word == "block") fault.block = number;
    if (word == "after") fault.after = number;
    if (word == "times") fault.times = number;
  }
  return fault;
}

using Place = std::variant<std::string*, bool*, std::int32_t*, std::uint32_t*>;

void take(std::string* place, const std::string& value) {
  *place = value;
}
void take(bool* place, const std::string& value) {
  *place = value == "yes";
}
void take(std::int32_t* place, const std::string& value) {
  *place = std::atoi(value.c_str());
}
void take(std::uint32_t* place, const std::string& value) {
  *place = static_cast<std::uint32_t>(std::atoi(value.c_str()));
}

std::map<std::string, Place> placesOf(Settings& settings) {
  return {{"vendor", &settings.vendor},
          {"product", &settings.product},
          {"revision", &settings.revision},
          {"serial", &settings.serial},
          {"speed", &settings.speed},
          {"writes discs", &settings.writesDiscs},
          {"write guard", &settings.writeGuard},
          {"tray stuck", &settings.trayStuck},
          {"rights", &settings.rights},
          {"hangs", &settings.hangs},
          {"profile", &settings.profile},
          {"speed is told", &settings.speedIsTold},
          {"pace", &settings.pace},
          {"shortest track", &settings.shortestTrack},
          {"erase time", &settings.eraseTime},
          {"close time", &settings.closeTime}};
}

}  // namespace

Settings Settings::load(const std::filesystem::path& file) {
  Settings settings;
  const std::map<std::string, Place> places = placesOf(settings);
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    const std::size_t sign = line.find('=');
    if (line.starts_with('#') || sign == std::string::npos) continue;
    const std::string key = trimmed(line.substr(0, sign));
    const std::string value = trimmed(line.substr(sign + 1));
    if (key == "fault") settings.faults.push_back(faultFrom(value));
    if (const auto place = places.find(key); place != places.end())
      std::visit([&](auto* field) { take(field, value); }, place->second);
  }
  return settings;
}

}  // namespace emulated

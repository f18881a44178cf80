#include "engines/ground/EngineSettings.h"

#include <charconv>
#include <cstdlib>

#include "runtime/Files.h"
#include "runtime/IniFile.h"
#include "runtime/Statements.h"

namespace trackloom::engines {

namespace {

/// A minute of silence; more is a slip of the keyboard.
constexpr std::int32_t LongestPause = 60 * 75;

/// Twenty sectors; no drive is farther off.
constexpr std::int32_t LargestOffset = 20 * 588;

std::string explainedDefaults(const EngineSettings& settings) {
  return IniWriter()
      .comment("Settings of Trackloom's engines. Every line may be left out.")
      .section("Writing")
      .comment("Silence between the tracks of an audio disc, in blocks of 1/75 second.")
      .entry("pause", settings.pause)
      .comment("Whether every disc is read back and compared behind its recording, which takes about as long again.")
      .entry("verify", settings.verify ? "yes" : "no")
      .section("Recorders")
      .comment("Whether the folders \"Virtual Recorder\", \"Virtual Recorder 2\" and so on are used as recorders.")
      .entry("virtual", settings.virtualRecorders ? "yes" : "no")
      .section("Disc Names")
      .comment("The server of the disc database, which names discs that are read, and its port.")
      .entry("server", settings.discServer.host)
      .entry("port", settings.discServer.port)
      .comment("Your e-mail address, which the server wants to be told with every question. Nothing is sent to any")
      .comment("server while none stands here; names of discs then come from earlier answers and from the discs.")
      .entry("email", settings.discServer.email)
      .section("Ripping")
      .comment("Whether each rip leaves a report with checksums, Rip.log, in its folder.")
      .entry("ripLog", settings.ripLog ? "on" : "off")
      .section("readOffset")
      .comment("By how many samples a drive reads too early, by its name as the ripper lists it: Vendor Model = 6")
      .text();
}

DiscServerSettings discServerOf(const IniFile& file) {
  constexpr std::int32_t LastPort = 65535;
  DiscServerSettings server;
  server.host = file.value("Disc Names", "server").value_or(server.host);
  server.port = file.number("Disc Names", "port", 1, LastPort).value_or(server.port);
  server.email = file.value("Disc Names", "email").value_or(server.email);
  return server;
}

}  // namespace

HostPath engineSettingsPath(const HostPath& programFolder) {
  return HostPath(EnsureTrailingSep(programFolder.text) + "Engines.ini");
}

EngineSettings loadEngineSettings(const HostPath& programFolder) {
  EngineSettings settings;
  if (const auto file = IniFile::load(engineSettingsPath(programFolder))) {
    settings.pause = file->number("Writing", "pause", 0, LongestPause).value_or(settings.pause);
    settings.verify = file->flag("Writing", "verify").value_or(settings.verify);
    settings.virtualRecorders = file->flag("Recorders", "virtual").value_or(settings.virtualRecorders);
    settings.discServer = discServerOf(*file);
    settings.ripLog = file->flag("Ripping", "ripLog").value_or(settings.ripLog);
  }
  return settings;
}

std::int32_t readOffsetOf(const HostPath& programFolder, const std::string& drive) {
  const auto file = IniFile::load(engineSettingsPath(programFolder));
  if (!file) return 0;
  // The published lists write a plus before the number, which no other setting has.
  const std::string text = file->value("readOffset", drive).value_or("");
  const char* begin = text.data() + (text.starts_with('+') && !text.starts_with("+-") ? 1 : 0);
  std::int32_t offset = 0;
  const auto [stop, error] = std::from_chars(begin, text.data() + text.size(), offset);
  const bool whole = error == std::errc{} && stop == text.data() + text.size();
  return whole && std::abs(offset) <= LargestOffset ? offset : 0;
}

void explainEngineSettings(const HostPath& programFolder) {
  const HostPath path = engineSettingsPath(programFolder);
  if (!FileExists(path)) skipOnError([&] { ReplaceFile(path, explainedDefaults(EngineSettings())); });
}

}  // namespace trackloom::engines

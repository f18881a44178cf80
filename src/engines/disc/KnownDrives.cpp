#include "engines/disc/KnownDrives.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "engines/disc/Sense.h"
#include "engines/ground/EngineSettings.h"
#include "runtime/Files.h"
#include "runtime/IniFile.h"
#include "runtime/Statements.h"

namespace trackloom::engines {

namespace {

constexpr const char* sectionName = "drives";
constexpr char separator = '|';
constexpr const char* readsOnlyMark = "reads only";

/// The place of a recorder that is not connected now.
class AbsentRecorder final : public Recorder {
 public:
  explicit AbsentRecorder(KnownDrive drive) : drive_(std::move(drive)) {}

  std::string id() const override { return drive_.id; }
  bool take() override { return true; }
  void enableWriteGuard(bool) override {}
  std::shared_ptr<const DriveSnapshot> look() override {
    auto snapshot = std::make_shared<DriveSnapshot>();
    snapshot->identity.vendor = drive_.vendor;
    snapshot->identity.product = drive_.product + " (not connected)";
    return snapshot;
  }
  void check(const WriteOrder&) override { refuse(); }
  void write(const WriteOrder&, SectorSource&, OperationObserver&, const std::stop_token&) override { refuse(); }
  void erase(bool, OperationObserver&, const std::stop_token&) override { refuse(); }
  void close(bool, OperationObserver&, const std::stop_token&) override { refuse(); }
  std::vector<std::byte> read(std::int32_t, std::int32_t) override { refuse(); }
  void eject() override { refuse(); }

 private:
  [[noreturn]] void refuse() const { throw deviceError(sense::notReady, drive_.id + " is not connected"); }

  KnownDrive drive_;
};

std::string part(std::string& text) {
  const std::size_t end = std::min(text.find(separator), text.size());
  const std::string taken = text.substr(0, end);
  text.erase(0, end + 1);
  return taken;
}

std::string plain(std::string text) {
  std::ranges::replace(text, separator, ' ');
  return text;
}

KnownDrive parsed(std::string text) {
  KnownDrive drive;
  drive.id = part(text);
  drive.vendor = part(text);
  drive.product = part(text);
  drive.readsOnly = part(text) == readsOnlyMark;
  return drive;
}

std::string sectionOf(const std::vector<KnownDrive>& drives) {
  IniWriter ini;
  ini.section(sectionName).comment("The drives in the order of their letters, as they were first seen. May be cut.");
  int number = 0;
  for (const KnownDrive& drive : drives)
    ini.entry(std::to_string(++number), plain(drive.id) + separator + plain(drive.vendor) + separator +
                                            plain(drive.product) +
                                            (drive.readsOnly ? separator + std::string(readsOnlyMark) : ""));
  return ini.text();
}

/// The settings less their section of drives.
std::string withoutDrives(const std::string& text) {
  std::string small = text;
  std::ranges::transform(small, small.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  const std::string heading = "[" + std::string(sectionName) + "]";
  const std::size_t begin = small.starts_with(heading) ? 0 : small.find("\n" + heading);
  if (begin == std::string::npos) return text;
  const std::size_t end = std::min(text.find("\n[", begin + 1), text.size());
  return text.substr(0, begin) + text.substr(end);
}

std::shared_ptr<Recorder> findIn(const RecorderList& recorders, const std::string& id) {
  const auto found = std::ranges::find_if(recorders, [&](const auto& recorder) { return recorder->id() == id; });
  return found == recorders.end() ? nullptr : *found;
}

}  // namespace

std::vector<KnownDrive> loadKnownDrives(const HostPath& programFolder) {
  std::vector<KnownDrive> drives;
  const auto file = IniFile::load(engineSettingsPath(programFolder));
  while (file) {
    const auto text = file->value(sectionName, std::to_string(drives.size() + 1));
    if (!text || text->empty()) break;
    drives.push_back(parsed(*text));
  }
  return drives;
}

void saveKnownDrives(const HostPath& programFolder, const std::vector<KnownDrive>& drives) {
  if (loadKnownDrives(programFolder) == drives) return;
  const HostPath path = engineSettingsPath(programFolder);
  skipOnError([&] {
    const std::string text = FileExists(path) ? ReadStart(path, IniFile::sizeLimit) : "";
    ReplaceFile(path, withoutDrives(text) + sectionOf(drives));
  });
}

std::vector<KnownDrive> asKnown(const RecorderList& present) {
  std::vector<KnownDrive> all;
  for (const auto& recorder : present) {
    const DriveIdentity identity = recorder->look()->identity;
    all.push_back({recorder->id(), identity.vendor, identity.product});
  }
  return all;
}

std::vector<KnownDrive> withPresent(std::vector<KnownDrive> known, const std::vector<KnownDrive>& present) {
  for (KnownDrive now : present) {
    now.id = plain(now.id);
    now.vendor = plain(now.vendor);
    now.product = plain(now.product);
    const auto found = std::ranges::find(known, now.id, &KnownDrive::id);
    if (found == known.end())
      known.push_back(now);
    else
      *found = now;
  }
  return known;
}

PlacedRecorders::PlacedRecorders(RecorderList all) : recorders(std::move(all)), places(recorders.size()) {
  std::iota(places.begin(), places.end(), std::size_t{0});
}

std::shared_ptr<Recorder> absentRecorder(const KnownDrive& drive) {
  return std::make_shared<AbsentRecorder>(drive);
}

PlacedRecorders inKnownOrder(const std::vector<KnownDrive>& known, const RecorderList& present) {
  PlacedRecorders all;
  if (present.empty()) return all;
  for (std::size_t place = 0; place < known.size(); ++place) {
    if (known[place].readsOnly) continue;
    auto recorder = findIn(present, known[place].id);
    all.recorders.push_back(recorder ? std::move(recorder) : absentRecorder(known[place]));
    all.places.push_back(place);
  }
  return all;
}

}  // namespace trackloom::engines

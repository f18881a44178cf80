#include <algorithm>
#include <catch2/catch.hpp>
#include <map>
#include <random>
#include <sstream>

#include "engines/writer/VirtualWorld.h"

namespace trackloom::engines::writer {

using fakes::outputOf;

namespace {

/// A disc in a few lines, from what a disc is rather than from how the recorder keeps it.
struct ModelDisc {
  std::int32_t capacity = 0;
  bool rewritable = false;
  bool closed = false;
  bool sessionOpen = false;
  std::int16_t sessions = 0;
  std::optional<BlockKind> kind;
  /// First block and length of each track.
  std::vector<std::pair<std::int32_t, std::int32_t>> tracks;
  /// What the last session shows, by path, or the sound of each track by its number.
  std::map<std::string, std::string> content;

  std::int32_t next() const {
    if (tracks.empty()) return 0;
    const std::int32_t gap = sessionOpen ? 150 : sessions == 1 ? 11400 : 6900;
    return tracks.back().first + tracks.back().second + gap;
  }
  std::int32_t free() const { return closed ? 0 : std::max(0, capacity - next()); }
  std::int32_t status() const { return closed ? DiscClosed : tracks.empty() ? DiscEmpty : DiscOpen; }
  std::int32_t lastSession() const {
    return tracks.empty() ? SessionEmpty : sessionOpen ? SessionIncomplete : SessionClosed;
  }
  bool takes(BlockKind wanted) const { return !closed && (!kind || *kind == wanted); }
  bool holdsData() const { return status() == DiscOpen && kind == DataBlocks; }

  void add(BlockKind ofKind, std::int32_t blocks) {
    const std::int32_t start = next();
    if (!sessionOpen) ++sessions;
    sessionOpen = true;
    kind = ofKind;
    tracks.emplace_back(start, blocks);
  }
  void close(bool session, bool disc) {
    if (session || disc) sessionOpen = false;
    closed = closed || disc;
  }
  void blank() { *this = {.capacity = capacity, .rewritable = rewritable, .kind = {}, .tracks = {}, .content = {}}; }
};

/// Random operations on the engine and on the model, which have to agree after each.
class Trial {
 public:
  explicit Trial(std::uint32_t seed) : random_(seed) { insert(); }

  void step() {
    const std::uint32_t choice = below(20);
    if (choice < 7) writeAudio();
    if (choice >= 7 && choice < 14) writeData();
    if (choice == 14 || choice == 15) erase();
    if (choice == 16) closeSession();
    if (choice == 17) eject();
    if (choice == 18) insert();
    if (choice == 19) failedWrite();
    compare();
  }

 private:
  std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_()) % limit; }
  bool coin() { return below(2) == 0; }
  std::string end(const std::function<void()>& begin) {
    world_.heard().lines.clear();
    begin();
    REQUIRE(world_.queue.runUntil([this] { return world_.heard().ended(); }));
    return world_.heard().lines.back();
  }
  std::string write() {
    closeSession_ = coin();
    closeDisc_ = below(6) == 0;
    test_ = below(5) == 0;
    world_.real().SetCloseSession(closeSession_);
    world_.real().SetCloseDisc(closeDisc_);
    world_.real().SetTestMode(test_);
    world_.real().SetCacheAudioTracks(coin());
    world_.real().SetCacheDataTrack(coin());
    return end([this] { world_.real().StartWrite(); });
  }

  void insert() {
    disc_ = ModelDisc{.capacity = 400 + static_cast<std::int32_t>(below(40000)),
                      .rewritable = coin(),
                      .kind = {},
                      .tracks = {},
                      .content = {}};
    world_.insert(disc_->capacity, disc_->rewritable);
  }
  void eject() {
    CHECK(world_.real().EjectDisc());
    disc_.reset();
  }

  void writeAudio() {
    world_.real().SetDiscMode(AudioBlocks);
    world_.real().ClearAudioQueue();
    const std::size_t count = 1 + below(3);
    std::vector<std::pair<std::string, std::int32_t>> queued;
    std::int32_t needed = -150;
    for (std::size_t track = 0; track < count; ++track) {
      const auto blocks = static_cast<std::int32_t>(1 + below(200));
      const std::string name(1, static_cast<char>('a' + below(26)));
      REQUIRE(world_.real().AddAudioTrack(world_.audioFile(name + std::to_string(track), blocks),
                                          static_cast<std::int16_t>(track + 1)));
      queued.emplace_back(VirtualWorld::audioOf(name, blocks), blocks);
      needed += blocks + 150;
    }
    const std::string last = write();
    const bool fits =
        disc_ && disc_->takes(AudioBlocks) && disc_->tracks.size() + count <= 99 && needed <= disc_->free();
    CHECK((last == "OnOperationComplete") == fits);
    if (!fits || test_) return;
    for (const auto& [sound, blocks] : queued) {
      disc_->add(AudioBlocks, blocks);
      disc_->content[std::to_string(disc_->tracks.size())] = sound;
    }
    disc_->close(closeSession_, closeDisc_);
  }

  void writeData() {
    world_.real().SetDiscMode(DataBlocks);
    world_.real().ClearDataQueue();
    const bool imports = coin();
    CHECK(world_.real().ImportLastSession(imports) == (imports && disc_ && disc_->holdsData()));
    std::map<std::string, std::string> content;
    if (imports && disc_ && disc_->holdsData()) content = disc_->content;
    for (std::uint32_t file = 0; file <= below(4); ++file) {
      const std::string folder = coin() ? "" : "F" + std::to_string(below(3)) + "/";
      const std::string path = "/" + folder + "file" + std::to_string(below(6));
      const std::string bytes = noise(below(300000), below(1000));
      std::string onDisc = path;
      std::ranges::replace(onDisc, '/', '\\');
      const HostPath source = world_.folder.file("source" + std::to_string(sources_++), bytes);
      REQUIRE(world_.real().AddDataFile(DiscPath(onDisc), source));
      content[path] = bytes;
    }
    const std::string last = write();
    const bool could = disc_ && disc_->takes(DataBlocks) && disc_->tracks.size() < 99;
    if (!could) CHECK(last.starts_with("OnWriteError 3 "));
    if (last != "OnOperationComplete") return;
    REQUIRE(could);
    if (test_) return;
    // How large an image is, the model leaves to the reader of it below.
    disc_->add(DataBlocks, world_.heard().progress.back().position);
    CHECK(disc_->tracks.back().first + disc_->tracks.back().second <= disc_->capacity);
    disc_->close(closeSession_, closeDisc_);
    disc_->content = content;
  }

  void failedWrite() {
    world_.real().SetDiscMode(AudioBlocks);
    world_.real().ClearAudioQueue();
    REQUIRE(world_.real().AddAudioTrack(world_.audioFile("x", 50), 1));
    const bool fits = disc_ && disc_->takes(AudioBlocks) && disc_->tracks.size() < 99 && disc_->free() >= 50;
    world_.fail({.block = fits ? disc_->next() + 20 : 0});
    const std::string last = write();
    world_.heal();
    if (!fits) CHECK(last.starts_with("OnWriteError 3 "));
    if (!fits || test_) return;
    CHECK(last == "OnWriteError 3 " + std::to_string(0x030C00));
    disc_->closed = true;
    disc_->sessionOpen = false;
  }

  void erase() {
    world_.real().SetTestMode(coin());
    const bool can = disc_ && disc_->rewritable;
    if (!can) {
      CHECK_FALSE(world_.real().EraseDisc(coin()));
      return;
    }
    CHECK(end([this] { CHECK(world_.real().EraseDisc(coin())); }) == "OnEraseComplete");
    disc_->blank();
  }

  void closeSession() {
    const bool alsoDisc = coin();
    if (!disc_ || !disc_->sessionOpen) {
      CHECK_FALSE(world_.real().CloseLastSession(alsoDisc));
      return;
    }
    CHECK(end([&] { CHECK(world_.real().CloseLastSession(alsoDisc)); }) == "OnOperationComplete");
    disc_->close(true, alsoDisc);
  }

  void compare() {
    CDWriterXP& writer = world_.real();
    REQUIRE(writer.MediaLoaded() == disc_.has_value());
    if (!disc_) return;
    CHECK(writer.DiscStatus() == disc_->status());
    CHECK(writer.LastSessionStatus() == disc_->lastSession());
    CHECK(writer.SessionCount() == disc_->sessions);
    CHECK(writer.DiscRewritable() == disc_->rewritable);
    CHECK(writer.FreeBlocks(AudioBlocks) == disc_->free());
    CHECK(writer.FreeBlocks(DataBlocks) == disc_->free());
    CHECK(world_.tracksOnDisc() == disc_->tracks.size());
    compareContent();
  }

  void compareContent() const {
    if (disc_->kind == AudioBlocks) {
      const std::string bin = contentOf(world_.disc() / "disc.bin");
      for (const auto& [number, sound] : disc_->content) {
        const auto [start, length] = disc_->tracks.at(static_cast<std::size_t>(std::stoi(number)) - 1);
        CHECK(
            (bin.compare(static_cast<std::size_t>(start) * 2352, static_cast<std::size_t>(length) * 2352, sound) == 0));
      }
    }
    if (disc_->kind == DataBlocks) compareFiles();
  }

  void compareFiles() const {
    const std::string reader = "isoinfo -J -T " + std::to_string(disc_->tracks.back().first) + " -i '" +
                               (world_.disc() / "disc.iso").string() + "' ";
    std::istringstream listed(outputOf(reader + "-f"));
    std::vector<std::string> files;
    for (std::string line; std::getline(listed, line);)
      if (line.find("file") != std::string::npos) files.push_back(line);
    CHECK(files.size() == disc_->content.size());
    for (const auto& [path, bytes] : disc_->content) CHECK((outputOf(reader + "-x '" + path + "'") == bytes));
  }

  std::mt19937 random_;
  VirtualWorld world_;
  std::optional<ModelDisc> disc_;
  bool closeSession_ = false, closeDisc_ = false, test_ = false;
  int sources_ = 0;
};

}  // namespace

TEST_CASE("After any row of writes, closings, erases, imports and ejects the disc is what a simple model says") {
  for (std::uint32_t seed = 1; seed <= 8; ++seed) {
    CAPTURE(seed);
    Trial trial(seed);
    for (int step = 0; step < 25; ++step) {
      CAPTURE(step);
      trial.step();
    }
  }
}

}  // namespace trackloom::engines::writer

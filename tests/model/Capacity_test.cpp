#include "model/Capacity.h"

#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"

namespace trackloom {

namespace {

class Layout : public fakes::LayoutMachine {
 public:
  using LayoutMachine::LayoutMachine;

  std::string meter() { return window().Progress1.Text; }
  std::string totals() { return window().panel3.Text; }
  /// Makes the audio queue this long, without any row.
  void queue(std::int32_t blocks) {
    engines.stage.audio["queued"] = blocks;
    cdr1().ClearAudioQueue();
    cdr1().AddAudioTrack(HostPath("queued"), 1);
    UpdateCapacityDisplay(session());
  }
};

const Separators english;
const Separators german{".", ","};

}  // namespace

TEST_CASE("E025: An empty layout reads 0 blocks of the disc's") {
  CHECK(Layout(AudioLayout).meter() == "0 Blocks of 359,849 Blocks  (0% of CD Used)");
  CHECK(Layout(Mp3Layout, 1234567).meter() == "0 Blocks of 1,234,567 Blocks  (0% of CD Used)");
  CHECK(Layout(AudioLayout, 999).meter() == "0 Blocks of 999 Blocks  (0% of CD Used)");
}

TEST_CASE("E026: A layout of exactly the disc's blocks fits and reads 100%") {
  const std::int16_t kind = GENERATE(AudioLayout, Mp3Layout);
  Layout layout(kind, 1000);
  layout.addTrack("a.mp3", 850);
  CHECK(layout.window().ListView1.Count() == 1);
  CHECK(layout.meter() == "1,000 Blocks of 1,000 Blocks  (100% of CD Used)");
  CHECK(layout.window().Progress1.Value == 1000);
}

TEST_CASE("E027: One block too many leaves the meter behind, while the totals go on") {
  Layout layout(AudioLayout, 1000);
  layout.queue(1000);
  CHECK(layout.totals() == "Layout Time:  00:13:25 - Disc Time:  00:13:25 ");
  const std::string full = layout.meter();
  layout.queue(1001);
  CHECK(layout.meter() == full);
  CHECK(layout.window().Progress1.Value == 1000);
  CHECK(layout.totals() == "Layout Time:  00:13:26 - Disc Time:  00:13:25 ");
  CHECK(layout.mod().LayoutTotalText == "00:13:26");
}

TEST_CASE("E028: The time of an audio layout holds the charge of each track") {
  Layout layout(AudioLayout);
  layout.addTrack("a.mp3", 4350);
  CHECK(layout.totals() == "Layout Time:  01:00:00 - Disc Time:  79:57:74 ");
  CHECK(layout.mod().LayoutTotalText == "01:00:00");
  layout.addTrack("b.mp3", 4350);
  CHECK(layout.mod().LayoutTotalText == "02:00:00");
}

TEST_CASE("E029: On an MP3 layout the meter stands 150 blocks a file above the bytes told") {
  Layout layout(Mp3Layout);
  for (const char* name : {"a.mp3", "b.mp3", "c.mp3"}) layout.addTrack(name, 1000);
  CHECK(layout.window().Progress1.Value == 3450);
  CHECK(layout.totals() == "Layout Size:  5.86 MB - Disc Size:  702.83 MB ");
  CHECK(layout.mod().LayoutTotalText == "5.86 MB");
}

TEST_CASE("E030: Sizes change their unit at each power of 1024") {
  CHECK(FormatSize(0, english) == "0 Bytes");
  CHECK(FormatSize(1023, english) == "1023 Bytes");
  CHECK(FormatSize(1024, english) == "1.00 KB");
  CHECK(FormatSize(1048575, english) == "1024.00 KB");
  CHECK(FormatSize(1048576, english) == "1.00 MB");
  CHECK(FormatSize(1073741823, english) == "1024.00 MB");
  CHECK(FormatSize(1073741824, english) == "1.00 GB");
  CHECK(FormatSize(1024.0 * 1073741824, english) == "1024.00 GB");
}

TEST_CASE("E031: A fraction of a byte is cut off, not rounded") {
  CHECK(FormatSize(1023.9, english) == "1023 Bytes");
  CHECK(FormatSize(0.99, english) == "0 Bytes");
}

TEST_CASE("E032: A recording renews the disc's totals, while the meter keeps its scale") {
  Layout layout(AudioLayout);
  layout.addTrack("a.mp3", 1000);
  layout.engines.stage.disc->freeAudio = 100000;
  layout.desk.expectForm<frmOptions>("frmOptions", [](frmOptions& form) { form.cmdCancel.click(); });
  layout.click("Record");
  CHECK(layout.mod().DiscBlocks == 100000);
  CHECK(layout.mod().DiscBytes == 235200000);
  CHECK(layout.window().Progress1.Maximum == 359849);

  layout.addTrack("b.mp3", 1000);
  CHECK(layout.totals() == "Layout Time:  00:30:50 - Disc Time:  22:13:25 ");
  CHECK(layout.meter() == "2,300 Blocks of 359,849 Blocks  (1% of CD Used)");
}

TEST_CASE("Sizes and blocks wear the signs of the user's locale") {
  CHECK(FormatSize(1023, german) == "1023 Bytes");
  CHECK(FormatSize(1152, german) == "1,13 KB");
  CHECK(FormatSize(1073741824, german) == "1,00 GB");
  CHECK(FormatSize(1023.0 * 1048576, german) == "1023,00 MB");

  Layout layout(Mp3Layout);
  layout.session().ports.separators = german;
  layout.addTrack("a.mp3", 3000);
  CHECK(layout.meter() == "3.150 Blocks of 359.849 Blocks  (1% of CD Used)");
  CHECK(layout.totals() == "Layout Size:  5,86 MB - Disc Size:  702,83 MB ");
}

TEST_CASE("A size that is no number reads 0 bytes") {
  CHECK(FormatSize(std::numeric_limits<double>::quiet_NaN(), english) == "0 Bytes");
}

TEST_CASE("A percentage halfway goes to the even neighbour") {
  Layout layout(AudioLayout, 1000);
  layout.queue(125);
  CHECK(layout.meter() == "125 Blocks of 1,000 Blocks  (12% of CD Used)");
  layout.queue(375);
  CHECK(layout.meter() == "375 Blocks of 1,000 Blocks  (38% of CD Used)");
}

TEST_CASE("A single block is counted, by the same words as many") {
  Layout layout(AudioLayout, 1000);
  layout.queue(1);
  CHECK(layout.meter() == "1 Blocks of 1,000 Blocks  (0% of CD Used)");
  CHECK(layout.totals() == "Layout Time:  00:00:01 - Disc Time:  00:13:25 ");
}

TEST_CASE("Without a layout the totals stay blank") {
  Layout layout(AudioLayout);
  layout.click("mnuFileClose");
  layout.queue(100);
  CHECK(layout.meter().empty());
  CHECK(layout.totals().empty());
}

TEST_CASE("A queue beyond all numbers of blocks is too big like any other") {
  Layout layout(AudioLayout);
  layout.queue(2147483647);
  CHECK(layout.meter() == "0 Blocks of 359,849 Blocks  (0% of CD Used)");
  CheckRoomForTrack(layout.session());
  CHECK(layout.mod().TrackWontFit);
}

TEST_CASE("Room for a track counts the charges of all tracks and its own") {
  Layout layout(AudioLayout, 1000);
  layout.addTrack("a.mp3", 500);
  layout.queue(700);
  CheckRoomForTrack(layout.session());
  CHECK_FALSE(layout.mod().TrackWontFit);
  layout.queue(701);
  CheckRoomForTrack(layout.session());
  CHECK(layout.mod().TrackWontFit);
}

TEST_CASE("A negative size shows its whole bytes with their sign, however many") {
  CHECK(FormatSize(-1, english) == "-1 Bytes");
  CHECK(FormatSize(-0.5, english) == "0 Bytes");
  CHECK(FormatSize(-1023.9, english) == "-1023 Bytes");
  CHECK(FormatSize(-1048576, english) == "-1048576 Bytes");
  CHECK(FormatSize(-1073741823, english) == "-1073741823 Bytes");
  CHECK(FormatSize(-1073741824, english) == "-1073741824 Bytes");
  CHECK(FormatSize(-2147483648.0, english) == "-2147483648 Bytes");
  CHECK(FormatSize(-0x1p63, english) == "-9223372036854775808 Bytes");
  CHECK(FormatSize(-0x1p64, english) == "0 Bytes");
}

}  // namespace trackloom

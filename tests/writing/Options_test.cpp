#include "writing/frmOptions.h"

#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"
#include "writing/Recording.h"

namespace trackloom {

using fakes::Recording;
using Lines = std::vector<std::string>;

namespace {

/// A machine with a layout of one track, and a user who is about to record it.
class Choosing : public fakes::LayoutMachine {
 public:
  explicit Choosing(std::int16_t kind) : LayoutMachine(kind) { addTrack("a.mp3", 1000); }

  void choose(const std::function<void(frmOptions&)>& choice) {
    desk.expectForm<frmOptions>("frmOptions", [&](frmOptions& form) {
      engines.stage.take();
      choice(form);
    });
    click("Record");
    CHECK(desk.finished());
  }
  void confirm(const std::function<void(frmOptions&)>& choice) {
    choose([&](frmOptions& form) {
      choice(form);
      form.cmdOK.click();
    });
  }
};

}  // namespace

TEST_CASE("Choosing the speed that is chosen already gives it to the engine again") {
  Choosing machine(AudioLayout);
  machine.choose([&](frmOptions& form) {
    form.cboWriteSpeed.choose(0);
    CHECK(machine.engines.stage.take() == Lines{"CDR1.SetWriteSpeed(10)"});
    form.cmdCancel.click();
  });
}

TEST_CASE("Each speed that is chosen reaches the engine at once, and the last one stands in the status window") {
  Choosing machine(AudioLayout);
  machine.confirm([&](frmOptions& form) {
    form.cboWriteSpeed.choose(3);
    form.cboWriteSpeed.choose(1);
    CHECK(machine.engines.stage.take() == Lines{"CDR1.SetWriteSpeed(1)", "CDR1.SetWriteSpeed(6)"});
  });
  CHECK(machine.mod().WriteSpeedText == "Write Speed:  6x");
}

TEST_CASE("E094: A drive that tells no speed has one choice, which the engine never hears of") {
  const std::int16_t speed = GENERATE(std::int16_t{0}, std::int16_t{-1});
  Choosing machine(AudioLayout);
  machine.engines.stage.drives[0].maxSpeed = speed;
  machine.confirm([&](frmOptions& form) {
    REQUIRE(form.cboWriteSpeed.items().size() == 1);
    CHECK(form.cboWriteSpeed.ListIndex() == 0);
    form.cboWriteSpeed.choose(0);
    CHECK(machine.engines.stage.take().empty());
  });
  CHECK(machine.mod().WriteSpeedText == "Write Speed:  Default");
}

TEST_CASE("Caching is on by itself where the drive has no write guard, and goes to the setting of the layout's kind") {
  const bool guard = GENERATE(true, false);
  const std::int16_t kind = GENERATE(AudioLayout, Mp3Layout);
  const bool other = GENERATE(true, false);
  Choosing machine(kind);
  machine.engines.stage.drives[0].writeGuard = guard;
  machine.cdr1().SetCacheAudioTracks(other);
  machine.cdr1().SetCacheDataTrack(other);
  machine.confirm([&](frmOptions& form) { CHECK(form.chkCache.Value == !guard); });
  CHECK(machine.cdr1().CacheAudioTracks() == (kind == AudioLayout ? !guard : other));
  CHECK(machine.cdr1().CacheDataTrack() == (kind == AudioLayout ? other : !guard));
}

TEST_CASE("What becomes of the disc is told anew with each recording, whatever the last one was told") {
  struct Case {
    std::int16_t kind;
    OptionButton frmOptions::*mode;
    bool closesDisc;
    std::string session;
  };
  const Case c = GENERATE(Case{AudioLayout, &frmOptions::optClose, true, "CDR1.CloseSession=True"},
                          Case{AudioLayout, &frmOptions::optTrack, false, "CDR1.CloseSession=False"},
                          Case{Mp3Layout, &frmOptions::optClose, true, "CDR1.CloseSession=True"},
                          Case{Mp3Layout, &frmOptions::optLeaveOpen, false, "CDR1.CloseSession=True"});
  const bool last = GENERATE(true, false);
  Choosing machine(c.kind);
  machine.cdr1().SetCloseDisc(last);
  machine.confirm([&](frmOptions& form) { (form.*c.mode).click(); });
  CHECK(machine.cdr1().CloseDisc() == c.closesDisc);
  CHECK(machine.engines.stage.take().at(0) == c.session);
}

TEST_CASE("The label of an MP3 disc loses the blanks around it, and an audio disc leaves the last one alone") {
  Choosing data(Mp3Layout);
  data.confirm([](frmOptions& form) { form.txtVolume.type("  My mix "); });
  CHECK(data.mod().DiscVolumeLabel == "My mix");

  Choosing audio(AudioLayout);
  audio.mod().DiscVolumeLabel = "an earlier one";
  audio.confirm([](frmOptions&) {});
  CHECK(audio.mod().DiscVolumeLabel == "an earlier one");
}

TEST_CASE("The label is selected whole when it is entered, and takes 31 characters") {
  Choosing machine(Mp3Layout);
  machine.choose([](frmOptions& form) {
    int selected = 0;
    const auto watch = form.txtVolume.selectAllRequested.connect([&] { ++selected; });
    form.txtVolume.focus();
    CHECK(selected == 1);
    form.txtVolume.type(std::string(32, 'x'));
    CHECK(form.txtVolume.Text == std::string(31, 'x'));
    form.cmdCancel.click();
  });
}

TEST_CASE("The scroll bar alone sets the copies, from 1 to 20") {
  Choosing machine(AudioLayout);
  machine.confirm([](frmOptions& form) {
    form.txtCopies.type("7");
    CHECK(form.txtCopies.Text == std::string("1"));
    for (const int copies : {20, 1, 13}) {
      form.VScroll1.scrollTo(copies);
      CHECK(form.txtCopies.Text == std::to_string(copies));
    }
  });
  CHECK(machine.mod().CopiesWanted == 13);
}

TEST_CASE("Cancel takes nothing but the speed, and a close box is a Cancel") {
  const bool closed = GENERATE(true, false);
  Choosing machine(AudioLayout);
  machine.cdr1().SetCloseDisc(true);
  const Trackloom50Mod1 before = machine.mod();
  machine.choose([&](frmOptions& form) {
    form.optTestOnly.click();
    form.optTrack.click();
    form.chkCache.click();
    form.VScroll1.scrollTo(5);
    closed ? form.closeBox() : form.cmdCancel.click();
  });
  CHECK(machine.engines.stage.take().empty());
  CHECK_FALSE(machine.mod().RecordConfirmed);
  CHECK(machine.mod().CopiesWanted == before.CopiesWanted);
  CHECK(machine.mod().WritePhase == before.WritePhase);
  CHECK(machine.mod().WriteSpeedText == before.WriteSpeedText);
  CHECK(machine.cdr1().CloseDisc());
  CHECK_FALSE(machine.cdr1().CacheAudioTracks());
  CHECK_FALSE(machine.cdr1().TestMode());
  CHECK(machine.window().visible());
}

TEST_CASE("The tabs show one panel at a time, and the one that shows again nothing new") {
  Choosing machine(AudioLayout);
  machine.choose([](frmOptions& form) {
    for (const int tab : {1, 2, 2, 1}) {
      form.TS1.choose(tab);
      CHECK(form.Pic2.Visible == (tab == 1));
      CHECK(form.Pic1.Visible == (tab == 2));
    }
    form.cmdCancel.click();
  });
}

TEST_CASE("The room for data is that of data blocks, and a layout of data that fills it passes") {
  Choosing machine(Mp3Layout);
  machine.engines.stage.disc->freeAudio = 1;
  machine.engines.stage.disc->freeData = 999;
  machine.desk.expectBox("CD Changed", BoxAnswer::Ok);
  machine.click("Record");
  CHECK(machine.mod().DiscBlocks == 999);
  CHECK(machine.mod().DiscBytes == 999 * 2048);
  machine.engines.stage.disc->freeData = 1000;
  machine.confirm([](frmOptions&) {});
  CHECK(machine.mod().DiscBlocks == 1000);
  CHECK(machine.mod().DiscBytes == 1000 * 2048);
}

TEST_CASE("The room for audio is that of audio blocks") {
  Choosing machine(AudioLayout);
  machine.engines.stage.disc->freeData = 1;
  machine.confirm([](frmOptions&) {});
  CHECK(machine.mod().DiscBytes == 359849 * 2352);
}

TEST_CASE("E095: On an audio layout an empty box switches the cache of audio off and leaves that of data alone") {
  const bool data = GENERATE(true, false);
  Choosing machine(AudioLayout);
  machine.cdr1().SetCacheAudioTracks(true);
  machine.cdr1().SetCacheDataTrack(data);
  machine.confirm([](frmOptions& form) { REQUIRE_FALSE(form.chkCache.Value); });
  CHECK_FALSE(machine.cdr1().CacheAudioTracks());
  CHECK(machine.cdr1().CacheDataTrack() == data);
}

TEST_CASE("The speeds that are filled in anew stand there once, and the highest reaches the engine again") {
  Choosing machine(AudioLayout);
  machine.choose([&](frmOptions& form) {
    form.cboWriteSpeed.choose(2);
    const auto items = form.cboWriteSpeed.items();
    machine.engines.stage.take();
    form.FillWriteSpeeds();
    CHECK(form.cboWriteSpeed.items() == items);
    CHECK(form.cboWriteSpeed.Text() == "10x");
    CHECK(machine.engines.stage.take() == Lines{"CDR1.SetWriteSpeed(10)"});
    form.cmdCancel.click();
  });
}

TEST_CASE("The options show what the layout can use") {
  Recording audio;
  audio.record([](frmOptions& form) {
    CHECK(form.optTrack.Enabled);
    CHECK_FALSE(form.optLeaveOpen.Enabled);
    CHECK_FALSE(form.txtVolume.Enabled);
    CHECK_FALSE(form.lblVolume.Visible);
    CHECK(form.optCreateOnly.selected());
    CHECK(form.optClose.selected());
    CHECK_FALSE(form.chkCache.Value);
    CHECK(form.Pic2.Visible);
    form.TS1.choose(2);
    CHECK(form.Pic1.Visible);
    CHECK_FALSE(form.Pic2.Visible);
  });
  Recording data(Mp3Layout);
  data.record([](frmOptions& form) {
    CHECK_FALSE(form.optTrack.Enabled);
    CHECK(form.optLeaveOpen.Enabled);
    CHECK(form.txtVolume.Enabled);
    CHECK(form.lblVolume.Visible);
    form.txtVolume.type("  ");
  });
  CHECK(data.mod().DiscVolumeLabel == "New MP3 CD");
}

TEST_CASE("The speeds go down by fours and by halves, and the highest reaches the engine at once") {
  struct Case {
    std::int16_t max;
    const char* list;
  };
  const auto c = GENERATE(Case{48, "48x44x40x36x32x28x24x20x16x12x8x4x2x1x"}, Case{10, "10x6x2x1x"}, Case{5, "5x1x"},
                          Case{3, "3x2x1x"}, Case{4, "4x2x1x"}, Case{2, "2x1x"}, Case{1, "1x"}, Case{0, "Default"});
  Recording machine;
  machine.engines.stage.drives[0].maxSpeed = c.max;
  machine.engines.stage.take();
  machine.desk.expectForm<frmOptions>("frmOptions", [&](frmOptions& form) {
    std::string list;
    for (const ComboBox::Item& item : form.cboWriteSpeed.items()) list += item.text;
    CHECK(list == c.list);
    form.cmdCancel.click();
  });
  machine.click("Record");
  CHECK_FALSE(machine.mod().RecordConfirmed);
  const Lines calls = machine.engines.stage.take();
  const std::string set = "CDR1.SetWriteSpeed(" + std::to_string(c.max) + ")";
  CHECK((std::find(calls.begin(), calls.end(), set) != calls.end()) == (c.max > 0));
}

TEST_CASE("The close modes and the cache reach the engine") {
  Recording machine;
  machine.record([](frmOptions& form) {
    form.optTrack.click();
    form.chkCache.click();
  });
  CHECK_FALSE(machine.cdr1().CloseDisc());
  CHECK(machine.cdr1().CacheAudioTracks());
  CHECK_FALSE(machine.cdr1().CacheDataTrack());
  CHECK(machine.status().Frame2.Enabled);
}

}  // namespace trackloom

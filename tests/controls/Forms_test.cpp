#include <catch2/catch.hpp>

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/DockStudio.h"
#include "controls/FormSlot.h"
#include "controls/OptionButton.h"
#include "controls/ProgressBarEx.h"
#include "controls/TextBox.h"
#include "controls/Timer.h"
#include "fakes/ScriptedDesk.h"
#include "runtime/RuntimeError.h"

namespace trackloom {

namespace {

struct Sample : Form {
  explicit Sample(FormHost& host, std::string& log) : Form(host, "Sample", "caption"), log_(log) {}
  ~Sample() override { log_ += "destroyed "; }

  Button button{*this, "button", "&Go"};
  OptionGroup group;
  OptionButton first{*this, group, "first", "1"};
  OptionButton second{*this, group, "second", "2"};
  TextBox text{*this, "text", "preset text", 5};
  ComboBox combo{*this, "combo"};
  ProgressBarEx bar{*this, "bar"};
  Timer timer{*this, "timer", 100};

 protected:
  void Load() override { log_ += "load "; }
  void Unload() override { log_ += "unload "; }

 private:
  std::string& log_;
};

struct Slots {
  fakes::ScriptedDesk host;
  std::string log;
  FormSlot<Sample> slot{host, log};
};

}  // namespace

TEST_CASE(
    "A form takes no input while a modal one that it owns is open, shown or hidden, and takes it again behind it") {
  fakes::ScriptedDesk host;
  std::string log;
  const auto owner = std::make_shared<Sample>(host, log);
  const auto other = std::make_shared<Sample>(host, log);
  const auto modal = std::make_shared<Sample>(host, log);
  int clicks = 0;
  owner->button.Click = [&] { ++clicks; };
  owner->show();
  const auto script = [&](Sample& form) {
    CHECK(form.takesInput());
    CHECK(other->takesInput());
    host.expectForm<Sample>(
        "Sample", [](Sample& second) { second.hide(); }, "Sample");
    other->showModal(owner.get());
    CHECK_FALSE(owner->takesInput());
    form.hide();
    owner->button.click();
    owner->closeBox();
    CHECK_FALSE(owner->closed());
  };
  host.expectForm<Sample>("Sample", script, "Sample");
  modal->showModal(owner.get());
  CHECK(clicks == 0);
  CHECK(owner->takesInput());
  owner->button.click();
  CHECK(clicks == 1);
  owner->closeBox();
  CHECK(owner->closed());
}

TEST_CASE("A form that unloads itself in its Load can still be read, is not shown, and is made anew") {
  struct Shy : Sample {
    using Sample::Sample;
    void Load() override { unload(); }
  };
  fakes::ScriptedDesk host;
  std::string log;
  FormSlot<Shy> slot(host, log);
  Sample& form = slot.get();
  CHECK(form.button.Caption == std::string("&Go"));
  CHECK(form.closed());
  CHECK_FALSE(slot.exists());
  slot->show();
  CHECK(host.transcript == std::vector<std::string>{"unload Sample", "unload Sample"});
  CHECK(log == "unload unload destroyed ");
}

TEST_CASE("A form comes into being at first touch and is made anew after its unload") {
  Slots slots;
  CHECK_FALSE(slots.slot.exists());
  slots.slot->button.Caption = "changed";
  CHECK(slots.log == "load ");
  slots.slot->show();
  slots.slot.unload();
  CHECK(slots.log == "load unload destroyed ");
  CHECK_FALSE(slots.slot.exists());
  CHECK(slots.slot->button.Caption == std::string("&Go"));
  slots.slot.unload();
  slots.slot.unload();
}

TEST_CASE("A handler that unloads its own form runs on with its controls still readable") {
  Slots slots;
  std::string seen;
  slots.slot->button.Click = [&] {
    Sample& form = slots.slot.get();
    form.unload();
    slots.log += "still running ";
    seen = form.text.Text;
  };
  slots.slot->show();
  slots.slot->button.click();
  CHECK(seen == "preset text");
  CHECK(slots.log == "load unload still running destroyed ");
}

TEST_CASE("A disabled or hidden control does nothing for its user") {
  Slots slots;
  int clicks = 0;
  Sample& form = slots.slot.get();
  form.button.Click = [&] { ++clicks; };
  form.button.Enabled = false;
  form.button.click();
  form.button.Enabled = true;
  form.button.Visible = false;
  form.button.click();
  CHECK(clicks == 0);
  form.button.Visible = true;
  form.button.click();
  CHECK(clicks == 1);
}

TEST_CASE("A property tells its watchers once, and only when it changes") {
  Slots slots;
  int told = 0;
  Sample& form = slots.slot.get();
  {
    const Connection watch = form.button.changed.connect([&] { ++told; });
    form.button.Caption = "&Go";
    CHECK(told == 0);
    form.button.Caption = "&Stop";
    CHECK(told == 1);
  }
  form.button.Caption = "x";
  CHECK(told == 1);
}

TEST_CASE("One option button of a group is selected at most") {
  Slots slots;
  Sample& form = slots.slot.get();
  CHECK_FALSE(form.first.selected());
  form.first.click();
  form.second.click();
  CHECK_FALSE(form.first.selected());
  CHECK(form.second.selected());
}

TEST_CASE("The longest text limits typing and not the program") {
  Slots slots;
  Sample& form = slots.slot.get();
  CHECK(form.text.Text == std::string("preset text"));
  form.text.type("abcdefgh");
  CHECK(form.text.Text == std::string("abcde"));
  form.text.Text = "longer than five";
  CHECK(form.text.Text == std::string("longer than five"));
}

TEST_CASE("A combo box raises its click for the program's choice too") {
  Slots slots;
  Sample& form = slots.slot.get();
  int clicks = 0;
  form.combo.Click = [&] { ++clicks; };
  form.combo.AddItem("a", 7);
  form.combo.SetListIndex(0);
  CHECK(clicks == 1);
  CHECK(form.combo.ItemData() == 7);
  form.combo.SetListIndex(0);
  CHECK(clicks == 1);
  form.combo.SetListIndex(9);
  CHECK(form.combo.ListIndex() == -1);
}

TEST_CASE("A progress bar clamps, and a maximum of 0 is an empty bar") {
  Slots slots;
  ProgressBarEx& bar = slots.slot->bar;
  CHECK(bar.Max() == 100);
  bar.SetValue(150);
  CHECK(bar.Value() == 100);
  bar.SetMax(50);
  CHECK(bar.Value() == 50);
  bar.SetMax(0);
  CHECK(bar.Value() == 0);
  bar.SetValue(-1);
  CHECK(bar.Value() == 0);
}

TEST_CASE("A timer ticks only while enabled, and never inside its own tick") {
  Slots slots;
  Timer& timer = slots.slot->timer;
  int ticks = 0;
  timer.Tick = [&] {
    ++ticks;
    timer.tick();
  };
  timer.tick();
  CHECK(ticks == 0);
  timer.Enabled = true;
  timer.tick();
  CHECK(ticks == 1);
}

TEST_CASE("A tool that is disabled raises nothing, and an unknown one is error 9") {
  fakes::ScriptedDesk host;
  struct Bars : Form {
    explicit Bars(FormHost& formHost) : Form(formHost, "Bars", "") {}
    DockStudio dock{
        *this, "dock", {}, {{"Go", ToolKind::Command, "Go", "", "", {}}, {"box", ToolKind::Combo, "", "", "", {}}}};
  } form(host);
  std::string heard;
  form.dock.ToolClick = [&](const Tool& tool) { heard += tool.Name(); };
  form.dock.ComboChanged = [&](const Tool&, const ComboEntry& entry) { heard += entry.Text + entry.Tag; };
  form.dock.click("Go");
  form.dock.tool("Go").Enabled = false;
  form.dock.click("Go");
  CHECK(heard == "Go");
  Tool& box = form.dock.tool("box");
  form.dock.AddEntry(box, "A", "0");
  form.dock.SelectEntry(box, 1);
  form.dock.SelectEntry(box, 1);
  CHECK(heard == "GoA0");
  CHECK_THROWS_AS(form.dock.tool("go"), RuntimeError);
  CHECK_THROWS_AS(form.dock.SelectEntry(box, 2), RuntimeError);
}

namespace {

/// Writes down each event of its life together with what can be read of it then.
struct Diary : Form {
  explicit Diary(FormHost& host) : Form(host, "Diary", "caption") {}
  std::string log;
  bool willing = true;

  void note(const std::string& event) { log += event + (visible() ? "+" : "-") + (closed() ? "closed " : " "); }

 protected:
  void Load() override {
    note("load");
    load();
  }
  bool QueryUnload(CloseReason reason) override {
    note(reason == CloseReason::User ? "user?" : "program?");
    return willing;
  }
  void Unload() override {
    note("unload");
    unload();
  }
  void Activate() override { note("activate"); }
};

/// What the host is told, and what the form looks like at that moment.
struct Mirror final : FormHost {
  std::string log;
  Form* owner = nullptr;
  void show(Form& form) override { note("show", form); }
  void showModal(Form& form, Form* before) override {
    owner = before;
    note("modal", form);
  }
  void hide(Form& form) override { note("hide", form); }
  void discard(Form& form) override { note("discard", form); }
  void repaint(Control& control) override { log += "repaint " + control.name(); }
  void repaint(Form& form) override { log += "repaint all of " + form.name(); }

 private:
  void note(const std::string& event, const Form& form) { log += event + (form.visible() ? "+ " : "- "); }
};

}  // namespace

TEST_CASE("A form starts loaded once, hidden, open, in its normal state at no place") {
  Mirror host;
  const auto form = std::make_shared<Diary>(host);
  CHECK_FALSE(form->visible());
  CHECK_FALSE(form->closed());
  CHECK(form->placement == Placement{WindowState::Normal, 0, 0, 0, 0});
  form->load();
  form->load();
  CHECK(form->log == "load- ");
}

TEST_CASE("The host hears of a form that is already in its new state") {
  Mirror host;
  const auto form = std::make_shared<Diary>(host);
  form->show();
  form->hide();
  form->hide();
  form->show();
  CHECK(host.log == "show+ hide- show+ ");
  CHECK(form->unload());
  CHECK(host.log == "show+ hide- show+ discard- ");
  CHECK(form->log == "load- program?+ unload+closed ");
  CHECK_FALSE(form->visible());
}

TEST_CASE("A modal form is loaded, visible and before its owner") {
  Mirror host;
  const auto owner = std::make_shared<Diary>(host);
  const auto form = std::make_shared<Diary>(host);
  form->showModal(owner.get());
  CHECK(form->log == "load- ");
  CHECK(host.log == "modal+ ");
  CHECK(host.owner == owner.get());
}

TEST_CASE("A form that refuses to go stays, whoever asks, and an unloaded one goes once and comes no more") {
  Mirror host;
  const auto form = std::make_shared<Diary>(host);
  int told = 0;
  form->onUnloaded = [&] { ++told; };
  form->show();
  form->willing = false;
  form->closeBox();
  CHECK_FALSE(form->unload());
  CHECK_FALSE(form->closed());
  CHECK(form->log == "load- user?+ program?+ ");
  form->willing = true;
  form->closeBox();
  CHECK(form->closed());
  CHECK(form->unload());
  CHECK(told == 1);
  form->show();
  form->showModal(nullptr);
  CHECK(host.log == "show+ discard- ");
}

TEST_CASE("Only an open form hears of its activation") {
  Mirror host;
  const auto form = std::make_shared<Diary>(host);
  form->activated();
  form->unload();
  form->activated();
  CHECK(form->log == "activate- program?- unload-closed ");
}

TEST_CASE("A form that is unloaded while it is asked about that goes once") {
  struct Hasty : Diary {
    using Diary::Diary;
    bool QueryUnload(CloseReason reason) override {
      if (std::exchange(first, false)) unload();
      return Diary::QueryUnload(reason);
    }
    bool first = true;
  };
  Mirror host;
  const auto form = std::make_shared<Hasty>(host);
  CHECK(form->unload());
  CHECK(host.log == "discard- ");
  CHECK(form->log == "program?- unload-closed program?-closed ");
}

TEST_CASE("A control is painted at once when it asks for it") {
  Mirror host;
  Diary form(host);
  Button button(form, "button", "");
  button.Refresh();
  CHECK(host.log == "repaint button");
}

TEST_CASE("A form is painted as a whole when it asks for it") {
  Mirror host;
  Diary form(host);
  form.Refresh();
  CHECK(host.log == "repaint all of " + form.name());
}

}  // namespace trackloom

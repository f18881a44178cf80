#include "Targets.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

#include "YieldingDesk.h"
#include "fakes/FakeDrives.h"
#include "fakes/FakeFolderListing.h"
#include "fakes/FakePrintControls.h"
#include "fakes/FakeRipping.h"
#include "fakes/FakeWorld.h"
#include "fakes/FakeWriter.h"
#include "fakes/TempFolder.h"
#include "layout/frmOpenLayout.h"
#include "model/DockState.h"
#include "printing/clsMP3Info.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"
#include "runtime/ValueFile.h"
#include "shell/Program.h"

namespace trackloom::fuzz {

namespace {

/// A user who opens the first layout that is offered, and gives way to all else.
class OpeningDesk final : public YieldingDesk {
 public:
  void showModal(Form& form, Form* owner) override {
    if (auto* dialog = dynamic_cast<frmOpenLayout*>(&form)) dialog->cmdOK.click();
    if (!form.closed()) YieldingDesk::showModal(form, owner);
  }
};

/// A program in a folder of its own, whose user gives way to everything.
template <class Desk>
class Installation {
 public:
  void install(const std::string& file, std::string_view bytes) {
    folder_.write("NoShow.dat", "");
    folder_.write(file, std::string(bytes));
  }

  void addTrack(const std::string& file) {
    folder_.write(file, "");
    engines_.stage.audio[folder_ / file] = 100;
  }

  /// Runs the program from its start to its close; where it ends earlier that is well too.
  template <class Deeds>
  void live(const Deeds& deeds) {
    goOn([&](ListingWindow& window) {
      deeds(window);
      window.closeBox();
    });
  }

  /// Goes on with the program, which starts where none runs.
  template <class Deeds>
  void goOn(const Deeds& deeds) {
    try {
      if (!program_) start();
      deeds(program_->session().frmListing());
    } catch (const fakes::EndOfProcess&) {
      program_.reset();
    }
  }

  /// The running program's.
  Session& session() { return program_->session(); }

  std::string read(const std::string& file) const { return folder_.read(file); }
  std::string path() const { return folder_.path(); }

  Installation() { process_.folder = folder_.path(); }

 private:
  void start() {
    program_ =
        std::make_unique<Program>(desk_, Ports{desk_, desk_, folders_, drives_, pump_, process_, engines_, opener_,
                                               help_, prints_, ripping_.rippers, ripping_.encoders, ripping_.databases,
                                               commonControls_, registry_, fileVersions_, Separators{}});
    program_->start();
    program_->forms().shell.frmOpen->Timer1.tick();
    program_->session().frmListing().activated();
  }

  fakes::TempFolder folder_;
  Desk desk_;
  fakes::FakePump pump_;
  fakes::FakeProcess process_;
  fakes::FakeEngines engines_;
  fakes::FakeOpener opener_;
  fakes::FakeHelp help_;
  fakes::FakePrintControls prints_;
  fakes::FakeRipping ripping_;
  fakes::FakeCommonControls commonControls_;
  fakes::FakeRegistry registry_;
  fakes::FakeFileVersions fileVersions_;
  fakes::FakeFolderListing folders_;
  fakes::FakeDrives drives_;
  std::unique_ptr<Program> program_;
};

void showOptions(ListingWindow& window) {
  window.DockStudio1.click("mnuToolsOptions");
}

void require(bool holds) {
  if (!holds) std::abort();
}

std::vector<std::string> rowsOf(const ListingWindow& window) {
  std::vector<std::string> rows;
  const ListView& list = window.ListView1;
  for (int row = 1; row <= list.Count(); ++row)
    for (int cell = 1; cell < static_cast<int>(list.columns().size()); ++cell)
      rows.push_back(list.Item(row).Text + "|" + list.SubItem(row, cell));
  return rows;
}

bool anyHasQuote(const std::vector<std::string>& texts) {
  return std::any_of(texts.begin(), texts.end(),
                     [](const std::string& text) { return text.find('"') != std::string::npos; });
}

/// Whether a field of 30 bytes can read so.
bool canBeField(const std::string& text) {
  constexpr std::size_t FieldSize = 30;
  return isValidUtf8(text) && Len(text) <= FieldSize && Trim(text) == text;
}

std::vector<std::string> valuesOf(const std::string& bytes) {
  ValueReader reader(bytes);
  std::vector<std::string> values;
  try {
    while (true) values.push_back(reader.next());
  } catch (const RuntimeError& end) {
    require(end.number() == RuntimeError::InputPastEnd);
    return values;
  }
}

}  // namespace

void runOptions(std::string_view bytes) {
  const OptionsRecord record = OptionsRecord::decode(bytes);
  std::string whole(bytes.substr(0, OptionsRecord::Size));
  whole.resize(OptionsRecord::Size, '\0');
  require(record.encode() == whole);

  Installation<YieldingDesk> installation;
  installation.install("Options.dat", bytes);
  installation.live(showOptions);
  const std::string after = installation.read("Options.dat");
  require(after.size() == bytes.size() || after.size() == OptionsRecord::Size);
  if (bytes.size() > OptionsRecord::Size)
    require(after.substr(OptionsRecord::Size) == bytes.substr(OptionsRecord::Size));
}

void runDockState(std::string_view bytes) {
  if (const auto state = DockState::decode(bytes)) {
    require(DockState::decode(state->encode()) == state);
    require(state->encode() == bytes);
  }
  Installation<YieldingDesk> installation;
  installation.install("Trackloom.dsl", bytes);
  installation.live(showOptions);
  require(DockState::decode(installation.read("Trackloom.dsl")).has_value());
}

void runValues(std::string_view bytes) {
  const std::vector<std::string> values = valuesOf(std::string(bytes));
  std::size_t length = 0;
  ValueWriter writer;
  for (const std::string& value : values) length += value.size();
  require(length <= bytes.size() && values.size() <= bytes.size());
  for (const std::string& value : values) writer.text(value);
  // A quote before a separator within a value closes it when it is read again.
  require(anyHasQuote(values) || valuesOf(writer.bytes()) == values);
}

struct TagTrial::State {
  Installation<YieldingDesk> installation;
};

TagTrial::TagTrial() : state_(std::make_unique<State>()) {
  state_->installation.install("tagged.mp3", "");
  state_->installation.goOn([](ListingWindow&) {});
}

TagTrial::~TagTrial() = default;

void TagTrial::run(std::string_view bytes) {
  constexpr std::size_t TagSize = 128;
  Installation<YieldingDesk>& installation = state_->installation;
  installation.install("tagged.mp3", bytes);
  installation.session().mod.TagsMissing = false;
  clsMP3Info info(installation.session());
  info.SetFileName(HostPath(installation.path() + "/tagged.mp3"));
  const bool tagged = bytes.size() >= TagSize && bytes.substr(bytes.size() - TagSize).starts_with("TAG");
  require(installation.session().mod.TagsMissing != tagged);
  require(tagged || (info.Title() == "Unknown" && info.Artist() == "Unknown"));
  require(canBeField(info.Title()) && canBeField(info.Artist()));
}

struct LayoutTrial::State {
  Installation<OpeningDesk> installation;
};

LayoutTrial::LayoutTrial() : state_(std::make_unique<State>()) {
  for (const char* track : {"music/a.mp3", "music/b b.mp3", "music/\xc3\xa4.wav"}) state_->installation.addTrack(track);
}

LayoutTrial::~LayoutTrial() = default;

void LayoutTrial::run(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) text += c == '@' ? state_->installation.path() + "/music" : std::string(1, c);
  state_->installation.install("Layouts/mix.mixl", text);
  state_->installation.goOn([](ListingWindow& window) {
    window.DockStudio1.click("Open");
    const std::vector<std::string> opened = rowsOf(window);
    // A quote within a cell is read as far as the rules of the file let it.
    if (anyHasQuote(opened)) return;
    window.DockStudio1.click("mnuFileSave");
    window.DockStudio1.click("Open");
    require(rowsOf(window) == opened);
  });
}

}  // namespace trackloom::fuzz

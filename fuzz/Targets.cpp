#include "Targets.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

#include "YieldingDesk.h"
#include "fakes/FakeWorld.h"
#include "fakes/FakeWriter.h"
#include "fakes/TempFolder.h"
#include "model/DockState.h"
#include "runtime/RuntimeError.h"
#include "runtime/ValueFile.h"
#include "shell/Program.h"

namespace trackloom::fuzz {

namespace {

/// A program in a folder of its own, whose user gives way to everything.
class Installation {
 public:
  void install(const std::string& file, std::string_view bytes) {
    folder_.write("NoShow.dat", "");
    folder_.write(file, std::string(bytes));
  }

  /// Runs the program from its start to its close; where it ends earlier that is well too.
  void live() {
    try {
      Program program(desk_, {desk_, files_, pump_, process_, engines_, opener_, help_, commonControls_, Separators{}});
      program.start();
      program.forms().shell.frmOpen->Timer1.tick();
      ListingWindow& window = program.session().frmListing();
      window.activated();
      window.DockStudio1.click("mnuToolsOptions");
      window.closeBox();
    } catch (const fakes::EndOfProcess&) {
      return;
    }
  }

  std::string read(const std::string& file) const { return folder_.read(file); }

  Installation() { process_.folder = folder_.path(); }

 private:
  fakes::TempFolder folder_;
  YieldingDesk desk_;
  fakes::FakePump pump_;
  fakes::FakeProcess process_;
  fakes::FakeEngines engines_;
  fakes::FakeOpener opener_;
  fakes::FakeHelp help_;
  fakes::FakeCommonControls commonControls_;
  fakes::FakeFileDialogs files_;
};

void require(bool holds) {
  if (!holds) std::abort();
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

  Installation installation;
  installation.install("Options.dat", bytes);
  installation.live();
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
  Installation installation;
  installation.install("Trackloom.dsl", bytes);
  installation.live();
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
  const bool plain = std::none_of(values.begin(), values.end(),
                                  [](const std::string& value) { return value.find('"') != std::string::npos; });
  require(!plain || valuesOf(writer.bytes()) == values);
}

}  // namespace trackloom::fuzz

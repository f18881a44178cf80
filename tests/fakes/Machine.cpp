#include "fakes/Machine.h"

#include "layout/frmNewOption.h"

namespace trackloom::fakes {

Machine::Machine() {
  process.folder = folder.path();
}

Machine::~Machine() = default;

void Machine::forgetProgram() {
  program_.reset();
}

void Machine::showSplash() {
  engines.restart();
  program_ = std::make_unique<Program>(
      desk, Ports{desk, desk, folders, hardDrives(), pump, process, writers(), opener, help, prints, ripping.rippers,
                  ripping.encoders, ripping.databases, commonControls, registry, fileVersions, Separators{}});
  program_->start();
}

void Machine::start() {
  showSplash();
  program_->forms().shell.frmOpen->Timer1.tick();
}

void Machine::startQuietly() {
  folder.write("NoShow.dat", "");
  start();
  activate();
}

std::optional<int> Machine::endOf(const std::function<void()>& handler) {
  try {
    program_->run(handler);
    return std::nullopt;
  } catch (const EndOfProcess& end) {
    return end.status;
  }
}

std::optional<int> Machine::close() {
  return endOf([this] { window().closeBox(); });
}

void Machine::newLayout(std::int16_t kind) {
  desk.expectForm<frmNewOption>("frmNewOption", [kind](frmNewOption& form) {
    (kind == AudioLayout ? form.optStandard : form.optMP3).click();
    form.cmdOK.click();
  });
  click("New");
}

std::string Machine::makeTrack(const std::string& name, std::int32_t blocks) {
  folder.write("music/" + name, "x");
  std::string path = folder / ("music/" + name);
  engines.stage.audio[path] = blocks;
  engines.stage.data[path] = blocks;
  return path;
}

void Machine::addTrack(const std::string& name, std::int32_t blocks) {
  window().ListView1.dropFiles({makeTrack(name, blocks)});
}

}  // namespace trackloom::fakes

#include "desktop/LiveProgram.h"

#include <QRadioButton>
#include <QtTest/QTest>

namespace trackloom::trial {

LiveProgram::LiveProgram(Separators signs)
    : program(desk,
              Ports{boxes, files, folders, drives, pump, process, engines, opener, help, prints, ripping.rippers,
                    ripping.encoders, ripping.databases, commonControls, registry, fileVersions, std::move(signs)}) {
  process.folder = folder.path();
  desk.setExtras([this](const std::string& form, QWidget& window) {
    if (form == "frmPrint") prints.standIn(window);
  });
  desk.setTrap([this](const std::function<void()>& event) {
    try {
      program.run(event);
    } catch (const fakes::EndOfProcess& end) {
      ended = end.status;
    }
  });
}

LiveProgram::~LiveProgram() = default;

void LiveProgram::start() {
  desk.enter([this] {
    program.start();
    program.forms().shell.frmOpen->Timer1.tick();
  });
}

void LiveProgram::startQuietly() {
  folder.write("NoShow.dat", "");
  start();
  user.at("Trackloom", [](QWidget& /*window*/) {});
  user.finish();
}

void LiveProgram::newLayout(std::int16_t kind, const std::function<void()>& announce) {
  user.at("Select Option", [kind](QWidget& window) {
    in<QRadioButton>(window, kind == AudioLayout ? "optStandard" : "optMP3").click();
    in<QPushButton>(window, "cmdOK").click();
  });
  announce();
  click("New");
  user.finish();
}

std::string LiveProgram::makeTrack(const std::string& name, std::int32_t blocks) {
  folder.write("music/" + name, "x");
  std::string path = folder / ("music/" + name);
  engines.stage.audio[path] = blocks;
  engines.stage.data[path] = blocks;
  return path;
}

void LiveProgram::addTrack(const std::string& name, std::int32_t blocks) {
  const std::string path = makeTrack(name, blocks);
  desk.enter([&] { form().ListView1.dropFiles({path}); });
}

}  // namespace trackloom::trial

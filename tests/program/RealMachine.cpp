#include "program/RealMachine.h"

#include <catch2/catch.hpp>
#include <fstream>

#include "engines/virtual/VirtualRecorders.h"

namespace trackloom::test {

RealMachine::RealMachine(int recorders) {
  for (int number = 1; number <= recorders; ++number)
    engines::virtualrecorder::createVirtualRecorder(HostPath(recorder(number).string()));
}

RealMachine::~RealMachine() {
  forgetProgram();
}

std::filesystem::path RealMachine::recorder(int number) const {
  return folder / ("Virtual Recorder" + (number == 1 ? "" : " " + std::to_string(number)));
}

void RealMachine::configure(const std::string& recorderIni, int number) const {
  write(recorder(number) / "recorder.ini", "[recorder]\n" + recorderIni);
}

std::filesystem::path RealMachine::disc() const {
  return recorder() / "tray/Disc 0001";
}

std::filesystem::path RealMachine::finished(int number) const {
  return recorder() / ("shelf/Disc 000" + std::to_string(number));
}

void RealMachine::describe(const std::string& discIni) const {
  write(disc() / "disc.ini", discIni);
}

std::string RealMachine::wavFile(const std::string& name, std::int32_t blocks) const {
  folder.write("music/" + name, wav(samplesOf(name, blocks)));
  return folder / ("music/" + name);
}

std::string RealMachine::samplesOf(const std::string& name, std::int32_t blocks) {
  return noise(static_cast<std::size_t>(blocks) * 2352, static_cast<unsigned char>(name.front()));
}

std::string RealMachine::mp3File(const std::string& name, std::size_t bytes) const {
  folder.write("music/" + name, noise(bytes, bytes));
  return folder / ("music/" + name);
}

void RealMachine::drop(const std::vector<std::string>& paths) {
  window().ListView1.dropFiles(paths);
}

void RealMachine::record(const std::function<void(frmOptions&)>& choose) {
  desk.expectForm<frmOptions>("frmOptions", [choose](frmOptions& form) {
    if (choose) choose(form);
    form.cmdOK.click();
  });
  click("Record");
}

bool RealMachine::finishes() {
  return events.runUntil([this] { return desk.finished(); });
}

void RealMachine::expectDone() {
  desk.expectForm<frmDone>("frmDone", [](frmDone& form) { form.cmdClose.click(); });
}

std::string RealMachine::errorOfWrite() {
  std::string words;
  desk.expectForm<frmError>("frmError", [&](frmError& form) {
    words = form.lblError.Caption;
    form.cmdClose.click();
  });
  REQUIRE(finishes());
  return words;
}

WriterEngines& RealMachine::writers() {
  writers_ = std::make_unique<engines::writer::DiscWriters>(
      engines::virtualrecorder::findVirtualRecorders(HostPath(folder.path())),
      std::make_shared<engines::audio::AudioFiles>(), events, patience,
      engines::writer::WriterSettings{150, HostPath(folder / "scratch")});
  return *writers_;
}

void RealMachine::write(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace trackloom::test

#pragma once

#include <catch2/catch.hpp>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "engines/virtual/VirtualRecorders.h"
#include "engines/writer/DiscWriters.h"
#include "fakes/FakeEventQueue.h"
#include "fakes/FakePatience.h"
#include "fakes/Machine.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"
#include "writing/WritingForms.h"

namespace trackloom::test {

using fakes::noise;
using fakes::TempFolder;
using fakes::wav;

/// A machine whose program has the real engine, with virtual recorders beside it.
class RealMachine : public fakes::Machine {
 public:
  explicit RealMachine(int recorders = 1) {
    for (int number = 1; number <= recorders; ++number)
      engines::virtualrecorder::createVirtualRecorder(HostPath(recorder(number).string()));
  }
  ~RealMachine() override { forgetProgram(); }

  std::filesystem::path recorder(int number = 1) const {
    return folder / ("Virtual Recorder" + (number == 1 ? "" : " " + std::to_string(number)));
  }
  void configure(const std::string& recorderIni, int number = 1) const {
    write(recorder(number) / "recorder.ini", "[recorder]\n" + recorderIni);
  }
  std::filesystem::path disc() const { return recorder() / "tray/Disc 0001"; }
  /// The disc of that number once it has been ejected.
  std::filesystem::path finished(int number) const { return recorder() / ("shelf/Disc 000" + std::to_string(number)); }
  void describe(const std::string& discIni) const { write(disc() / "disc.ini", discIni); }

  /// A WAV file of so many blocks of noise; its path.
  std::string wavFile(const std::string& name, std::int32_t blocks) const {
    folder.write("music/" + name, wav(samplesOf(name, blocks)));
    return folder / ("music/" + name);
  }
  static std::string samplesOf(const std::string& name, std::int32_t blocks) {
    return noise(static_cast<std::size_t>(blocks) * 2352, static_cast<unsigned char>(name.front()));
  }
  /// A file that a data disc takes, whatever is in it; its path.
  std::string mp3File(const std::string& name, std::size_t bytes) const {
    folder.write("music/" + name, noise(bytes, bytes));
    return folder / ("music/" + name);
  }
  void drop(const std::vector<std::string>& paths) { window().ListView1.dropFiles(paths); }

  /// Confirms the options that `choose` leaves.
  void record(const std::function<void(frmOptions&)>& choose = {}) {
    desk.expectForm<frmOptions>("frmOptions", [choose](frmOptions& form) {
      if (choose) choose(form);
      form.cmdOK.click();
    });
    click("Record");
  }
  /// Lets the write go on until the windows that were announced have come.
  bool finishes() {
    return events.runUntil([this] { return desk.finished(); });
  }
  void expectDone() {
    desk.expectForm<frmDone>("frmDone", [](frmDone& form) { form.cmdClose.click(); });
  }
  /// The write must end in frmError; its words.
  std::string errorOfWrite() {
    std::string words;
    desk.expectForm<frmError>("frmError", [&](frmError& form) {
      words = form.lblError.Caption;
      form.cmdClose.click();
    });
    REQUIRE(finishes());
    return words;
  }

  fakes::FakeEventQueue events;
  fakes::FakePatience patience;

 protected:
  WriterEngines& writers() override {
    writers_ = std::make_unique<engines::writer::DiscWriters>(
        engines::virtualrecorder::findVirtualRecorders(HostPath(folder.path())),
        std::make_shared<engines::audio::AudioFiles>(), events, patience,
        engines::writer::WriterSettings{150, HostPath(folder / "scratch")});
    return *writers_;
  }

 private:
  static void write(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
  }

  std::unique_ptr<engines::writer::DiscWriters> writers_;
};

}  // namespace trackloom::test

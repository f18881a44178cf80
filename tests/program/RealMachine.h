#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

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
  explicit RealMachine(int recorders = 1);
  ~RealMachine() override;

  std::filesystem::path recorder(int number = 1) const;
  void configure(const std::string& recorderIni, int number = 1) const;
  std::filesystem::path disc() const;
  /// The disc of that number once it has been ejected.
  std::filesystem::path finished(int number) const;
  void describe(const std::string& discIni) const;

  /// A WAV file of so many blocks of noise; its path.
  std::string wavFile(const std::string& name, std::int32_t blocks) const;
  static std::string samplesOf(const std::string& name, std::int32_t blocks);
  /// A file that a data disc takes, whatever is in it; its path.
  std::string mp3File(const std::string& name, std::size_t bytes) const;
  void drop(const std::vector<std::string>& paths);

  /// Confirms the options that `choose` leaves.
  void record(const std::function<void(frmOptions&)>& choose = {});
  /// Lets the write go on until the windows that were announced have come.
  bool finishes();
  void expectDone();
  /// The write must end in frmError; its words.
  std::string errorOfWrite();

  fakes::FakeEventQueue events;
  fakes::FakePatience patience;

 protected:
  WriterEngines& writers() override;

 private:
  static void write(const std::filesystem::path& path, const std::string& bytes);

  std::unique_ptr<engines::writer::DiscWriters> writers_;
};

}  // namespace trackloom::test

#pragma once

#include <functional>
#include <string>
#include <vector>

#include "fakes/Machine.h"
#include "ripper/Hearing.h"
#include "ripper/RipperForms.h"

namespace trackloom {

/// A machine whose user has opened the ripper, before a disc of three audio tracks that the database does not know. The
/// folder `rips` is there for the files. Everything that happens is written down as a dialogue.
class Ripping : public fakes::Machine {
 public:
  using Lines = Hearing::Lines;

  /// `prepare` runs before the ripper is opened.
  explicit Ripping(const std::function<void(Ripping&)>& prepare = {});
  ~Ripping() override;

  Hearing hearing;

  RipperForms& forms();
  frmRipMain& form();
  CDRipperMod1& rip();
  fakes::FakeRipper& engine();
  fakes::RipperStage& stage();
  std::string rips() const;
  std::string status();

  void know(const std::string& artist, const std::string& title, const std::vector<std::string>& tracks,
            const std::string& genre = "", const std::string& year = "");
  void read();
  Lines rows();
  Lines names();
  void check(const std::vector<int>& rows);

  /// The user takes the folder `rips`, does `choose`, and agrees.
  void expectOptions(const std::function<void(frmRipOptions&)>& choose = {});
  /// `use` is what happens before the dialog of the rip, from its first activation on.
  void expectRip(const std::function<void(frmRipStatus&)>& use);
  /// From the first activation up to the last word.
  void ripToEnd(frmRipStatus& status);
  /// Rips what is checked.
  void extract(const std::function<void(frmRipOptions&)>& choose = {});
  void extractAll(const std::function<void(frmRipOptions&)>& choose = {});

 private:
  std::string wordsOf(const std::string& line) const;
};

}  // namespace trackloom

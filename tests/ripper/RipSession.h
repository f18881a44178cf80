#pragma once

#include <algorithm>
#include <iterator>

#include "fakes/FolderLook.h"
#include "ripper/Ripping.h"

namespace trackloom {

using Lines = std::vector<std::string>;

inline bool has(const Lines& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

/// Those of the lines that begin so.
inline Lines starting(const Lines& lines, const std::string& with) {
  Lines found;
  std::copy_if(lines.begin(), lines.end(), std::back_inserter(found),
               [&](const std::string& line) { return line.starts_with(with); });
  return found;
}

/// A machine whose ripper has listed three known tracks.
class RipSession : public Ripping {
 public:
  RipSession() {
    know("Anna", "Evenings", {"One", "Two", "Three"}, "Jazz", "1999");
    read();
  }
  /// The dialog of a rip that has been queued; `use` must leave it closed.
  void rip(const std::function<void(frmRipStatus&)>& use, const std::function<void(frmRipOptions&)>& choose = {}) {
    expectOptions(choose);
    expectRip([&, use](frmRipStatus& status) {
      hearing.heard();
      use(status);
    });
    form().cmdExtract.click();
    CHECK(desk.finished());
  }
  void complete() {
    desk.expectBox("Operation Complete", BoxAnswer::Ok);
    engine().finish();
  }
  CDRipperEvents& events() { return *engine().events; }
};

inline Lines ripsOf(const Ripping& machine) {
  Lines names = fakes::namesIn(machine.folder / "rips");
  std::erase(names, ".keep");
  return names;
}

}  // namespace trackloom

#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ripper/Ripping.h"

namespace trackloom {

using Lines = std::vector<std::string>;

bool has(const Lines& lines, const std::string& line);

/// Those of the lines that begin so.
Lines starting(const Lines& lines, const std::string& with);

/// A machine whose ripper has listed three known tracks.
class RipSession : public Ripping {
 public:
  RipSession();
  ~RipSession() override;

  /// The dialog of a rip that has been queued; `use` must leave it closed.
  void rip(const std::function<void(frmRipStatus&)>& use, const std::function<void(frmRipOptions&)>& choose = {});
  void complete();
  CDRipperEvents& events();
};

Lines ripsOf(const Ripping& machine);

}  // namespace trackloom

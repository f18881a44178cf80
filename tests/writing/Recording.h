#pragma once

#include <functional>
#include <string>
#include <vector>

#include "fakes/Machine.h"
#include "writing/WritingForms.h"

namespace trackloom::fakes {

/// A machine with a layout of two tracks, ready to record.
class Recording : public Machine {
 public:
  explicit Recording(std::int16_t kind = AudioLayout);
  ~Recording() override;

  void record(const std::function<void(frmOptions&)>& choose = {});
  void refused(const std::string& title);
  /// The write of one track goes through and ends well.
  void complete();
  void expectDone(std::string& text);
  /// What the window of errors says once `fail` has failed the write.
  std::string errorAfter(const std::function<void()>& fail);
  frmStatus& status();
};

}  // namespace trackloom::fakes

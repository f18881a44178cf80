#pragma once

#include <memory>

#include "controls/FormSlot.h"
#include "search/frmSearch.h"

namespace trackloom {

/// The window of the search for audio files.
struct SearchForms {
  explicit SearchForms(Session& session)
      : frmSearch([&session] { return std::make_shared<class frmSearch>(session); }) {}

  FormSlot<class frmSearch> frmSearch;
};

}  // namespace trackloom

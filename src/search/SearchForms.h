#pragma once

#include "controls/FormSlot.h"
#include "search/frmSearch.h"

namespace trackloom {

struct Session;

/// The window of the search for audio files.
struct SearchForms {
  Session& session;
  FormSlot<class frmSearch> frmSearch{session, *this};
};

}  // namespace trackloom

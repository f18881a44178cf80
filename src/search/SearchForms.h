#pragma once

#include "controls/FormSlot.h"
#include "search/SearchDrivesMod.h"
#include "search/frmSearch.h"

namespace trackloom {

struct Session;

/// The window of the search for audio files, and what it shares with the walk over the drives.
struct SearchForms {
  explicit SearchForms(Session& shared);
  ~SearchForms();

  Session& session;
  SearchDrivesMod mod{};
  FormSlot<class frmSearch> frmSearch;
};

}  // namespace trackloom

#pragma once

#include "layout/LayoutForms.h"
#include "printing/PrintingForms.h"
#include "ripper/RipperForms.h"
#include "search/SearchForms.h"
#include "shell/ShellForms.h"
#include "writing/WritingForms.h"

namespace trackloom {

struct Session;

/// Every window of the program but the main one.
struct ProgramForms {
  Session& session;
  ShellForms shell{session};
  LayoutForms layout{session};
  WritingForms writing{session};
  SearchForms search{session};
  PrintingForms printing{session};
  RipperForms ripper{session};
};

}  // namespace trackloom

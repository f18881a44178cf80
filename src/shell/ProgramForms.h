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
  explicit ProgramForms(Session& shared);
  ~ProgramForms();

  Session& session;
  ShellForms shell;
  LayoutForms layout;
  WritingForms writing;
  SearchForms search;
  PrintingForms printing;
  RipperForms ripper;
};

}  // namespace trackloom

#pragma once

#include <memory>

#include "controls/FormSlot.h"
#include "shell/frmAbout.h"
#include "shell/frmDefaultOptions.h"
#include "shell/frmImages.h"
#include "shell/frmNOCD.h"
#include "shell/frmOpen.h"

namespace trackloom {

/// The shell's own windows beside the main one.
struct ShellForms {
  explicit ShellForms(Session& session)
      : frmOpen([&session] { return std::make_shared<class frmOpen>(session); }),
        frmNOCD([&session] { return std::make_shared<class frmNOCD>(session); }),
        frmImages([&session] { return std::make_shared<class frmImages>(session); }),
        frmDefaultOptions([&session, this] { return std::make_shared<class frmDefaultOptions>(session, frmImages); }),
        frmAbout([&session, this] { return std::make_shared<class frmAbout>(session, frmImages); }) {}

  FormSlot<class frmOpen> frmOpen;
  FormSlot<class frmNOCD> frmNOCD;
  FormSlot<class frmImages> frmImages;
  FormSlot<class frmDefaultOptions> frmDefaultOptions;
  FormSlot<class frmAbout> frmAbout;
};

}  // namespace trackloom

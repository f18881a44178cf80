#pragma once

#include <optional>

#include "controls/Form.h"
#include "controls/FormHost.h"
#include "ports/FileDialogs.h"
#include "ports/MessageBoxes.h"

namespace trackloom::fuzz {

/// A user who closes every window by its close box and takes each box's way out.
class YieldingDesk : public FormHost, public MessageBoxes, public FileDialogs {
 public:
  void show(Form&) override {}
  void showModal(Form& form, Form*) override { form.closeBox(); }
  void hide(Form&) override {}
  void discard(Form&) override {}
  void repaint(Control&) override {}
  void repaint(Form&) override {}

  std::optional<HostPath> choose(const FileDialog&) override { return std::nullopt; }
  std::optional<HostPath> browseForFolder(const std::string&) override { return std::nullopt; }
  BoxAnswer show(const MessageBox& box) override {
    switch (box.buttons) {
      case BoxButtons::Ok:
        return BoxAnswer::Ok;
      case BoxButtons::OkCancel:
      case BoxButtons::RetryCancel:
        return BoxAnswer::Cancel;
      case BoxButtons::YesNo:
      case BoxButtons::YesNoCancel:
        return BoxAnswer::No;
    }
    return BoxAnswer::Ok;
  }
};

}  // namespace trackloom::fuzz

#pragma once

#include "controls/Control.h"

namespace trackloom {

/// The folders of the machine as a tree with one of them selected; at first none is, and the text is empty.
class FolderTreeview final : public Control {
 public:
  FolderTreeview(Form& form, std::string name);
  void accept(ControlVisitor& visitor) override;

  const std::string& SelectedFolder() const { return folder_; }
  /// Raises FolderChanged if the selection changes. The disk is not asked, which on a dead network mount would hold up
  /// the window: whoever sets a folder has learnt that it is there.
  void SetSelectedFolder(const std::string& folder);

  std::function<void(const std::string& path)> FolderChanged;
  /// The user's choice.
  void choose(const std::string& folder);

 private:
  Property<std::string> folder_;
};

}  // namespace trackloom

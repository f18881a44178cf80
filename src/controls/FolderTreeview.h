#pragma once

#include "controls/Control.h"

namespace trackloom {

/// The folders of the machine as a tree with one of them selected; at first the user's home folder.
class FolderTreeview final : public Control {
 public:
  FolderTreeview(Form& form, std::string name);
  void accept(ControlVisitor& visitor) override;

  const std::string& SelectedFolder() const { return folder_; }
  /// Raises FolderChanged if the selection changes. Throws RuntimeError for anything that is not a folder, and stays.
  void SetSelectedFolder(const std::string& folder);

  std::function<void(const std::string& path)> FolderChanged;
  /// For a folder that the tree has read itself: the disk is not asked again, which on a dead network mount would hold
  /// up the window.
  void choose(const std::string& folder);

 private:
  void select(const std::string& folder);

  Property<std::string> folder_;
};

}  // namespace trackloom

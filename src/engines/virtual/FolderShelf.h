#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engines/disc/Recorder.h"
#include "engines/virtual/VirtualRecorder.h"
#include "ports/DiscShelf.h"

namespace trackloom::engines::virtualrecorder {

/// The tray and the shelf of a recorder's folder. Whatever is asked for by a name is looked for among the folders of
/// the shelf itself, so no name leads out of it. Blanks can be added, and discs named and deleted, while an operation
/// runs, but the tray then stays shut.
class FolderShelf final : public DiscShelf {
 public:
  explicit FolderShelf(HostPath folder) : folder_(std::move(folder)), recorder_(folder_) {}

  std::string name() const override { return recorder_.id(); }
  HostPath folder() const override { return folder_; }
  bool present() override;
  ShelfView look() override;
  void eject() override;
  void insert(const std::string& disc) override;
  void addBlank(BlankDisc kind) override;
  void rename(const std::string& disc, const std::string& newName) override;
  void remove(const std::string& disc) override;

 private:
  HostPath folder_;
  VirtualRecorder recorder_;
};

/// A shelf for each of the recorders, which are folders of that folder.
std::vector<std::shared_ptr<DiscShelf>> shelvesOf(const HostPath& programFolder, const RecorderList& recorders);

}  // namespace trackloom::engines::virtualrecorder

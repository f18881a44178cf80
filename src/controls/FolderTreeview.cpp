#include "controls/FolderTreeview.h"

#include "controls/ControlVisitor.h"
#include "runtime/Paths.h"

namespace trackloom {

namespace {

std::string withoutTrailingSep(std::string folder) {
  while (folder.size() > 1 && folder.back() == HostSep) folder.pop_back();
  return folder;
}

}  // namespace

FolderTreeview::FolderTreeview(Form& form, std::string name) : Control(form, std::move(name)), folder_(changed, {}) {}

void FolderTreeview::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

void FolderTreeview::choose(const std::string& folder) {
  if (usable()) SetSelectedFolder(folder);
}

void FolderTreeview::SetSelectedFolder(const std::string& folder) {
  const std::string wanted = withoutTrailingSep(folder);
  if (folder_ == wanted) return;
  folder_ = wanted;
  raise([this, wanted] {
    if (FolderChanged) FolderChanged(wanted);
  });
}

}  // namespace trackloom

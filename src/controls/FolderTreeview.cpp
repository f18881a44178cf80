#include "controls/FolderTreeview.h"

#include "controls/ControlVisitor.h"
#include "runtime/Files.h"
#include "runtime/RuntimeError.h"

namespace trackloom {

namespace {

std::string withoutTrailingSep(std::string folder) {
  while (folder.size() > 1 && folder.back() == HostSep) folder.pop_back();
  return folder;
}

}  // namespace

FolderTreeview::FolderTreeview(Form& form, std::string name)
    : Control(form, std::move(name)), folder_(changed, withoutTrailingSep(HomeFolder().text)) {}

void FolderTreeview::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

void FolderTreeview::SetSelectedFolder(const std::string& folder) {
  if (!FolderExists(HostPath(folder))) throw RuntimeError(RuntimeError::PathNotFound);
  select(folder);
}

void FolderTreeview::choose(const std::string& folder) {
  if (usable()) select(folder);
}

void FolderTreeview::select(const std::string& folder) {
  const std::string wanted = withoutTrailingSep(folder);
  if (folder_ == wanted) return;
  folder_ = wanted;
  raise([this, wanted] {
    if (FolderChanged) FolderChanged(wanted);
  });
}

}  // namespace trackloom

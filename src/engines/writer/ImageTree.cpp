#include "engines/writer/ImageTree.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <numeric>
#include <utility>

#include "engines/ground/Blocks.h"
#include "engines/writer/ImageNames.h"

namespace trackloom::engines::writer {

namespace {

struct UnrefStream {
  void operator()(IsoStream* stream) const { iso_stream_unref(stream); }
};

struct FreeWalk {
  void operator()(IsoDirIter* walk) const { iso_dir_iter_free(walk); }
};

/// A folder that is open for what is to come into it.
struct OpenFolder {
  std::string path;
  IsoDir* folder = nullptr;
};

using Names = std::vector<std::string>;
/// Folders of an earlier session that go on, by their names.
using FormerFolders = std::unordered_map<std::string, IsoDir*>;

bool isFolder(IsoNode* node) {
  return iso_node_get_type(node) == LIBISO_DIR;
}

std::vector<IsoNode*> nodesIn(IsoDir* folder) {
  IsoDirIter* begun = nullptr;
  isoChecked(iso_dir_get_children(folder, &begun), "reading a folder of the image");
  const std::unique_ptr<IsoDirIter, FreeWalk> walk(begun);
  std::vector<IsoNode*> nodes;
  for (IsoNode* node = nullptr; iso_dir_iter_next(walk.get(), &node) == 1;) nodes.push_back(node);
  return nodes;
}

Names namesOf(const std::vector<ImageChild>& children) {
  std::vector<WishedName> wished;
  wished.reserve(children.size());
  for (const ImageChild& child : children) wished.push_back({discName(child.entry->disc.text), child.entry->folder});
  return imageNames(wished);
}

/// Gives other names to earlier nodes that bear one of these, whatever its case.
void renameClashing(const std::vector<IsoNode*>& nodes, const Names& taken) {
  if (nodes.empty()) return;
  std::vector<WishedName> wished;
  for (const std::string& name : taken) wished.push_back({name});
  for (IsoNode* node : nodes) wished.push_back({iso_node_get_name(node), isFolder(node)});
  const Names names = imageNames(wished);
  for (std::size_t at = 0; at < nodes.size(); ++at) {
    const std::string& name = names[taken.size() + at];
    if (name != wished[taken.size() + at].text)
      isoChecked(iso_node_set_name(nodes[at], name.c_str()), "naming " + name);
  }
}

FormerFolders makeWay(IsoDir* folder, const std::vector<ImageChild>& children, const Names& names) {
  std::unordered_map<std::string, bool> folders;
  for (std::size_t at = 0; at < names.size(); ++at) folders[names[at]] = children[at].entry->folder;
  FormerFolders former;
  std::vector<IsoNode*> others;
  for (IsoNode* node : nodesIn(folder)) {
    const auto found = folders.find(iso_node_get_name(node));
    if (found == folders.end() || found->second != isFolder(node))
      others.push_back(node);
    else if (found->second)
      former[found->first] = reinterpret_cast<IsoDir*>(node);
    else
      isoChecked(iso_node_remove(node), "replacing " + found->first);
  }
  renameClashing(others, names);
  return former;
}

IsoDir* addFolder(IsoImage& image, IsoDir* parent, const std::string& name) {
  IsoDir* folder = nullptr;
  isoChecked(iso_image_add_new_dir(&image, parent, name.c_str(), &folder), "adding the folder " + name);
  return folder;
}

void addFile(IsoImage& image, IsoDir* parent, const std::string& name, FileContent& content) {
  std::unique_ptr<IsoStream, UnrefStream> stream(content.newStream());
  IsoFile* file = nullptr;
  isoChecked(iso_image_add_new_file(&image, parent, name.c_str(), stream.get(), &file), "adding " + name);
  static_cast<void>(stream.release());
  auto* node = reinterpret_cast<IsoNode*>(file);
  iso_node_set_mtime(node, content.modified());
  iso_node_set_sort_weight(node,
                           std::numeric_limits<int>::max() - saturated(static_cast<std::int64_t>(content.index())));
}

/// The folders in it that are open now.
std::vector<OpenFolder> fill(IsoImage& image, IsoDir* folder, const std::vector<ImageChild>& children) {
  const Names names = namesOf(children);
  const FormerFolders former = makeWay(folder, children, names);
  std::vector<std::size_t> order(children.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  // The library keeps a sorted list, whose front is found at once.
  std::ranges::sort(order, [&](std::size_t one, std::size_t other) { return names[one] > names[other]; });
  std::vector<OpenFolder> open;
  for (const std::size_t at : order) {
    const ImageChild& child = children[at];
    const auto found = former.find(names[at]);
    if (child.content != nullptr)
      addFile(image, folder, names[at], *child.content);
    else
      open.push_back(
          {child.entry->disc.text, found != former.end() ? found->second : addFolder(image, folder, names[at])});
  }
  return open;
}

}  // namespace

void growTree(IsoImage& image, const ImageFolders& folders) {
  std::vector<OpenFolder> open{{"", iso_image_get_root(&image)}};
  while (!open.empty()) {
    const OpenFolder next = std::move(open.back());
    open.pop_back();
    const auto found = folders.find(next.path);
    if (found == folders.end()) continue;
    std::ranges::move(fill(image, next.folder, found->second), std::back_inserter(open));
  }
}

}  // namespace trackloom::engines::writer

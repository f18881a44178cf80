#include <algorithm>
#include <map>
#include <set>

#include "architecture/Rules.h"

namespace trackloom::architecture {

namespace {

using Graph = std::map<std::string, std::set<std::string>>;

/// Walks a graph in depth; a node that leads back into the path walked so far closes a circle.
class CycleSearch {
 public:
  explicit CycleSearch(const Graph& graph) : graph_(graph) {}

  Faults run() {
    for (const auto& [node, targets] : graph_) visit(node);
    return faults_;
  }

 private:
  void visit(const std::string& node) {
    const auto seen = std::find(path_.begin(), path_.end(), node);
    if (seen != path_.end()) return report(seen);
    if (!done_.insert(node).second) return;
    path_.push_back(node);
    if (const auto found = graph_.find(node); found != graph_.end())
      for (const std::string& target : found->second) visit(target);
    path_.pop_back();
  }

  void report(std::vector<std::string>::const_iterator start) {
    std::string circle;
    for (auto step = start; step != path_.end(); ++step) circle += *step + " includes ";
    faults_.push_back(circle + *start);
  }

  const Graph& graph_;
  std::vector<std::string> path_;
  std::set<std::string> done_;
  Faults faults_;
};

}  // namespace

Faults includeCycles(const SourceTree& tree) {
  Graph files;
  Graph folders;
  for (const auto& [path, file] : tree) {
    for (const Include& include : file.includes) {
      const std::string target = resolve(tree, file, include);
      if (target.empty()) continue;
      files[path].insert(target);
      const std::string from = folderOf(path);
      const std::string to = folderOf(target);
      if (!from.empty() && !to.empty() && from != to) folders[from].insert(to);
    }
  }
  Faults faults = CycleSearch(files).run();
  const Faults ofFolders = CycleSearch(folders).run();
  faults.insert(faults.end(), ofFolders.begin(), ofFolders.end());
  return faults;
}

}  // namespace trackloom::architecture

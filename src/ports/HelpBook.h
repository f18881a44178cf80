#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "runtime/Paths.h"

namespace trackloom {

/// A help file as it is shown: all that it holds, read once and whole. Texts are UTF-8; a place is a file of the book,
/// for some with "#" and a name within it.
struct HelpBook {
  /// A line of the contents or the index; the contents' lines of greater depth belong to the one above.
  struct Line {
    int depth = 0;
    std::string name;
    std::string place;
  };

  struct Page {
    std::string file;
    std::string title;
    /// The page's words without its marks.
    std::string text;
  };

  std::string title;
  std::string firstPage;
  std::vector<std::string> windows;
  std::vector<Line> contents;
  std::vector<Line> index;
  std::map<std::int32_t, std::string> topics;
  /// In the order of their names.
  std::vector<Page> pages;
  std::map<std::string, std::string> files;
};

/// Null: the file is damaged, empty, no help file, or larger than any of ours. Throws nothing.
using HelpBookReader = std::function<std::shared_ptr<const HelpBook>(const HostPath&)>;

}  // namespace trackloom

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "engines/ground/Source.h"
#include "runtime/Paths.h"

namespace trackloom::engines::writer {

/// A file of a data disc with its source, or a folder without one.
struct DataEntry {
  DiscPath disc;
  std::shared_ptr<Source> source;
  bool folder = false;
};

/// The folder that a disc path lies in, "" for the root. Doubled separators stand for one.
std::string discFolder(const std::string& discPath);
/// What stands behind the last separator.
std::string discName(const std::string& discPath);

/// A file noted as it is now. Null: no regular file that can be opened for reading, which only opening it tells.
std::shared_ptr<Source> readableSource(const HostPath& path);

/// The tree of a data disc. An entry is known by the exact bytes of its disc path; the folders on the way to a file are
/// entries of their own, which only their own removal takes away.
class DataQueue {
 public:
  void clear();
  /// The source of an equal path is replaced. False: there is no source, or the path runs through a file, ends on a
  /// folder, or nests deeper than any reader follows.
  bool add(const DiscPath& disc, const std::shared_ptr<Source>& source);
  /// Removes the file, or the folder if nothing lies in it; False: there is no such thing.
  bool remove(const DiscPath& disc);

  bool hasFiles() const { return files_ != 0; }
  /// The sum of the files' sizes, each rounded up to whole blocks; folders count nothing.
  std::int32_t blocks() const;
  /// What stands at each place of the disc, by its path from the root with single separators: of two files the one that
  /// was added later.
  std::vector<DataEntry> entries() const;

 private:
  struct Item {
    std::shared_ptr<Source> source;
    std::int64_t blocks = 0;
    bool folder = false;
    std::size_t children = 0;
    std::uint64_t turn = 0;
  };

  bool makeFolders(const std::string& folder);

  std::unordered_map<std::string, Item> items_;
  std::size_t files_ = 0;
  std::uint64_t turns_ = 0;
  std::int64_t blocks_ = 0;
};

}  // namespace trackloom::engines::writer

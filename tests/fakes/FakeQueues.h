#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "runtime/Paths.h"

namespace trackloom::fakes {

/// The tracks of a fake engine in the order they were queued; numbers may have gaps and repeat.
class FakeAudioQueue {
 public:
  struct Entry {
    std::int16_t number = 0;
    std::string path;
    std::int32_t blocks = 0;
  };

  const std::vector<Entry>& entries() const;
  bool empty() const;
  std::size_t size() const;
  const Entry& at(std::size_t place) const;
  /// In the order of a disc: by number, equal ones as they were queued.
  std::vector<Entry> discOrder() const;
  std::int32_t blocks() const;
  void clear();
  void add(Entry entry);
  /// Removes the first entry of the number; False: there is none.
  bool remove(std::int16_t number);

 private:
  std::vector<Entry> entries_;
};

/// The tree of a fake engine's data disc: files with their sources, and the folders on the way to them.
class FakeDataQueue {
 public:
  struct Entry {
    std::string source;
    std::int32_t blocks = 0;
    bool folder = false;
  };

  const std::map<std::string, Entry>& entries() const;
  bool contains(const std::string& path) const;
  std::vector<Entry> files() const;
  std::int32_t blocks() const;
  void clear();
  void add(const std::string& path, Entry file);
  /// Removes the file or the empty folder; False: there is none.
  bool remove(const std::string& path);

 private:
  bool empty(const std::string& folder) const;

  std::map<std::string, Entry> entries_;
};

}  // namespace trackloom::fakes

#include "engines/drives/ReadAhead.h"

#include <algorithm>
#include <atomic>
#include <catch2/catch.hpp>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

#include "fakes/FakePatience.h"

namespace trackloom::engines::drives {

namespace {

FindRecord folder(const std::string& name) {
  return {FindRecord::DirectoryAttribute, 0, name + std::string(1, '\0')};
}

FindRecord file(const std::string& name) {
  return {0, 1, name + std::string(1, '\0')};
}

/// A tree in memory, read on any threads, which may outlive the walk; some folders can be held back.
class Tree : public std::enable_shared_from_this<Tree> {
 public:
  std::map<std::string, std::vector<FindRecord>> folders;

  ReadAhead::Reader reader() {
    return [tree = shared_from_this()](const std::string& path) { return tree->read(path); };
  }
  void hold(const std::string& path) {
    const std::lock_guard lock(mutex_);
    held_.insert(path);
  }
  void letGo(const std::string& path) {
    const std::lock_guard lock(mutex_);
    held_.erase(path);
    changed_.notify_all();
  }
  void awaitReads(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return reads_.size() >= count; });
  }
  /// In the order in which they began.
  std::vector<std::string> reads() {
    const std::lock_guard lock(mutex_);
    return reads_;
  }

 private:
  std::vector<FindRecord> read(const std::string& path) {
    std::unique_lock lock(mutex_);
    reads_.push_back(path);
    changed_.notify_all();
    changed_.wait(lock, [&] { return !held_.contains(path); });
    return folders[path];
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::set<std::string> held_;
  std::vector<std::string> reads_;
};

/// Goes through the whole walk breadth first; the folders in their order.
std::vector<std::string> goThrough(ReadAhead& walk, const std::string& root) {
  std::vector<std::string> met;
  for (std::deque<std::string> pending{root}; !pending.empty(); pending.pop_front()) {
    met.push_back(pending.front());
    for (const FindRecord& record : walk.entries(pending.front()))
      if (record.attributes != 0) pending.push_back(pending.front() + record.name.c_str() + "/");
  }
  return met;
}

/// Folders of three within each other, four levels deep, and their paths breadth first.
std::vector<std::string> fill(Tree& tree) {
  std::vector<std::string> paths{"/"};
  for (std::size_t next = 0; next < paths.size(); ++next) {
    const std::string path = paths[next];
    tree.folders[path].push_back(file("a.mp3"));
    if (path.size() > 8) continue;
    for (const char* name : {"x", "y", "z"}) {
      tree.folders[path].push_back(folder(name));
      paths.push_back(path + name + "/");
    }
  }
  return paths;
}

}  // namespace

TEST_CASE("Folders are read once each, and told in the order in which they are asked for") {
  for (int run = 0; run < 50; ++run) {
    const auto tree = std::make_shared<Tree>();
    const std::vector<std::string> paths = fill(*tree);
    fakes::FakePatience patience;
    ReadAhead walk("/", tree->reader(), patience);
    CHECK(goThrough(walk, "/") == paths);
    const std::vector<std::string> reads = tree->reads();
    CHECK(reads.size() == paths.size());
    CHECK(std::set<std::string>(reads.begin(), reads.end()).size() == paths.size());
  }
}

TEST_CASE("The walk is read ahead of whoever asks") {
  const auto tree = std::make_shared<Tree>();
  const std::vector<std::string> paths = fill(*tree);
  fakes::FakePatience patience;
  ReadAhead walk("/", tree->reader(), patience);
  tree->awaitReads(paths.size());
  CHECK(tree->reads().size() == paths.size());
}

TEST_CASE("A folder that is slow holds up neither the reading of the next ones nor their order") {
  const auto tree = std::make_shared<Tree>();
  tree->folders["/"] = {folder("x"), folder("y")};
  tree->folders["/x/"] = {folder("1")};
  tree->folders["/y/"] = {folder("2")};
  tree->hold("/x/");
  fakes::FakePatience patience;
  ReadAhead walk("/", tree->reader(), patience);
  tree->awaitReads(3);
  patience.meanwhile = [&] { tree->letGo("/x/"); };
  CHECK(goThrough(walk, "/") == std::vector<std::string>{"/", "/x/", "/y/", "/x/1/", "/y/2/"});
}

TEST_CASE("What nobody has asked for yet is read only so far that it takes bounded memory") {
  const auto tree = std::make_shared<Tree>();
  constexpr int Folders = 200;
  for (int i = 0; i < Folders; ++i) {
    const std::string name = std::to_string(i);
    tree->folders["/"].push_back(folder(name));
    tree->folders["/" + name + "/"] = std::vector<FindRecord>(1000, file("a.mp3"));
  }
  fakes::FakePatience patience;
  ReadAhead walk("/", tree->reader(), patience);
  tree->awaitReads(50);
  // However long one waits; a few more may be on their way.
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  CHECK(tree->reads().size() < 60);
  CHECK(goThrough(walk, "/").size() == Folders + 1);
}

TEST_CASE("A folder of more entries than may lie ready is told whole") {
  const auto tree = std::make_shared<Tree>();
  tree->folders["/"] = std::vector<FindRecord>(120'000, file("a.mp3"));
  tree->folders["/"].push_back(folder("x"));
  tree->folders["/x/"] = {file("b.mp3")};
  fakes::FakePatience patience;
  ReadAhead walk("/", tree->reader(), patience);
  CHECK(walk.entries("/").size() == 120'001);
  CHECK(walk.entries("/x/").size() == 1);
}

TEST_CASE("A folder that is not the next one is read when it is asked for, and the next ones come as before") {
  const auto tree = std::make_shared<Tree>();
  tree->folders["/"] = {folder("x"), folder("y")};
  tree->folders["/y/"] = {file("a.mp3")};
  fakes::FakePatience patience;
  ReadAhead walk("/", tree->reader(), patience);
  CHECK(walk.entries("/y/").size() == 1);
  CHECK(goThrough(walk, "/").size() == 3);
  CHECK(walk.entries("/y/").size() == 1);
}

TEST_CASE("A walk that is given up waits for no folder and reads no further") {
  const auto tree = std::make_shared<Tree>();
  fill(*tree);
  tree->hold("/x/");
  tree->hold("/y/");
  tree->hold("/z/");
  {
    fakes::FakePatience patience;
    ReadAhead walk(
        "/", [tree, reader = tree->reader()](const std::string& path) { return reader(path); }, patience);
    tree->awaitReads(3);
  }
  const std::size_t before = tree->reads().size();
  for (const char* path : {"/x/", "/y/", "/z/"}) tree->letGo(path);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  CHECK(tree->reads().size() == before);
  CHECK(before <= 4);
}

TEST_CASE("As many folders are read at once as the machine has processors, but two at least and four at most") {
  const auto tree = std::make_shared<Tree>();
  for (const char* name : {"1", "2", "3", "4", "5", "6"}) {
    tree->folders["/"].push_back(folder(name));
    tree->hold(std::string("/") + name + "/");
  }
  const std::size_t threads = std::clamp(std::thread::hardware_concurrency(), 2U, 4U);
  fakes::FakePatience patience;
  {
    const ReadAhead walk("/", tree->reader(), patience);
    tree->awaitReads(1 + threads);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    CHECK(tree->reads().size() == 1 + threads);
  }
  for (const std::string& path : tree->reads()) tree->letGo(path);
}

TEST_CASE("All threads begin to read as soon as there is something to read for them") {
  const auto tree = std::make_shared<Tree>();
  tree->folders["/"] = {folder("x"), folder("y")};
  for (const char* path : {"/", "/x/", "/y/"}) tree->hold(path);
  fakes::FakePatience patience;
  {
    const ReadAhead walk("/", tree->reader(), patience);
    tree->awaitReads(1);
    // Those that find nothing to do are asleep by then.
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    tree->letGo("/");
    tree->awaitReads(3);
  }
  for (const char* path : {"/x/", "/y/"}) tree->letGo(path);
}

TEST_CASE("Fifty thousand entries may lie ready, and the next folder is read below that") {
  for (const std::size_t files : {49'998U, 49'999U}) {
    const auto tree = std::make_shared<Tree>();
    tree->folders["/"] = std::vector<FindRecord>(files, file("a.mp3"));
    tree->folders["/"].push_back(folder("x"));
    fakes::FakePatience patience;
    ReadAhead walk("/", tree->reader(), patience);
    if (files == 49'998U) {
      tree->awaitReads(2);
      continue;
    }
    tree->awaitReads(1);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    CHECK(tree->reads().size() == 1);
    CHECK(walk.entries("/").size() == 50'000);
    tree->awaitReads(2);
  }
}

TEST_CASE("The threads of a walk that is given up come to their end, also those that wait for room") {
  auto tree = std::make_shared<Tree>();
  const std::weak_ptr<Tree> read = tree;
  tree->folders["/"] = std::vector<FindRecord>(50'000, file("a.mp3"));
  tree->folders["/"].push_back(folder("x"));
  {
    fakes::FakePatience patience;
    const ReadAhead walk("/", tree->reader(), patience);
    tree->awaitReads(1);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    tree.reset();
  }
  while (!read.expired()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

}  // namespace trackloom::engines::drives

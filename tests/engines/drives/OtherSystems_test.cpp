#include <dirent.h>
#include <pthread.h>
#include <sys/stat.h>

#include <atomic>
#include <catch2/catch.hpp>
#include <cerrno>

#include "engines/drives/FolderEntries.h"
#include "engines/drives/ReadAhead.h"
#include "fakes/FakePatience.h"
#include "fakes/NextFunction.h"
#include "fakes/TempFolder.h"

namespace {

/// What the system of these tests does not do that this one does.
struct System {
  std::atomic<bool> numbersMounts = true;
  std::atomic<bool> tellsOfFolders = true;
  std::atomic<bool> tellsKinds = true;
  /// How many threads it has to spare; below 0 as many as are wanted.
  std::atomic<int> threads = -1;
};

System& here() {
  static System system;
  return system;
}

/// A system that does again all that this one does behind each test.
struct OtherSystem {
  OtherSystem() = default;
  OtherSystem(const OtherSystem&) = delete;
  OtherSystem& operator=(const OtherSystem&) = delete;
  ~OtherSystem() {
    here().numbersMounts = here().tellsOfFolders = here().tellsKinds = true;
    here().threads = -1;
  }
};

using trackloom::fakes::theirs;

}  // namespace

extern "C" {

int statx(int folder, const char* path, int flags, unsigned mask, struct statx* entry) noexcept {
  if (!here().tellsOfFolders) {
    errno = ENOSYS;
    return -1;
  }
  static auto* const next = theirs<int(int, const char*, int, unsigned, struct statx*)>("statx");
  const int result = next(folder, path, flags, mask, entry);
  if (!here().numbersMounts) {
    entry->stx_mask &= ~unsigned{STATX_MNT_ID};
    entry->stx_mnt_id = 7;
  }
  return result;
}

dirent* readdir(DIR* folder) {
  static auto* const next = theirs<dirent*(DIR*)>("readdir");
  dirent* entry = next(folder);
  if (entry != nullptr && !here().tellsKinds) entry->d_type = DT_UNKNOWN;
  return entry;
}

int pthread_create(pthread_t* thread, const pthread_attr_t* how, void* (*work)(void*), void* argument) noexcept {
  if (here().threads == 0) return EAGAIN;
  if (here().threads > 0) --here().threads;
  static auto* const next = theirs<int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)>("pthread_create");
  return next(thread, how, work, argument);
}

}  // extern "C"

namespace trackloom::engines::drives {

TEST_CASE("Where the system does not number mounts a folder has the number of its file system") {
  const OtherSystem system;
  const fakes::TempFolder folder;
  folder.write("a.mp3", "1");
  here().numbersMounts = false;
  struct stat entry {};
  REQUIRE(::stat(folder.path().c_str(), &entry) == 0);
  CHECK(mountOf(folder.path()) == entry.st_dev);
  CHECK(mountOf("/proc/") != mountOf(folder.path()));
  CHECK(entriesOf(folder.path(), mountOf(folder.path())).size() == 1);
}

TEST_CASE("A folder of which the system tells nothing has no number") {
  const OtherSystem system;
  here().tellsOfFolders = false;
  CHECK(mountOf("/") == 0);
}

TEST_CASE("Files and folders are told apart where the listing does not say which is which") {
  const OtherSystem system;
  const fakes::TempFolder folder;
  folder.write("a/x.mp3", "1");
  folder.write("b.mp3", "12");
  std::filesystem::create_symlink("a", folder / "c");
  std::filesystem::create_symlink("b.mp3", folder / "d.mp3");
  here().tellsKinds = false;
  const std::vector<FindRecord> records = entriesOf(folder.path(), mountOf(folder.path()));
  REQUIRE(records.size() == 3);
  CHECK(records[0].attributes == FindRecord::DirectoryAttribute);
  CHECK(records[1].attributes == 0);
  CHECK(records[1].size == 2);
  CHECK(records[2].size == 2);
}

TEST_CASE("A walk is read by whoever asks where there is no thread to spare, and by one thread where there is one") {
  const OtherSystem system;
  const auto reader = [](const std::string& path) {
    return path == "/" ? std::vector<FindRecord>{{FindRecord::DirectoryAttribute, 0, std::string("x\0", 2)}}
                       : std::vector<FindRecord>{{0, 1, std::string("a\0", 2)}, {0, 1, std::string("b\0", 2)}};
  };
  for (const int threads : {0, 1}) {
    here().threads = threads;
    fakes::FakePatience patience;
    ReadAhead walk("/", reader, patience);
    here().threads = -1;
    CHECK(walk.entries("/").size() == 1);
    CHECK(walk.entries("/x/").size() == 2);
    CHECK(patience.waits == 2 * threads);
  }
}

}  // namespace trackloom::engines::drives

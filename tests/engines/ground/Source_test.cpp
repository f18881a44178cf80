#include "engines/ground/Source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <catch2/catch.hpp>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace trackloom::engines {

namespace {

constexpr std::size_t length = 200'000;

/// A file of some pieces, noted as it is.
class NotedFile {
 public:
  NotedFile() {
    std::string name = (std::filesystem::temp_directory_path() / "trackloom-source-XXXXXX").string();
    folder_ = ::mkdtemp(name.data());
    write(std::string(length, 'a'));
    source = std::make_shared<Source>(path(), SourceFile(path()).note());
  }
  ~NotedFile() { std::filesystem::remove_all(folder_); }
  NotedFile(const NotedFile&) = delete;
  NotedFile& operator=(const NotedFile&) = delete;

  HostPath path() const { return HostPath((folder_ / "file").string()); }
  HostPath other() const { return HostPath((folder_ / "other").string()); }
  /// In place.
  void write(const std::string& bytes) const {
    const FileDescriptor file(::open(path().text.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    REQUIRE(::write(file.get(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
  }
  /// In place, and the time of the last change put back.
  void writeSecretly(const std::string& bytes) const {
    struct stat before {};
    REQUIRE(::stat(path().text.c_str(), &before) == 0);
    write(bytes);
    const timespec times[] = {before.st_atim, before.st_mtim};
    REQUIRE(::utimensat(AT_FDCWD, path().text.c_str(), times, 0) == 0);
  }
  void setTime(std::int64_t seconds) const {
    const timespec times[] = {{seconds, 0}, {seconds, 0}};
    REQUIRE(::utimensat(AT_FDCWD, path().text.c_str(), times, 0) == 0);
  }

  std::shared_ptr<Source> source;

 private:
  std::filesystem::path folder_;
};

void readTo(SourceReading& reading, std::size_t end) {
  std::vector<std::uint8_t> bytes(end);
  const std::size_t got = reading.readAt(0, bytes);
  REQUIRE(got == end);
}

std::string failureOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const EngineError& error) {
    CHECK(error.kind() == ErrorKind::File);
    return error.words();
  }
  return "";
}

/// All bytes that this process has asked the system for so far.
std::uint64_t bytesRead() {
  std::ifstream io("/proc/self/io");
  std::string name;
  std::uint64_t count = 0;
  io >> name >> count;
  return count;
}

}  // namespace

TEST_CASE("A source that was left alone is read whole, as often as one likes") {
  const NotedFile file;
  for (int copy = 0; copy < 3; ++copy) {
    SourceReading reading(file.source);
    readTo(reading, length);
    reading.requireUnchanged();
    std::uint8_t more = 0;
    CHECK(reading.readAt(length, {&more, 1}) == 0);
  }
}

TEST_CASE("A source of another size or time than when it was noted is refused before its first byte") {
  const NotedFile file;
  SECTION("longer") {
    file.write(std::string(length + 1, 'a'));
  }
  SECTION("shorter") {
    std::filesystem::resize_file(file.path().text, length - 1);
  }
  SECTION("touched") {
    file.setTime(1'000'000);
  }
  SECTION("another file") {
    std::filesystem::rename(file.path().text, file.other().text);
    file.write(std::string(length, 'b'));
    file.setTime(1'000'000);
  }
  CHECK(failureOf([&] { SourceReading{file.source}; }) == file.path().text + ": changed since it was added");
}

TEST_CASE("New names and rights of a source do no harm, before it is opened and after") {
  const NotedFile file;
  const bool open = GENERATE(false, true);
  std::optional<SourceReading> reading;
  if (open) {
    reading.emplace(file.source);
    readTo(*reading, 1000);
  }
  SECTION("rights") {
    REQUIRE(::chmod(file.path().text.c_str(), 0644) == 0);
  }
  SECTION("a link") {
    std::filesystem::create_hard_link(file.path().text, file.other().text);
  }
  if (!open) reading.emplace(file.source);
  readTo(*reading, length);
  CHECK_NOTHROW(reading->requireUnchanged());
}

TEST_CASE("Once a source is open, its name may go or belong to another file") {
  const NotedFile file;
  SourceReading reading(file.source);
  readTo(reading, 1000);
  std::filesystem::remove(file.path().text);
  if (GENERATE(false, true)) file.write("another file");
  readTo(reading, length);
  CHECK_NOTHROW(reading.requireUnchanged());
}

TEST_CASE("A source that changes while it is read is an error that names it") {
  const NotedFile file;
  SourceReading reading(file.source);
  readTo(reading, length / 2);
  const auto rest = [&] {
    readTo(reading, length);
    reading.requireUnchanged();
  };
  SECTION("overwritten") {
    file.write(std::string(length, 'b'));
  }
  SECTION("overwritten where it was read already, with the time put back") {
    file.writeSecretly("b");
  }
  SECTION("longer") {
    std::ofstream(file.path().text, std::ios::app) << "more";
  }
  SECTION("touched") {
    file.setTime(1'000'000);
  }
  CHECK(failureOf(rest) == file.path().text + ": changed while it was being recorded");
}

TEST_CASE("A source that shrinks while it is read is an error at once") {
  const NotedFile file;
  SourceReading reading(file.source);
  readTo(reading, 1000);
  std::filesystem::resize_file(file.path().text, length / 2);
  CHECK(failureOf([&] { reading.from(length - 1); }) == file.path().text + ": changed while it was being recorded");
}

TEST_CASE("What was read before a piece failed is not mixed up with it") {
  const NotedFile file;
  SourceReading reading(file.source);
  std::vector<std::uint8_t> bytes(10);
  REQUIRE(reading.readAt(0, bytes) == bytes.size());
  REQUIRE(::truncate(file.path().text.c_str(), 150'000) == 0);
  file.write(std::string(100'000, 'a') + std::string(50'000, 'b'));
  CHECK_THROWS_AS(reading.readAt(140'000, bytes), EngineError);
  REQUIRE(reading.readAt(0, bytes) == bytes.size());
  CHECK(bytes == std::vector<std::uint8_t>(10, 'a'));
}

TEST_CASE("A second reading is held to the bytes of the first, whatever the times say") {
  const NotedFile file;
  SourceReading first(file.source);
  readTo(first, length);
  file.writeSecretly(std::string(length / 2, 'a') + "b");
  SourceReading second(file.source);
  readTo(second, 1000);
  CHECK(failureOf([&] { readTo(second, length); }) == file.path().text + ": changed while it was being recorded");
}

TEST_CASE("What is no regular file is no source, and nobody waits for it") {
  const NotedFile file;
  REQUIRE(::mkfifo(file.other().text.c_str(), 0600) == 0);
  CHECK(failureOf([&] { SourceFile{file.other()}; }) == file.other().text + ": not a regular file");
  CHECK_FALSE(noteOf(file.other()));
  CHECK(failureOf([] { SourceFile{HostPath("/no/such")}; }) == "/no/such: No such file or directory");
}

TEST_CASE("A file that was changed a moment ago is read once more behind its last byte, and an old one is not") {
  const auto readAgain = [](const HostPath& path) {
    SourceReading reading(path);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(reading.size()));
    reading.readAt(0, bytes);
    const std::uint64_t before = bytesRead();
    reading.requireUnchanged();
    return bytesRead() - before > bytes.size();
  };
  const NotedFile young;
  CHECK(readAgain(young.path()));
  // Whatever runs these tests was installed longer ago than any clock's tick.
  CHECK_FALSE(readAgain(HostPath("/bin/sh")));
}

}  // namespace trackloom::engines

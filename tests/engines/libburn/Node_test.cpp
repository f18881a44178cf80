#include "engines/libburn/Node.h"

#include <fcntl.h>
#include <unistd.h>

#include <catch2/catch.hpp>
#include <cerrno>
#include <filesystem>

#include "engines/ground/EngineError.h"
#include "engines/libburn/ScriptedDrive.h"

namespace trackloom::engines::libburn {

using Notes = std::vector<std::string>;

namespace {

std::string askFailure(Node& node, ScriptedDrive& drive, const std::vector<Answer>& answers) {
  drive.answer(answers);
  try {
    node.ask({0x12}, 8, "no answer");
  } catch (const EngineError& error) {
    return error.words();
  }
  return "";
}

std::ptrdiff_t openFiles() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
}

}  // namespace

TEST_CASE("A command block is as long as its first byte says, and may take as long as it needs") {
  ScriptedDrive drive;
  Node node(drive.path(), Hold::Shared);
  for (const std::uint32_t code : {0x1FU, 0x20U, 0x9FU, 0xA0U, 0x1BU, 0x2AU, 0x35U, 0x54U, 0x5BU, 0xA1U})
    node.sense({code, 0x1FF, 3});
  CHECK(drive.notes() == Notes{"1F FF 03 00 00 00", "20 FF 03 00 00 00 00 00 00 00", "9F FF 03 00 00 00 00 00 00 00",
                               "A0 FF 03 00 00 00 00 00 00 00 00 00", "1B FF 03 00 00 00 slow",
                               "2A FF 03 00 00 00 00 00 00 00 slow", "35 FF 03 00 00 00 00 00 00 00 slow",
                               "54 FF 03 00 00 00 00 00 00 00 slow", "5B FF 03 00 00 00 00 00 00 00 slow",
                               "A1 FF 03 00 00 00 00 00 00 00 00 00 slow"});
}

TEST_CASE("A node is open for reading and writing, for this process alone, and closed again") {
  ScriptedDrive drive;
  const auto before = openFiles();
  for (const Hold hold : {Hold::Shared, Hold::Alone}) {
    Node node(drive.path(), hold);
    node.sense({0});
    CHECK(drive.access == (O_RDWR | O_NONBLOCK));
    CHECK(drive.descriptor == FD_CLOEXEC);
  }
  CHECK(openFiles() == before);
}

TEST_CASE("A node may be the first file of a process that has closed what it was given") {
  ScriptedDrive drive;
  const int kept = ::dup(0);
  ::close(0);
  CHECK_NOTHROW(Node(drive.path(), Hold::Shared));
  ::dup2(kept, 0);
  ::close(kept);
  CHECK_THROWS_AS(Node(drive.path() + "2", Hold::Shared), EngineError);
}

TEST_CASE("A sense is told in either of its formats, now or later") {
  ScriptedDrive drive;
  Node node(drive.path(), Hold::Shared);
  std::vector<std::uint8_t> fixed(18, 0xEE);
  fixed[2] = 0xE3;
  fixed[12] = 0x0C;
  fixed[13] = 0x07;
  for (const std::uint8_t format : Reply{0x70, 0x71, 0xF0}) {
    fixed[0] = format;
    drive.answer({{.senseBytes = fixed}});
    CHECK(node.sense({0}) == 0x030C07);
  }
  for (const std::uint8_t format : Reply{0x72, 0x73}) {
    drive.answer({{.senseBytes = {format, 0xF5, 0x26, 0x01, 0xEE, 0xEE, 0xEE, 0xEE}}});
    CHECK(node.sense({0}) == 0x052601);
  }
}

TEST_CASE("A failure without a sense is one of the connection") {
  ScriptedDrive drive;
  Node node(drive.path(), Hold::Shared);
  drive.answer({{.status = 2}, {.hostStatus = 3}, {}});
  CHECK(node.sense({0}) == 0x040800);
  CHECK(node.sense({0}) == 0x040800);
  CHECK(node.sense({0}) == 0);
  drive.answer({{.error = ENODEV}});
  CHECK_THROWS_WITH(node.sense({0}), "the drive is no longer connected: No such device (2/04/00)");
}

TEST_CASE("A drive that tells of a change is asked again, four times in all") {
  ScriptedDrive drive;
  Node node(drive.path(), Hold::Shared);
  const Answer change = failing(0x062800);
  CHECK(askFailure(node, drive, {change, change, change}).empty());
  CHECK(drive.notes().size() == 4);
  CHECK(askFailure(node, drive, {change, change, change, change}) == "no answer: another disc was put in (6/28/00)");
  CHECK(drive.notes().size() == 4);
  CHECK(askFailure(node, drive, {failing(0x020400)}) == "no answer: the drive is not ready (2/04/00)");
  CHECK(drive.notes().size() == 1);
  CHECK(askFailure(node, drive, {failing(0x010000)}).empty());
  CHECK(drive.notes().size() == 1);
}

TEST_CASE("An answer has the bytes that came, whatever the system says is left of the room") {
  ScriptedDrive drive;
  Node node(drive.path(), Hold::Shared);
  drive.answer({{.bytes = {1, 2, 3}},
                {.bytes = {1, 2, 3, 4}},
                {.bytes = {1, 2, 3, 4}, .leftTold = -3},
                {.bytes = {1, 2, 3, 4}, .leftTold = 5},
                {.bytes = {1, 2, 3, 4}, .leftTold = 1}});
  CHECK(node.ask({0x12}, 4) == Reply{1, 2, 3});
  CHECK(node.ask({0x12}, 4) == Reply{1, 2, 3, 4});
  CHECK(node.ask({0x12}, 4) == Reply{1, 2, 3, 4});
  CHECK(node.ask({0x12}, 4).empty());
  CHECK(node.ask({0x12}, 4) == Reply{1, 2, 3});
}

TEST_CASE("What lies behind the end of an answer counts as nothing") {
  ScriptedDrive drive;
  Node node(drive.path(), Hold::Shared);
  drive.answer({{.bytes = {1, 2, 3}}});
  // The room behind it holds something else.
  const Reply reply = node.ask({0x12}, 8);
  CHECK(numberAt(reply, 0, 4) == 0x01020300);
  CHECK(numberAt(reply, 1, 2) == 0x0203);
  CHECK(numberAt(reply, 3, 1) == 0);
  CHECK(numberAt(reply, 9, 4) == 0);
}

TEST_CASE("Bytes that are sent reach the drive, and how it took them is told") {
  ScriptedDrive drive;
  Node node(drive.path(), Hold::Shared);
  drive.answer({{}, failing(0x052600)});
  const std::vector<std::byte> bytes{std::byte{7}, std::byte{8}};
  CHECK(node.send({0x55}, bytes) == 0);
  CHECK(drive.sent == Reply{7, 8});
  CHECK(node.send({0x55}, bytes) == 0x052600);
  CHECK(drive.notes() == Notes(2, "55 00 00 00 00 00 00 00 00 00 >2"));
}

}  // namespace trackloom::engines::libburn

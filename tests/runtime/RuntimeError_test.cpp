#include "runtime/RuntimeError.h"

#include <catch2/catch.hpp>
#include <cerrno>
#include <cstring>
#include <map>

#include "fakes/ErrorNumber.h"
#include "runtime/Statements.h"

namespace trackloom {

TEST_CASE("Each error has the number and the words of the language's table") {
  const std::map<int, std::string> words{
      {5, "Invalid procedure call or argument"},
      {6, "Overflow"},
      {9, "Subscript out of range"},
      {11, "Division by zero"},
      {13, "Type mismatch"},
      {52, "Bad file name or number"},
      {53, "File not found"},
      {55, "File already open"},
      {57, "Device I/O error"},
      {61, "Disk full"},
      {62, "Input past end of file"},
      {63, "Bad record number"},
      {70, "Permission denied"},
      {75, "Path/File access error"},
      {76, "Path not found"},
      {91, "Object variable not set"},
      {380, "Invalid property value"},
  };
  for (const auto& [number, description] : words) {
    const RuntimeError error(static_cast<RuntimeError::Number>(number));
    CHECK(error.number() == number);
    CHECK(error.description() == description);
    CHECK(error.what() == description);
  }
}

TEST_CASE("An error beyond the table says that the application or an object has made it") {
  const RuntimeError error(static_cast<RuntimeError::Number>(999));
  CHECK(error.number() == 999);
  CHECK(error.description() == "Application-defined or object-defined error");
  CHECK(RuntimeError(53, "the words of its own").description() == "the words of its own");
}

TEST_CASE("Each refusal of the system is the error that the language has for it") {
  const std::map<int, int> numbers{
      {ENOENT, 53}, {EACCES, 70}, {EPERM, 70}, {EROFS, 70}, {ENOTDIR, 76}, {ELOOP, 76},        {ENOSPC, 61},
      {EDQUOT, 61}, {EFBIG, 61},  {EIO, 57},   {ENXIO, 57}, {EISDIR, 75},  {ENAMETOOLONG, 52}, {EBUSY, 75},
  };
  for (const auto& [systemError, number] : numbers) {
    INFO(std::strerror(systemError));
    CHECK(RuntimeError::fromErrno(systemError).number() == number);
    CHECK(RuntimeError::fromFailedMaking(systemError).number() == (systemError == ENOENT ? 76 : number));
  }
}

TEST_CASE("A statement that fails is skipped, and one that does not has run") {
  int ran = 0;
  skipOnError([&] {
    ++ran;
    throw RuntimeError(RuntimeError::DiskFull);
  });
  skipOnError([&] { ++ran; });
  CHECK(ran == 2);
}

}  // namespace trackloom

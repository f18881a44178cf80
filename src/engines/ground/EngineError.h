#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "runtime/Paths.h"

namespace trackloom::engines {

/// What of a disc operation failed: the memory or the cache that is read through, the memory that is written through, a
/// source, or the device. The values are those that the engine's owner is told; others are possible.
enum class ErrorKind : std::int32_t { ReadBuffer = 0, WriteBuffer = 1, File = 2, Device = 3 };

/// The one exception of the engines. `words` say on what it failed and why, in UTF-8; `number` is the device's own, 0
/// for the other kinds.
class EngineError : public std::runtime_error {
 public:
  EngineError(ErrorKind kind, std::int32_t number, const std::string& words)
      : std::runtime_error(words), kind_(kind), number_(number) {}

  ErrorKind kind() const { return kind_; }
  std::int32_t number() const { return number_; }
  std::string words() const { return what(); }

 private:
  ErrorKind kind_;
  std::int32_t number_;
};

/// What the system says of an error number (errno).
std::string systemWords(int systemError);

/// "/home/u/a.mp3: changed while it was being recorded".
EngineError fileError(const HostPath& file, std::string_view why);
/// "/home/u/a.mp3: No such file or directory".
EngineError fileError(const HostPath& file, int systemError);

/// Why a file cannot be had: what the system says of opening it, `otherwise` where it opens.
EngineError unusable(const HostPath& file, std::string_view otherwise);

}  // namespace trackloom::engines

#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

namespace trackloom::engines::libburn {

/// A command block of up to 12 bytes (SPC-3, 4.3).
using CommandBlock = std::initializer_list<std::uint32_t>;
using Reply = std::vector<std::uint8_t>;

enum class Hold {
  /// Beside other programs.
  Shared,
  /// As the only one, for as long as the node is open.
  Alone
};

/// A drive's device node, open for commands. Used by one thread at a time.
class Node {
 public:
  /// Throws EngineError with words: what the user can do where the rights are missing, who holds the drive.
  Node(const std::string& path, Hold hold);
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;
  ~Node();

  /// The sense of a command without data, 0xKKCCQQ; 0: it succeeded.
  std::int32_t sense(CommandBlock block);
  /// What the drive answers, at most `most` bytes. Throws EngineError, whose words begin with `what`; where the drive
  /// tells of a change it is asked again.
  Reply ask(CommandBlock block, std::size_t most, const std::string& what = {});
  /// The sense of a command that sends these bytes.
  std::int32_t send(CommandBlock block, std::span<const std::byte> bytes);

 private:
  struct Transfer;
  struct Outcome;
  Outcome run(CommandBlock block, const Transfer& transfer);

  int fd_;
};

/// The big-endian number of `size` bytes at `at`; what lies behind the reply's end counts as 0.
std::uint32_t numberAt(const Reply& reply, std::size_t at, std::size_t size);

}  // namespace trackloom::engines::libburn

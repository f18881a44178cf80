#include "engines/libburn/Node.h"

#include <fcntl.h>
#include <scsi/sg.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "engines/disc/NodeFailure.h"
#include "engines/disc/Sense.h"
#include "engines/libburn/SenseWords.h"

namespace trackloom::engines::libburn {

namespace {

/// A drive may think for so long over one command, in milliseconds: over those that move the tray, write, close or
/// erase longer than over all others.
constexpr unsigned longest = 200'000;
constexpr unsigned usual = 30'000;
constexpr std::array slowCommands{0x1B, 0x2A, 0x35, 0x54, 0x5B, 0xA1};
constexpr int attentions = 4;

std::int32_t numberOf(const std::array<unsigned char, 32>& data) {
  const bool fixed = (data[0] & 0x7EU) == 0x70U;
  const std::int32_t key = (fixed ? data[2] : data[1]) & 0x0F;
  return key << 16 | (fixed ? data[12] : data[2]) << 8 | (fixed ? data[13] : data[3]);
}

}  // namespace

struct Node::Transfer {
  int direction = SG_DXFER_NONE;
  void* bytes = nullptr;
  std::size_t size = 0;
};

/// How a command ended, and how many bytes it moved.
struct Node::Outcome {
  std::int32_t sense;
  std::size_t moved;
};

Node::Node(const std::string& path, Hold hold)
    : fd_(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC | (hold == Hold::Alone ? O_EXCL : 0))) {
  if (fd_ < 0) throw cannotOpenNode(path, errno);
}

Node::~Node() {
  ::close(fd_);
}

Node::Outcome Node::run(CommandBlock block, const Transfer& transfer) {
  std::array<unsigned char, 12> bytes{};
  std::ranges::transform(block, bytes.begin(), [](std::uint32_t byte) { return static_cast<unsigned char>(byte); });
  std::array<unsigned char, 32> told{};
  sg_io_hdr header{};
  header.interface_id = 'S';
  header.cmdp = bytes.data();
  header.cmd_len = bytes[0] < 0x20 ? 6 : bytes[0] < 0xA0 ? 10 : 12;
  header.dxfer_direction = transfer.direction;
  header.dxferp = transfer.bytes;
  header.dxfer_len = static_cast<unsigned>(transfer.size);
  header.sbp = told.data();
  header.mx_sb_len = static_cast<unsigned char>(told.size());
  header.timeout = std::ranges::find(slowCommands, bytes[0]) == slowCommands.end() ? usual : longest;
  if (::ioctl(fd_, SG_IO, &header) != 0)
    throw deviceError(sense::notReady, "the drive is no longer connected: " + systemWords(errno));
  const std::size_t moved =
      transfer.size - std::min(static_cast<std::size_t>(std::max(0, header.resid)), transfer.size);
  if (header.sb_len_wr != 0) return {numberOf(told), moved};
  const bool failed = header.status != 0 || header.host_status != 0;
  return {failed ? 0x040800 : 0, moved};
}

std::int32_t Node::sense(CommandBlock block) {
  return run(block, {}).sense;
}

Reply Node::ask(CommandBlock block, std::size_t most, const std::string& what) {
  Reply reply(most);
  const auto askOnce = [&] { return run(block, {SG_DXFER_FROM_DEV, reply.data(), reply.size()}); };
  Outcome told = askOnce();
  for (int turn = 1; turn < attentions && keyOf(told.sense) == sensekey::unitAttention; ++turn) told = askOnce();
  if (keyOf(told.sense) > 1) throw driveError(told.sense, what);
  reply.resize(told.moved);
  return reply;
}

std::int32_t Node::send(CommandBlock block, std::span<const std::byte> bytes) {
  return run(block, {SG_DXFER_TO_DEV, const_cast<std::byte*>(bytes.data()), bytes.size()}).sense;
}

std::uint32_t numberAt(const Reply& reply, std::size_t at, std::size_t size) {
  std::uint32_t number = 0;
  for (std::size_t i = at; i < at + size; ++i) number = number << 8U | (i < reply.size() ? reply[i] : 0U);
  return number;
}

}  // namespace trackloom::engines::libburn

#include "engines/libburn/ScriptedDrive.h"
#include "fakes/NextFunction.h"

#include <fcntl.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <utility>

namespace trackloom::engines::libburn {

namespace {

/// That of this thread; null: its commands go to the drives that there are.
ScriptedDrive*& scripted() {
  thread_local ScriptedDrive* drive = nullptr;
  return drive;
}

std::string hexOf(const std::uint8_t* bytes, std::size_t size) {
  std::string text;
  for (std::size_t i = 0; i < size; ++i) {
    char byte[4];
    std::snprintf(byte, sizeof byte, i == 0 ? "%02X" : " %02X", bytes[i]);
    text += byte;
  }
  return text;
}

std::string noteOf(const sg_io_hdr& header) {
  std::string text = hexOf(header.cmdp, header.cmd_len);
  if (header.dxfer_direction == SG_DXFER_FROM_DEV) text += " <" + std::to_string(header.dxfer_len);
  if (header.dxfer_direction == SG_DXFER_TO_DEV) text += " >" + std::to_string(header.dxfer_len);
  if (header.dxfer_direction == SG_DXFER_NONE && header.dxfer_len != 0) text += " with data";
  if (header.timeout == 200'000) return text + " slow";
  return header.timeout == 30'000 ? text : text + " timeout " + std::to_string(header.timeout);
}

/// Fixed format (SPC-3, 4.5.3), with bits beside the key that say something else.
std::vector<std::uint8_t> fixedSense(std::int32_t number) {
  std::vector<std::uint8_t> data(18, 0xEE);
  data[0] = 0x70;
  data[2] = static_cast<std::uint8_t>(number >> 16 | 0xE0);
  data[12] = static_cast<std::uint8_t>(number >> 8);
  data[13] = static_cast<std::uint8_t>(number);
  return data;
}

AlteredAnswers::Alter& altered() {
  thread_local AlteredAnswers::Alter alter;
  return alter;
}

int& napsOfThread() {
  thread_local int naps = 0;
  return naps;
}

using trackloom::fakes::theirs;

}  // namespace

int napsTaken() {
  return napsOfThread();
}

AlteredAnswers::AlteredAnswers(Alter alter) {
  altered() = std::move(alter);
}

AlteredAnswers::~AlteredAnswers() {
  altered() = nullptr;
}

ScriptedDrive::ScriptedDrive() {
  folder_.write("node", "");
  scripted() = this;
}

ScriptedDrive::~ScriptedDrive() {
  scripted() = nullptr;
}

std::vector<std::string> ScriptedDrive::notes() {
  return std::exchange(notes_, {});
}

int ScriptedDrive::run(int fd, sg_io_hdr& header) {
  access = ::fcntl(fd, F_GETFL) & (O_ACCMODE | O_NONBLOCK);
  descriptor = ::fcntl(fd, F_GETFD);
  note(noteOf(header));
  const Answer answer = answers_.empty() ? Answer{} : answers_.front();
  if (!answers_.empty()) answers_.pop_front();
  if (answer.error != 0 || header.interface_id != 'S') {
    errno = answer.error;
    return -1;
  }
  auto* const bytes = static_cast<std::uint8_t*>(header.dxferp);
  if (header.dxfer_direction == SG_DXFER_TO_DEV) sent.assign(bytes, bytes + header.dxfer_len);
  if (header.dxfer_direction == SG_DXFER_FROM_DEV) {
    std::fill_n(bytes, header.dxfer_len, std::uint8_t{0xEE});
    const std::size_t size = std::min<std::size_t>(answer.bytes.size(), header.dxfer_len);
    std::copy_n(answer.bytes.begin(), size, bytes);
    header.resid = answer.leftTold != 0 ? answer.leftTold : static_cast<int>(header.dxfer_len - size);
  }
  const std::vector<std::uint8_t> sense = answer.sense != 0 ? fixedSense(answer.sense) : answer.senseBytes;
  header.sb_len_wr = static_cast<std::uint8_t>(std::min<std::size_t>(sense.size(), header.mx_sb_len));
  std::copy_n(sense.begin(), header.sb_len_wr, header.sbp);
  header.status = static_cast<std::uint8_t>(sense.empty() ? answer.status : 2);
  header.host_status = static_cast<std::uint16_t>(answer.hostStatus);
  return 0;
}

}  // namespace trackloom::engines::libburn

extern "C" {

int ioctl(int fd, unsigned long request, ...) noexcept {
  va_list rest;
  va_start(rest, request);
  void* const argument = va_arg(rest, void*);
  va_end(rest);
  using namespace trackloom::engines::libburn;
  auto* const header = request == SG_IO ? static_cast<sg_io_hdr*>(argument) : nullptr;
  if (scripted() != nullptr && header != nullptr) return scripted()->run(fd, *header);
  const int result = theirs<int(int, unsigned long, ...)>("ioctl")(fd, request, argument);
  if (altered() && header != nullptr && header->dxfer_direction == SG_DXFER_FROM_DEV)
    altered()(header->cmdp[0], static_cast<std::uint8_t*>(header->dxferp));
  return result;
}

int nanosleep(const timespec* time, timespec* left) {
  using trackloom::engines::libburn::scripted;
  ++trackloom::engines::libburn::napsOfThread();
  if (scripted() == nullptr)
    return trackloom::engines::libburn::theirs<int(const timespec*, timespec*)>("nanosleep")(time, left);
  scripted()->note("nap of " + std::to_string(time->tv_sec * 1000 + time->tv_nsec / 1'000'000) + " ms");
  return 0;
}

}  // extern "C"

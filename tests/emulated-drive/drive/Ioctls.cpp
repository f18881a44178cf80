#include "Ioctls.h"

#include <linux/cdrom.h>
#include <linux/fs.h>
#include <scsi/sg.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <initializer_list>

#include "Address.h"
#include "Nodes.h"

namespace emulated {

namespace {

constexpr std::size_t senseBytes = 18;
/// Of the kernel's scsi/scsi_ioctl.h, which the C library's headers leave out.
constexpr unsigned long scsiGetIdLun = 0x5382;
constexpr unsigned long scsiGetBusNumber = 0x5386;

/// Fixed format, with the progress of what goes on in the background (SPC-3, 4.5.3).
std::array<std::uint8_t, senseBytes> senseData(const Outcome& outcome) {
  std::array<std::uint8_t, senseBytes> data{0x70, 0, outcome.sense.key, 0, 0, 0, 0, 10};
  data[12] = outcome.sense.code;
  data[13] = outcome.sense.qualifier;
  if (outcome.progress > 0) {
    data[15] = 0x80;
    data[16] = static_cast<std::uint8_t>(outcome.progress >> 8U);
    data[17] = static_cast<std::uint8_t>(outcome.progress & 0xFFU);
  }
  return data;
}

template <class T>
T& as(void* argument) {
  return *static_cast<T*>(argument);
}

void copyOut(const Bytes& from, void* to, std::size_t room) {
  if (!from.empty()) std::memcpy(to, from.data(), std::min(from.size(), room));
}

Command commandOf(const std::uint8_t* block, std::size_t size) {
  Command command;
  std::copy_n(block, std::min(size, command.block.size()), command.block.begin());
  return command;
}

void tell(sg_io_hdr& header, const Outcome& outcome) {
  const bool failed = outcome.sense != sense::none;
  header.status = failed ? 2 : 0;
  header.masked_status = failed ? 1 : 0;
  header.driver_status = failed ? 8 : 0;
  header.info = failed ? SG_INFO_CHECK : SG_INFO_OK;
  header.host_status = header.msg_status = 0;
  header.sb_len_wr = 0;
  header.duration = 1;
  if (!failed || header.sbp == nullptr) return;
  const auto data = senseData(outcome);
  header.sb_len_wr = static_cast<unsigned char>(std::min<std::size_t>(header.mx_sb_len, data.size()));
  std::memcpy(header.sbp, data.data(), header.sb_len_wr);
}

Reply generic(Drive& drive, sg_io_hdr& header) {
  if (header.interface_id != 'S') return {-1, ENOSYS};
  Command command = commandOf(header.cmdp, header.cmd_len);
  const bool sends = header.dxfer_direction == SG_DXFER_TO_DEV;
  const std::size_t size = header.dxfer_direction == SG_DXFER_NONE ? 0 : header.dxfer_len;
  if (sends) command.sent = {static_cast<const std::uint8_t*>(header.dxferp), size};
  if (!sends) command.room = size;
  const Outcome outcome = drive.run(command);
  if (!sends) copyOut(outcome.data, header.dxferp, size);
  header.resid = static_cast<int>(sends ? 0 : size - std::min(size, outcome.data.size()));
  tell(header, outcome);
  return {};
}

Reply packet(Drive& drive, cdrom_generic_command& asked) {
  Command command = commandOf(asked.cmd, sizeof asked.cmd);
  const bool sends = asked.data_direction == CGC_DATA_WRITE;
  if (sends) command.sent = {asked.buffer, asked.buflen};
  if (!sends) command.room = asked.buflen;
  const Outcome outcome = drive.run(command);
  if (!sends) copyOut(outcome.data, asked.buffer, asked.buflen);
  const bool failed = outcome.sense != sense::none;
  asked.stat = failed ? EIO : 0;
  if (failed && asked.sense != nullptr) {
    const auto data = senseData(outcome);
    std::memcpy(asked.sense, data.data(), std::min(data.size(), sizeof *asked.sense));
  }
  return failed ? Reply{-1, EIO} : Reply{};
}

Outcome ask(Drive& drive, std::initializer_list<std::uint8_t> block, std::size_t room) {
  Command command = commandOf(block.begin(), block.size());
  command.room = room;
  return drive.run(command);
}

int errorOf(const Sense& told) {
  return told.key == 2 ? ENOMEDIUM : EIO;
}

Reply tocHeader(Drive& drive, cdrom_tochdr& header) {
  const Outcome toc = ask(drive, {0x43, 0, 0, 0, 0, 0, 0, 0, 4}, 4);
  if (toc.data.size() < 4) return {-1, errorOf(toc.sense)};
  header = {toc.data[2], toc.data[3]};
  return {};
}

Reply tocEntry(Drive& drive, cdrom_tocentry& entry) {
  const bool msf = entry.cdte_format == CDROM_MSF;
  const Outcome toc =
      ask(drive, {0x43, static_cast<std::uint8_t>(msf ? 2 : 0), 0, 0, 0, 0, entry.cdte_track, 0, 12}, 12);
  if (toc.data.size() < 12) return {-1, toc.sense.key == 5 ? EINVAL : errorOf(toc.sense)};
  entry.cdte_adr = toc.data[5] >> 4U & 0x0FU;
  entry.cdte_ctrl = toc.data[5] & 0x0FU;
  entry.cdte_datamode = 0;
  if (msf) entry.cdte_addr.msf = {toc.data[9], toc.data[10], toc.data[11]};
  if (!msf) entry.cdte_addr.lba = static_cast<int>(numberAt(toc.data, 8, 4));
  return {};
}

Reply multiSession(Drive& drive, cdrom_multisession& told) {
  const Outcome toc = ask(drive, {0x43, 0, 1, 0, 0, 0, 0, 0, 12}, 12);
  if (toc.data.size() < 12) return {-1, errorOf(toc.sense)};
  const auto block = static_cast<std::int32_t>(numberAt(toc.data, 8, 4));
  told.xa_flag = toc.data[3] > 1 ? 1 : 0;
  const Msf msf = msfOf(block);
  if (told.addr_format == CDROM_LBA) told.addr.lba = block;
  if (told.addr_format == CDROM_MSF)
    told.addr.msf = {static_cast<std::uint8_t>(msf.minute), static_cast<std::uint8_t>(msf.second),
                     static_cast<std::uint8_t>(msf.frame)};
  told.addr_format = told.addr_format == CDROM_MSF ? CDROM_MSF : CDROM_LBA;
  return {};
}

Reply readAudio(Drive& drive, const cdrom_read_audio& asked) {
  const std::int32_t block = asked.addr_format == CDROM_LBA
                                 ? asked.addr.lba
                                 : blockOf({asked.addr.msf.minute, asked.addr.msf.second, asked.addr.msf.frame});
  Answer at(12);
  at.put(0, 0xBE, 1).put(1, 0x04, 1).put(2, static_cast<std::uint32_t>(block), 4);
  at.put(6, static_cast<std::uint32_t>(asked.nframes), 3).put(9, 0x10, 1);
  Command command = commandOf(at.all().data(), at.size());
  command.room = static_cast<std::size_t>(asked.nframes) * 2352;
  const Outcome outcome = drive.run(command);
  if (outcome.sense != sense::none) return {-1, errorOf(outcome.sense)};
  copyOut(outcome.data, asked.buf, command.room);
  return {};
}

Reply driveStatus(Drive& drive) {
  const Outcome ready = ask(drive, {0x00, 0, 0, 0, 0, 0}, 0);
  if (ready.sense == sense::none || ready.sense.key == 6) return {CDS_DISC_OK, 0};
  if (ready.sense != sense::noMedium) return {CDS_DRIVE_NOT_READY, 0};
  return {std::filesystem::exists(drive.folder() / "out") ? CDS_TRAY_OPEN : CDS_NO_DISC, 0};
}

/// By the control bits of its tracks.
Reply discStatus(Drive& drive) {
  const Outcome toc = ask(drive, {0x43, 0, 0, 0, 0, 0, 0, 0x03, 0x24}, 0x324);
  if (toc.sense != sense::none) return {toc.sense.key == 2 ? CDS_NO_DISC : CDS_NO_INFO, 0};
  bool data = false;
  bool audio = false;
  for (std::size_t at = 4; at + 16 <= toc.data.size(); at += 8) (toc.data[at + 1] & 4U ? data : audio) = true;
  return {data && audio ? CDS_MIXED : data ? CDS_DATA_1 : CDS_AUDIO, 0};
}

Reply turn(Drive& drive, std::uint8_t how) {
  const Outcome outcome = ask(drive, {0x1B, 0, 0, 0, how, 0}, 0);
  return outcome.sense == sense::none ? Reply{} : Reply{-1, outcome.sense == sense::removalPrevented ? EBUSY : EIO};
}

Reply lock(Drive& drive, bool on) {
  ask(drive, {0x1E, 0, 0, 0, static_cast<std::uint8_t>(on ? 1 : 0), 0}, 0);
  return {};
}

Reply setInt(void* argument, int value) {
  as<int>(argument) = value;
  return {};
}

/// What the driver answers by itself.
Reply ofTheDriver(Drive& drive, unsigned long request, void* argument) {
  switch (request) {
    case SG_GET_VERSION_NUM:
      return setInt(argument, 30536);
    case SG_GET_RESERVED_SIZE:
      return setInt(argument, 1 << 17);
    case SG_EMULATED_HOST:
      return setInt(argument, 1);
    case SG_GET_TIMEOUT:
      return {6000, 0};
    case scsiGetBusNumber:
      return setInt(argument, static_cast<int>(numberOf(drive.folder())));
    case scsiGetIdLun:
      std::memset(argument, 0, 8);
      return setInt(argument, static_cast<int>(numberOf(drive.folder()) << 24U));
    case BLKGETSIZE64:
      as<std::uint64_t>(argument) = static_cast<std::uint64_t>(dataBytes(drive));
      return {};
    case BLKGETSIZE:
      as<unsigned long>(argument) = static_cast<unsigned long>(dataBytes(drive) / 512);
      return {};
    case BLKSSZGET:
      return setInt(argument, 2048);
    case SG_SET_TIMEOUT:
    case SG_SET_RESERVED_SIZE:
    case BLKFLSBUF:
    case CDROM_SET_OPTIONS:
    case CDROM_CLEAR_OPTIONS:
    case CDROM_SELECT_SPEED:
    case CDROMSTOP:
    case CDROMSTART:
      return {};
    default:
      return {-1, ENOTTY};
  }
}

}  // namespace

Reply control(Drive& drive, unsigned long request, void* argument) try {
  switch (request) {
    case SG_IO:
      return generic(drive, as<sg_io_hdr>(argument));
    case CDROM_SEND_PACKET:
      return packet(drive, as<cdrom_generic_command>(argument));
    case CDROMREADTOCHDR:
      return tocHeader(drive, as<cdrom_tochdr>(argument));
    case CDROMREADTOCENTRY:
      return tocEntry(drive, as<cdrom_tocentry>(argument));
    case CDROMMULTISESSION:
      return multiSession(drive, as<cdrom_multisession>(argument));
    case CDROMREADAUDIO:
      return readAudio(drive, as<cdrom_read_audio>(argument));
    case CDROM_DRIVE_STATUS:
      return driveStatus(drive);
    case CDROM_DISC_STATUS:
      return discStatus(drive);
    case CDROM_GET_CAPABILITY:
      return {CDC_CLOSE_TRAY | CDC_OPEN_TRAY | CDC_LOCK | CDC_SELECT_SPEED | CDC_MULTI_SESSION | CDC_MCN |
                  CDC_MEDIA_CHANGED | CDC_PLAY_AUDIO | CDC_RESET | CDC_DRIVE_STATUS | CDC_GENERIC_PACKET | CDC_CD_R |
                  CDC_CD_RW,
              0};
    case CDROMSUBCHNL:
      as<cdrom_subchnl>(argument).cdsc_audiostatus = CDROM_AUDIO_NO_STATUS;
      return {};
    case CDROM_CHANGER_NSLOTS:
      return {1, 0};
    case CDROM_MEDIA_CHANGED:
      return {};
    case CDROMEJECT:
      return turn(drive, 2);
    case CDROMCLOSETRAY:
      return turn(drive, 3);
    case CDROM_LOCKDOOR:
      return lock(drive, argument != nullptr);
    default:
      return ofTheDriver(drive, request, argument);
  }
} catch (const Unplugged&) {
  return {-1, ENODEV};
}

std::int64_t dataBytes(Drive& drive) {
  const Outcome told = ask(drive, {0x25, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 8);
  return told.data.size() < 8 ? 0 : (std::int64_t{numberAt(told.data, 0, 4)} + 1) * 2048;
}

Reply readData(Drive& drive, void* buffer, std::size_t size, std::int64_t offset) try {
  const std::int64_t end = std::min(dataBytes(drive), offset + static_cast<std::int64_t>(size));
  std::size_t done = 0;
  while (offset + static_cast<std::int64_t>(done) < end) {
    const std::int64_t at = offset + static_cast<std::int64_t>(done);
    const auto block = static_cast<std::uint32_t>(at / 2048);
    Answer read(10);
    read.put(0, 0x28, 1).put(2, block, 4).put(7, 1, 2);
    const Outcome sector = drive.run(commandOf(read.all().data(), read.size()));
    if (sector.sense != sense::none) break;
    const auto within = static_cast<std::size_t>(at % 2048);
    const std::size_t step = std::min(2048 - within, static_cast<std::size_t>(end - at));
    std::memcpy(static_cast<char*>(buffer) + done, sector.data.data() + within, step);
    done += step;
  }
  if (done == 0 && offset < end) return {-1, EIO};
  return {static_cast<int>(done), 0};
} catch (const Unplugged&) {
  return {-1, ENODEV};
}

}  // namespace emulated

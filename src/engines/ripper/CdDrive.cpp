#include "engines/ripper/CdDrive.h"

#include <cdio/cdio.h>
#include <cdio/logging.h>
#include <cdio/mmc.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "engines/disc/Sense.h"
#include "engines/ripper/FullContents.h"
#include "engines/ripper/LeadInText.h"
#include "engines/ripper/ParanoiaReading.h"
#include "engines/ripper/RecorderDrive.h"

namespace trackloom::engines::ripper {

namespace {

/// A drive may have to start its disc first, in milliseconds.
constexpr unsigned patience = 30'000;
constexpr std::size_t inquiryBytes = 36;
constexpr std::size_t largestToc = 2048;
/// Eight languages of 256 packs each.
constexpr std::size_t largestText = 4 + 8 * 256 * 18;

struct CloseCdio {
  void operator()(CdIo_t* cdio) const { cdio_destroy(cdio); }
};

std::string textAt(const std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t length) {
  std::string text;
  for (std::size_t place = at; place < at + length && place < bytes.size(); ++place)
    text += static_cast<char>(bytes[place]);
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::vector<std::uint8_t> readTocCommand() {
  constexpr std::uint8_t fullToc = 2;
  constexpr std::uint8_t msf = 2;
  return {0x43, msf, fullToc, 0, 0, 0, 0, largestToc >> 8U, largestToc & 0xFFU, 0};
}

std::vector<std::uint8_t> readTextCommand() {
  constexpr std::uint8_t cdText = 5;
  return {0x43, 0, cdText, 0, 0, 0, 0, largestText >> 8U, largestText & 0xFFU, 0};
}

}  // namespace

/// Throws EngineError where the drive answers nothing.
std::vector<std::uint8_t> CdDrive::ask(const std::vector<std::uint8_t>& command, std::size_t most) const {
  std::unique_ptr<CdIo_t, CloseCdio> cdio;
  {
    const std::lock_guard lock(*library_);
    cdio.reset(cdio_open(path_.c_str(), DRIVER_LINUX));
  }
  if (!cdio) throw deviceError(sense::notReady, "the drive " + path_ + " cannot be opened");
  mmc_cdb_t block{};
  std::ranges::copy(command, block.field);
  std::vector<std::uint8_t> reply(most);
  const auto done =
      mmc_run_cmd(cdio.get(), patience, &block, SCSI_MMC_DATA_READ, static_cast<unsigned>(most), reply.data());
  if (done != DRIVER_OP_SUCCESS) throw deviceError(sense::notReady, "the drive " + path_ + " does not answer");
  return reply;
}

DriveNames CdDrive::inquire() const {
  const auto inquiry = ask({0x12, 0, 0, 0, inquiryBytes, 0}, inquiryBytes);
  return {textAt(inquiry, 8, 8), textAt(inquiry, 16, 16)};
}

/// As they were told last, where the drive cannot tell them now.
DriveNames CdDrive::names() {
  try {
    names_ = inquire();
  } catch (const EngineError&) {
    return names_;
  }
  return names_;
}

void CdDrive::take() {
  const CdNode node(path_, CdNode::Hold::Shared);
  names_ = inquire();
}

bool CdDrive::discPresent() {
  try {
    return CdNode(path_, CdNode::Hold::Shared).hasDisc();
  } catch (const EngineError&) {
    return false;
  }
}

std::optional<DiscContents> CdDrive::contents() {
  if (!CdNode(path_, CdNode::Hold::Alone).hasDisc()) return std::nullopt;
  std::vector<std::uint8_t> toc;
  try {
    toc = ask(readTocCommand(), largestToc);
  } catch (const EngineError&) {
    // A blank disc has no table.
    return std::nullopt;
  }
  const std::size_t length = (std::size_t{toc[0]} << 8U | toc[1]) + 2;
  auto contents = contentsFrom(std::span(toc).first(std::min(length, toc.size())));
  if (contents) contents->text = text(contents->tracks.size());
  return contents;
}

DiscText CdDrive::text(std::size_t tracks) const {
  try {
    return textFrom(ask(readTextCommand(), largestText), tracks);
  } catch (const EngineError&) {
    // Many drives refuse where a disc bears none.
    return {};
  }
}

std::int16_t CdDrive::maxSpeed() {
  constexpr std::uint8_t capabilities = 0x2A;
  constexpr std::size_t bytes = 64;
  try {
    const auto page = ask({0x5A, 0x08, capabilities, 0, 0, 0, 0, 0, bytes, 0}, bytes);
    const std::size_t at = 8 + (std::size_t{page[6]} << 8U | page[7]) + 8;
    return at + 1 < page.size() ? static_cast<std::int16_t>((page[at] << 8 | page[at + 1]) / kilobytesAtBaseSpeed)
                                : std::int16_t{0};
  } catch (const EngineError&) {
    return 0;
  }
}

std::unique_ptr<DiscReading> CdDrive::begin(std::int16_t speed) {
  return std::make_unique<ParanoiaReading>(path_, library_, speed);
}

ReadingDrives cdDrives(const std::vector<SeenDrive>& seen) {
  ReadingDrives drives;
  const auto library = std::make_shared<std::mutex>();
  // The library would speak on the terminal.
  cdio_loglevel_default = CDIO_LOG_ASSERT;
  for (const SeenDrive& drive : seen) drives.push_back(std::make_shared<CdDrive>(drive, library));
  return drives;
}

ReadingDrives drivesInOrder(const std::vector<KnownDrive>& known, const RecorderList& recorders,
                            const ReadingDrives& real) {
  const auto driveOf = [&](const KnownDrive& drive) -> std::shared_ptr<ReadingDrive> {
    const auto same = [&](const auto& other) { return other->id() == drive.id; };
    if (const auto found = std::ranges::find_if(real, same); found != real.end()) return *found;
    const auto recorder = std::ranges::find_if(recorders, same);
    return std::make_shared<RecorderDrive>(recorder != recorders.end() ? *recorder : absentRecorder(drive));
  };
  ReadingDrives drives;
  std::ranges::transform(known, std::back_inserter(drives), driveOf);
  return drives;
}

}  // namespace trackloom::engines::ripper

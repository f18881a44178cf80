#include "model/Capacity.h"

#include <algorithm>
#include <limits>

#include "model/Layout.h"
#include "model/Session.h"

namespace trackloom {

namespace {

constexpr double Kilo = 1024;
constexpr double Mega = 1024 * Kilo;
constexpr double Giga = 1024 * Mega;

/// The queue with the charges of so many tracks. A queue beyond all discs stands as the largest number, which is more
/// than any disc has.
std::int32_t chargedBlocks(Session& session, std::int64_t tracks) {
  constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(layoutQueueBlocks(session) + TrackCharge * tracks, most));
}

void drawMeter(Session& session, std::int32_t blocks) {
  Tool& meter = session.frmListing().Progress1;
  const std::int32_t scale = meter.Maximum;
  if (blocks > scale) return;
  meter.Value = blocks;
  const Separators& signs = session.ports.separators;
  const std::int16_t percent = ToInt16(static_cast<double>(blocks) / scale * 100);
  const std::string used = blocks > 0 ? FormatGrouped(blocks, signs) : "0";
  meter.Text =
      used + " Blocks of " + FormatGrouped(scale, signs) + " Blocks  (" + std::to_string(percent) + "% of CD Used)";
}

}  // namespace

std::int32_t layoutBlockKind(const Session& session) {
  return isAudioLayout(session) ? AudioBlocks : DataBlocks;
}

std::int32_t layoutQueueBlocks(Session& session) {
  CDWriterXP& writer = *session.frmListing().CDR1;
  return isAudioLayout(session) ? writer.AudioQueueBlocks() : writer.DataQueueBlocks();
}

std::string FormatSize(double bytes, const Separators& separators) {
  if (bytes >= Giga) return FormatFixed2(bytes / Giga, separators) + " GB";
  if (bytes >= Mega) return FormatFixed2(bytes / Mega, separators) + " MB";
  if (bytes >= Kilo) return FormatFixed2(bytes / Kilo, separators) + " KB";
  // Only a number of 64 bits has a whole part to tell.
  if (!(bytes >= -0x1p63)) return "0 Bytes";
  return std::to_string(static_cast<std::int64_t>(bytes)) + " Bytes";
}

void UpdateCapacityDisplay(Session& session) {
  Trackloom50Mod1& mod = session.mod;
  if (!mod.LayoutOpen) return;
  ListingWindow& window = session.frmListing();
  CDWriterXP& writer = *window.CDR1;

  const std::int32_t queued = layoutQueueBlocks(session);
  const std::int32_t bytes = writer.BlocksToBytes(queued, layoutBlockKind(session));
  const std::int32_t charged = chargedBlocks(session, window.ListView1.Count());
  drawMeter(session, charged);

  if (isAudioLayout(session)) {
    mod.LayoutTotalText = writer.BlocksToTime(charged);
    window.panel3.Text =
        "Layout Time:  " + mod.LayoutTotalText + " - Disc Time:  " + writer.BlocksToTime(mod.DiscBlocks) + " ";
  } else {
    mod.LayoutTotalText = FormatSize(bytes, session.ports.separators);
    window.panel3.Text = "Layout Size:  " + mod.LayoutTotalText +
                         " - Disc Size:  " + FormatSize(mod.DiscBytes, session.ports.separators) + " ";
  }
}

void CheckRoomForTrack(Session& session) {
  ListingWindow& window = session.frmListing();
  const std::int64_t tracks = std::int64_t{window.ListView1.Count()} + 1;
  session.mod.TrackWontFit = chargedBlocks(session, tracks) > window.Progress1.Maximum;
}

}  // namespace trackloom

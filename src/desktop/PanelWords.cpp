#include "desktop/PanelWords.h"

#include <QLocale>
#include <array>

namespace trackloom {

namespace {

constexpr std::int32_t BlocksOfSecond = 75;
constexpr std::int32_t BlocksOfMinute = 60 * BlocksOfSecond;
constexpr std::int64_t BytesOfDataBlock = 2048;

QString timeText(std::int32_t blocks) {
  const std::int32_t seconds = blocks / BlocksOfSecond;
  return QString("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QChar('0'));
}

QString dataText(std::int32_t blocks) {
  return QLocale::c().formattedDataSize(blocks * BytesOfDataBlock, 0, QLocale::DataSizeTraditionalFormat);
}

QString amountText(BlockKind kind, std::int32_t blocks) {
  return kind == AudioBlocks ? timeText(blocks) : dataText(blocks);
}

QString counted(std::int64_t count, const char* one, const char* many) {
  return QString::number(count) + " " + (count == 1 ? one : many);
}

}  // namespace

QString mediumText(const ShelfDisc& disc) {
  if (disc.state == ShelfDisc::State::Damaged) return {};
  const std::int32_t minutes = (disc.size + BlocksOfMinute / 2) / BlocksOfMinute;
  return (disc.rewritable ? "CD-RW, " : "CD-R, ") + QString::number(minutes) + " min";
}

QString contentText(const ShelfDisc& disc) {
  return disc.kind ? amountText(*disc.kind, disc.used) : QString();
}

QString stateText(const ShelfDisc& disc) {
  const QString tracks = ", " + counted(disc.tracks, "track", "tracks");
  switch (disc.state) {
    case ShelfDisc::State::Blank:
      return "Blank";
    case ShelfDisc::State::Open:
      return "Open" + tracks;
    case ShelfDisc::State::Closed:
      return "Closed" + tracks;
    case ShelfDisc::State::AtWork:
      return "At work";
    case ShelfDisc::State::Spoilt:
      return "Spoilt";
    case ShelfDisc::State::Damaged:
      break;
  }
  return "Damaged";
}

QString roomText(const ShelfDisc& disc) {
  if (disc.state == ShelfDisc::State::Blank) return timeText(disc.size) + " or " + dataText(disc.size) + " free";
  if (!disc.kind) return {};
  return amountText(*disc.kind, disc.used) + " used, " + amountText(*disc.kind, disc.free) + " free";
}

QString ageText(std::int64_t changed, std::int64_t now) {
  struct Unit {
    std::int64_t seconds;
    const char* one;
    const char* many;
  };
  constexpr std::array<Unit, 5> units{{{31556952, "year", "years"},
                                       {2629746, "month", "months"},
                                       {86400, "day", "days"},
                                       {3600, "h", "h"},
                                       {60, "min", "min"}}};
  for (const Unit& unit : units)
    if (now - changed >= unit.seconds) return counted((now - changed) / unit.seconds, unit.one, unit.many);
  return "just now";
}

}  // namespace trackloom

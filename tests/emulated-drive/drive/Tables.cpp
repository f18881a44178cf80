#include "Tables.h"

#include <optional>

#include "Address.h"
#include "Sense.h"

namespace emulated {

namespace {

constexpr std::uint32_t leadOutPoint = 0xAA;
constexpr std::uint32_t nowhere = 0xFFFFFF;

std::uint32_t addressAs(bool msf, std::int32_t block) {
  return msf ? msfOf(block).packed() : static_cast<std::uint32_t>(block);
}

std::uint32_t packedControl(const Track& track) {
  return 0x10U | track.control;
}

/// The last session whose table of contents is in a lead-in; 0: none.
std::int32_t lastTold(const Disc& disc) {
  return disc.closedSessions();
}

Bytes tracksFrom(const Command& command, const Disc& disc, bool msf) {
  require(lastTold(disc) > 0, sense::badField);
  const Track& last = *disc.lastOf(lastTold(disc));
  const std::uint32_t from = command[6];
  require(from == leadOutPoint || from <= static_cast<std::uint32_t>(last.number), sense::badField);
  Answer answer(4);
  answer.put(2, 1, 1).put(3, static_cast<std::uint32_t>(last.number), 1);
  for (const Track& track : disc.tracks)
    if (track.session <= lastTold(disc) && static_cast<std::uint32_t>(track.number) >= from)
      answer.add(0)
          .add(packedControl(track))
          .add(static_cast<std::uint32_t>(track.number))
          .add(0)
          .add(addressAs(msf, track.start), 4);
  const std::int32_t leadOut = disc.sessions[static_cast<std::size_t>(lastTold(disc)) - 1].leadOut;
  answer.add(0).add(packedControl(last)).add(leadOutPoint).add(0).add(addressAs(msf, leadOut), 4);
  return answer.length(0, 2).all();
}

Bytes sessionsOf(const Disc& disc, bool msf) {
  require(lastTold(disc) > 0, sense::badField);
  const Track& first = *disc.firstOf(lastTold(disc));
  Answer answer(4);
  answer.put(2, 1, 1).put(3, static_cast<std::uint32_t>(lastTold(disc)), 1);
  answer.add(0).add(packedControl(first)).add(static_cast<std::uint32_t>(first.number)).add(0);
  return answer.add(addressAs(msf, first.start), 4).length(0, 2).all();
}

struct Point {
  std::uint32_t session = 1;
  std::uint32_t control = 0x10;
  std::uint32_t point = 0;
  std::uint32_t time = 0;
  std::uint32_t zero = 0;
  std::uint32_t value = 0;
};

void add(Answer& answer, const Point& point) {
  answer.add(point.session).add(point.control).add(0).add(point.point);
  answer.add(point.time, 3).add(point.zero).add(point.value, 3);
}

void addSession(Answer& answer, const Disc& disc, std::int32_t number) {
  const auto session = static_cast<std::uint32_t>(number);
  const Track& first = *disc.firstOf(number);
  const Track& last = *disc.lastOf(number);
  const std::int32_t leadOut = disc.sessions[session - 1].leadOut;
  add(answer, {session, packedControl(first), 0xA0, 0, 0, static_cast<std::uint32_t>(first.number) << 16U});
  add(answer, {session, packedControl(last), 0xA1, 0, 0, static_cast<std::uint32_t>(last.number) << 16U});
  add(answer, {session, packedControl(last), 0xA2, 0, 0, msfOf(leadOut).packed()});
  for (const Track& track : disc.tracks)
    if (track.session == number)
      add(answer,
          {session, packedControl(track), static_cast<std::uint32_t>(track.number), 0, 0, msfOf(track.start).packed()});
}

/// Where the next session goes on, and in the first one where the lead-in of the disc begins.
void addPointers(Answer& answer, const Disc& disc, std::int32_t number) {
  const auto session = static_cast<std::uint32_t>(number);
  if (disc.finalized && number == lastTold(disc)) return;
  const std::int32_t next = disc.sessions[session - 1].leadOut + gapBehindSession(session);
  add(answer,
      {session, 0x54, 0xB0, msfOf(next - pregapBlocks).packed(), number == 1 ? 2U : 1U, msfOf(disc.capacity).packed()});
  if (number == 1) add(answer, {session, 0x54, 0xC0, 0x400000, 0, msfOf(disc.leadIn).packed()});
}

Bytes fullTable(const Disc& disc) {
  require(lastTold(disc) > 0, sense::badField);
  Answer answer(4);
  answer.put(2, 1, 1).put(3, static_cast<std::uint32_t>(lastTold(disc)), 1);
  for (std::int32_t number = 1; number <= lastTold(disc); ++number) {
    addSession(answer, disc, number);
    addPointers(answer, disc, number);
  }
  return answer.length(0, 2).all();
}

Bytes pregrooveTime(const Disc& disc) {
  Answer answer(28);
  answer.put(4, 0xD4, 1).put(5, 0x80, 1).put(6, disc.rewritable ? 0xC1 : 0x81, 1);
  answer.put(8, msfOf(disc.leadIn).packed(), 3).put(12, msfOf(disc.capacity).packed(), 3);
  return answer.length(0, 2).all();
}

Bytes textPacks(const Sectors& sectors) {
  const Bytes packs = sectors.text();
  require(!packs.empty(), sense::badField);
  return Answer(4).add(packs).length(0, 2).all();
}

Bytes table(const Command& command, const Disc& disc, const Sectors& sectors) {
  const bool msf = (command[1] & 0x02U) != 0;
  const std::uint32_t format = (command[2] & 0x0FU) != 0 ? command[2] & 0x0FU : command[9] >> 6U;
  switch (format) {
    case 0:
      return tracksFrom(command, disc, msf);
    case 1:
      return sessionsOf(disc, msf);
    case 2:
      return fullTable(disc);
    case 4:
      return pregrooveTime(disc);
    case 5:
      return textPacks(sectors);
    default:
      throw CheckCondition{sense::badField};
  }
}

/// The track that is not there yet, behind all that are. On a blank disc a session at once begins with the pre-gap.
Track invisibleTrack(const Disc& disc, const Pages& pages) {
  const bool atOnce = pages.writeType() == WriteType::SessionAtOnce && disc.blank();
  const std::int32_t start = disc.nextStart() - (atOnce ? pregapBlocks : 0);
  return {disc.nextTrackNumber(),
          disc.sessionNumber() + (disc.sessionIsOpen() ? 0 : 1),
          Kind::Audio,
          0,
          start,
          start,
          start,
          0,
          TrackState::Open};
}

std::optional<Track> trackAsked(const Command& command, const Disc& disc, const Pages& pages) {
  const std::int32_t number = command.address(2);
  switch (command[1] & 0x03U) {
    case 0:
      for (const Track& track : disc.tracks)
        if (number >= track.pregap && number < std::max(track.end, track.start + 1)) return track;
      break;
    case 1:
      if (number >= 1 && number < disc.nextTrackNumber()) return disc.tracks[static_cast<std::size_t>(number) - 1];
      if (number == 0xFF && disc.openTrack() != nullptr) return *disc.openTrack();
      if (number != 0xFF && number != disc.nextTrackNumber()) return std::nullopt;
      break;
    default:
      if (const Track* first = disc.firstOf(number)) return *first;
  }
  if (disc.finalized) return std::nullopt;
  return invisibleTrack(disc, pages);
}

}  // namespace

Bytes tableOfContents(const Command& command, const Disc& disc, const Sectors& sectors) {
  const Bytes all = table(command, disc, sectors);
  return {all.begin(), all.begin() + std::ptrdiff_t(std::min<std::size_t>(command.number(7, 2), all.size()))};
}

Bytes discInformation(const Command& command, const Disc& disc) {
  const bool open = disc.sessionIsOpen();
  const std::uint32_t status = disc.blank() ? 0 : disc.finalized ? 2 : 1;
  const std::uint32_t lastState = disc.finalized ? 3 : open ? 1 : 0;
  const std::int32_t session = disc.finalized || open ? disc.sessionNumber() : disc.sessionNumber() + 1;
  const Track* first = disc.firstOf(session);
  const Track* last = disc.lastOf(session);
  const auto numberOf = [&](const Track* track) {
    return static_cast<std::uint32_t>(track == nullptr ? disc.nextTrackNumber() : track->number);
  };
  Answer answer(34);
  answer.put(2, (disc.rewritable ? 0x10U : 0U) | lastState << 2U | status, 1).put(3, 1, 1);
  answer.put(4, static_cast<std::uint32_t>(session), 1).put(5, numberOf(first), 1).put(6, numberOf(last), 1);
  answer.put(7, 0x20, 1).put(8, disc.blank() ? 0xFF : 0x00, 1);
  const std::int32_t leadIn = disc.blank() ? disc.leadIn : disc.nextStart() - pregapBlocks - 4500;
  answer.put(17, disc.finalized ? nowhere : msfOf(leadIn).packed(), 3);
  answer.put(21, disc.finalized ? nowhere : msfOf(disc.capacity).packed(), 3);
  return answer.length(0, 2).upTo(command.number(7, 2));
}

Bytes trackInformation(const Command& command, const Disc& disc, const Pages& pages) {
  const std::optional<Track> track = trackAsked(command, disc, pages);
  require(track.has_value(), sense::badField);
  const bool invisible = track->number == disc.nextTrackNumber();
  const bool open = track->state == TrackState::Open && disc.writable();
  const std::int32_t room = open ? std::max(0, disc.capacity - track->end) : 0;
  const std::int32_t size =
      open && invisible ? room : std::max(track->end, track->start + track->reserved) - track->start;
  Answer answer(36);
  answer.put(2, static_cast<std::uint32_t>(track->number), 1).put(3, static_cast<std::uint32_t>(track->session), 1);
  answer.put(5, (track->state == TrackState::Partial ? 0x20U : 0U) | (invisible ? 0x04U : track->control), 1);
  answer.put(6,
             (invisible ? 0x40U : 0U) | (track->reserved > 0 ? 0x80U : 0U) |
                 static_cast<std::uint32_t>(invisible ? 0x0F : static_cast<int>(track->kind)),
             1);
  answer.put(7, open ? 0x01 : 0x00, 1).put(8, static_cast<std::uint32_t>(track->start), 4);
  answer.put(12, open ? static_cast<std::uint32_t>(track->end) : 0, 4).put(16, static_cast<std::uint32_t>(room), 4);
  answer.put(24, static_cast<std::uint32_t>(size), 4);
  return answer.length(0, 2).upTo(command.number(7, 2));
}

Bytes capacity(const Command& command, const Disc& disc) {
  const std::int32_t sessions = disc.closedSessions();
  const std::int32_t end = sessions == 0 ? 1 : disc.sessions[static_cast<std::size_t>(sessions) - 1].leadOut;
  return Answer(8).put(0, static_cast<std::uint32_t>(end - 1), 4).put(4, 2048, 4).upTo(command.room);
}

Bytes formatCapacities(const Command& command, const Disc& disc) {
  Answer answer(12);
  answer.put(3, 8, 1).put(4, static_cast<std::uint32_t>(disc.capacity), 4).put(8, disc.blank() ? 1 : 2, 1);
  return answer.put(9, 2048, 3).upTo(command.number(7, 2));
}

Bytes subChannel(const Command& command) {
  const std::uint32_t format = command[3];
  require(format >= 1 && format <= 3, sense::badField);
  Answer answer(format == 1 ? 16 : 24);
  answer.put(1, 0x15, 1).put(4, format, 1).length(2, 2);
  return answer.upTo(command.number(7, 2));
}

}  // namespace emulated

#include "Disc.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>

#include "Address.h"

namespace emulated {

namespace {

std::ostream& operator<<(std::ostream& out, const Track& track) {
  return out << "track " << track.number << ' ' << track.session << ' ' << static_cast<int>(track.kind) << ' '
             << static_cast<int>(track.control) << ' ' << track.pregap << ' ' << track.start << ' ' << track.end << ' '
             << track.reserved << ' ' << static_cast<int>(track.state) << '\n';
}

Track trackFrom(std::istream& in) {
  Track track;
  int kind = 0;
  int control = 0;
  int state = 0;
  in >> track.number >> track.session >> kind >> control >> track.pregap >> track.start >> track.end >>
      track.reserved >> state;
  track.kind = static_cast<Kind>(kind);
  track.control = static_cast<std::uint8_t>(control);
  track.state = static_cast<TrackState>(state);
  return track;
}

Session sessionFrom(std::istream& in) {
  Session session;
  std::string state;
  in >> state >> session.leadOut;
  session.closed = state == "closed";
  return session;
}

void takeLine(Disc& disc, const std::string& line) {
  std::istringstream in(line);
  std::string word;
  in >> word;
  if (word == "medium") {
    in >> word;
    disc.rewritable = word == "CD-RW";
  }
  if (word == "blocks") in >> disc.capacity;
  if (word == "leadin") in >> disc.leadIn;
  if (word == "finalized") disc.finalized = true;
  if (word == "session") disc.sessions.push_back(sessionFrom(in));
  if (word == "track") disc.tracks.push_back(trackFrom(in));
}

}  // namespace

std::int32_t Disc::nextStart() const {
  if (blank()) return 0;
  if (!sessionIsOpen()) return sessions.back().leadOut + gapBehindSession(sessions.size());
  if (lastOf(sessionNumber()) == nullptr) return sessions.back().leadOut;
  const Track& last = tracks.back();
  return std::max(last.end, last.start + last.reserved) + pregapBlocks;
}

Track* Disc::openTrack() {
  const auto found = std::ranges::find(tracks, TrackState::Open, &Track::state);
  return found == tracks.end() ? nullptr : &*found;
}

const Track* Disc::trackAt(std::int32_t block) const {
  const auto found =
      std::ranges::find_if(tracks, [&](const Track& track) { return block >= track.pregap && block < track.end; });
  return found == tracks.end() ? nullptr : &*found;
}

const Track* Disc::firstOf(std::int32_t session) const {
  const auto found = std::ranges::find(tracks, session, &Track::session);
  return found == tracks.end() ? nullptr : &*found;
}

const Track* Disc::lastOf(std::int32_t session) const {
  const auto found =
      std::find_if(tracks.rbegin(), tracks.rend(), [&](const Track& track) { return track.session == session; });
  return found == tracks.rend() ? nullptr : &*found;
}

Track& Disc::add(Track track) {
  if (!sessionIsOpen()) sessions.push_back({false, track.start});
  track.number = nextTrackNumber();
  track.session = sessionNumber();
  return tracks.emplace_back(track);
}

void Disc::closeSession(bool finalize) {
  for (Track& track : tracks) track.state = TrackState::Complete;
  sessions.back() = {true, tracks.back().end};
  finalized = finalize;
}

void Disc::makeBlank() {
  sessions.clear();
  tracks.clear();
  finalized = false;
}

Disc Disc::load(const std::filesystem::path& file) {
  Disc disc;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) takeLine(disc, line);
  return disc;
}

void Disc::save(const std::filesystem::path& file) const {
  const std::filesystem::path aside = file.string() + ".new";
  std::ofstream out(aside);
  out << "medium " << (rewritable ? "CD-RW" : "CD-R") << "\nblocks " << capacity << "\nleadin " << leadIn << '\n';
  if (finalized) out << "finalized\n";
  for (const Session& session : sessions)
    out << "session " << (session.closed ? "closed " : "open ") << session.leadOut << '\n';
  for (const Track& track : tracks) out << track;
  out.close();
  std::filesystem::rename(aside, file);
}

}  // namespace emulated

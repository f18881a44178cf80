#include "layout/LayoutOpening.h"

#include <cstddef>
#include <string>
#include <vector>

#include "layout/LayoutForms.h"
#include "model/AddTrack.h"
#include "model/Capacity.h"
#include "model/CommandStates.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/TrackRow.h"
#include "runtime/Files.h"
#include "runtime/Numbers.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"
#include "runtime/ValueFile.h"

namespace trackloom {

namespace {

/// More than the longest paths and folders of the most tracks that a file can count, in bytes.
constexpr std::size_t LargestLayoutFile = std::size_t{1} << 28;

/// Takes the kind of the layout from its first value: only the very word makes an audio layout.
void takeKind(Session& session, const std::string& word) {
  if (word == AudioKind.fileWord) {
    setLayoutKind(session, AudioKind);
    session.mod.NextTrackNumber = 1;
    session.frmListing().ListView1.SetSorted(false);
    return;
  }
  setLayoutKind(session, Mp3Kind);
  addFolderColumn(session);
  ApplyListingSort(session);
}

/// The lines that follow the head: one a track, on an MP3 layout two. The count is one of 16 bits before and after.
std::int16_t linesOfTracks(Session& session, const std::string& count) {
  const std::int16_t tracks = ToInt16(Val(count));
  return isAudioLayout(session) ? tracks : ToInt16(tracks * 2);
}

/// A path that begins at no root cannot come from a saved layout, so it is never looked for where the program stands.
bool isThere(const Session& session, const std::string& path) {
  return path.starts_with(HostSep) && session.ports.folders.hasFile(HostPath(path));
}

class Opening {
 public:
  Opening(Session& session, LayoutForms& forms) : session_(session), forms_(forms) {}

  void read();

 private:
  void readTracks();
  void addTrack(const std::string& path, const std::string& discFolder);
  void finish();
  void tellMissing();

  Session& session_;
  LayoutForms& forms_;
  Batch batch_{session_, Batch::Source::LayoutFile};
  ValueReader values_{ReadStart(layoutFilePath(session_, session_.mod.LayoutFileName), LargestLayoutFile)};
  std::vector<std::string> missing_;
};

void Opening::read() {
  takeKind(session_, values_.next());
  readTracks();
  if (batch_.goesOn()) finish();
}

void Opening::readTracks() {
  const std::int16_t lines = linesOfTracks(session_, values_.next());
  values_.next();
  for (int line = 1; line <= lines && batch_.goesOn(); ++line) {
    const std::string path = values_.next();
    // The folder of a missing track comes next and is taken for a path, so it is told as missing, too.
    if (!isThere(session_, path)) {
      missing_.push_back(path);
      continue;
    }
    std::string folder = NoFolder;
    if (!isAudioLayout(session_)) {
      folder = values_.next();
      ++line;
    }
    addTrack(path, folder);
  }
}

void Opening::addTrack(const std::string& path, const std::string& discFolder) {
  const std::string name = SplitPath(session_, path);
  const Candidate candidate{HostPath(path), session_.mod.PathFolder, name, discFolder};
  if (AddTrack(batch_, candidate, LayoutFileTracks) != AddOutcome::Added) session_.ports.pump.pumpEvents();
}

void Opening::finish() {
  UpdateCapacityDisplay(session_);
  UpdateCommandStates(session_);
  ListView& listing = session_.frmListing().ListView1;
  if (listing.Count() > 0) listing.SelectRow(1);
  if (!missing_.empty()) tellMissing();
}

void Opening::tellMissing() {
  for (const std::string& path : missing_) {
    ListItem row;
    row.Text = path;
    forms_.frmNoAdd->List1.Add(std::move(row));
  }
  forms_.frmNoAdd->showModal(&session_.frmListing());
}

}  // namespace

bool OpenLayout(Session& session, LayoutForms& forms) {
  const std::string name = layoutName(session.mod.LayoutFileName);
  try {
    Opening(session, forms).read();
    return true;
  } catch (const RuntimeError& error) {
    session.ask({"Open CD Layout",
                 "The layout '" + name + "' could not be read." + ParagraphBreak + error.description(), BoxButtons::Ok,
                 BoxIcon::Exclamation});
    return false;
  }
}

}  // namespace trackloom

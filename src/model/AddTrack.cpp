#include "model/AddTrack.h"

#include "model/Capacity.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/TrackRow.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

void refuseAudio(Session& session, const Candidate& candidate, const AddTrackRules& rules) {
  const std::string kind = rules.saysStereo ? "44khz Stereo Audio file" : "44khz Audio file";
  session.ask({"Invalid Audio File", "'" + candidate.path.text + "' could not be inserted into the Audio Queue." +
                                         ParagraphBreak + "Ensure this is a valid " + kind +
                                         " (MP3 or WAV) and the file is not corrupt."});
}

void refuseData(Session& session, const Candidate& candidate) {
  session.ask({"Unable to Add File", "'" + candidate.path.text + "' could not be inserted into the Data Queue." +
                                         ParagraphBreak +
                                         "The data from the file could not be read properly.  Ensure the file is not "
                                         "corrupt and can be read by other applications."});
}

bool queueAudio(Session& session, const Candidate& candidate, const AddTrackRules& rules) {
  std::int16_t& number = session.mod.NextTrackNumber;
  if (session.frmListing().CDR1->AddAudioTrack(candidate.path, number)) {
    number = ToInt16(number + 1);
    return true;
  }
  refuseAudio(session, candidate, rules);
  return false;
}

bool queueData(Session& session, const Candidate& candidate, const AddTrackRules& rules) {
  if (rules.testExtension && UCase(Right(candidate.name, 4)) != ".MP3") return false;
  const std::string nameOnDisc = rules.shortenDiscName ? DiscName(candidate.name) : candidate.name;
  if (session.frmListing().CDR1->AddDataFile(DiscPathOf(candidate.discFolder, nameOnDisc), candidate.path)) return true;
  refuseData(session, candidate);
  return false;
}

bool isSkipped(Session& session, const Candidate& candidate, const AddTrackRules& rules) {
  if (rules.testExtension) {
    const std::string extension = UCase(Right(candidate.name, 4));
    if (extension != ".WAV" && extension != ".MP3") return true;
  }
  return rules.testDuplicates && session.frmListing().ListView1.HasText(candidate.name);
}

void addRow(const Batch& batch, const Candidate& candidate) {
  Session& session = batch.session();
  ListItem row;
  row.Text = candidate.name;
  row.Tag = session.mod.NextTrackNumber;
  row.SubItems = {candidate.folder, MeasureTrack(session, candidate.path)};
  if (!isAudioLayout(session)) row.SubItems.push_back(candidate.discFolder);
  session.frmListing().ListView1.Add(std::move(row));
  batch.rowAdded();
  session.ports.pump.pumpEvents();
}

void takeBackOverflow(Session& session, const Candidate& candidate) {
  CDWriterXP& writer = *session.frmListing().CDR1;
  if (isAudioLayout(session)) {
    writer.ListAudioTracks();
    session.mod.NextTrackNumber = ToInt16(session.mod.NextTrackNumber - 1);
    writer.RemoveAudioTrack(session.mod.NextTrackNumber);
  } else {
    // The bare name is no path of the queue, so a file that overflowed goes on counting.
    writer.RemoveDataFile(DiscPath(candidate.name));
  }
  session.ask(
      {"Layout Too Big",
       std::string("The current track being added will cause you to exceed the amount of space available for "
                   "the current layout.") +
           ParagraphBreak +
           "Check the track time (Audio CD) or size (MP3 CD) on the status bar.  Track addition will now stop."});
}

}  // namespace

AddOutcome AddTrack(const Batch& batch, const Candidate& candidate, const AddTrackRules& rules) {
  Session& session = batch.session();
  if (!batch.goesOn() || isSkipped(session, candidate, rules)) return AddOutcome::NotAdded;
  const bool queued =
      isAudioLayout(session) ? queueAudio(session, candidate, rules) : queueData(session, candidate, rules);
  if (rules.testLimit) {
    CheckRoomForTrack(session);
    if (session.mod.TrackWontFit) {
      takeBackOverflow(session, candidate);
      return AddOutcome::LayoutTooBig;
    }
  }
  if (!queued) return AddOutcome::NotAdded;
  addRow(batch, candidate);
  return AddOutcome::Added;
}

std::string MeasureTrack(Session& session, const HostPath& path) {
  CDWriterXP& scratch = *session.frmListing().CDR2;
  scratch.ClearAudioQueue();
  scratch.AddAudioTrack(path, 1);
  return scratch.BlocksToTime(scratch.AudioQueueBlocks());
}

std::string SplitPath(Session& session, const std::string& path) {
  const PathParts parts = splitPathText(path);
  if (parts.hasFolder) session.mod.PathFolder = parts.folder;
  return parts.name;
}

}  // namespace trackloom

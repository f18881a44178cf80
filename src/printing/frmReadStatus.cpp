#include "printing/frmReadStatus.h"

#include "model/Session.h"
#include "model/TrackRow.h"
#include "model/frmImages.h"
#include "printing/PrintingForms.h"
#include "printing/clsMP3Info.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

/// Minutes and seconds out of MM:SS:FF, in as many characters with a leading 0 as without: from ten minutes on the last
/// digit of the seconds is lost.
std::string shortened(const std::string& time) {
  const std::size_t count = Len(time) - 4;
  return time.starts_with('0') ? time.substr(1, count) : time.substr(0, count);
}

/// What a list shows of a text.
std::string upToNul(const std::string& text) {
  return text.substr(0, text.find('\0'));
}

}  // namespace

frmReadStatus::frmReadStatus(Session& session, PrintingForms& forms)
    : Form(session.host, "frmReadStatus", "Reading Tracks"),
      session_(session),
      forms_(forms),
      CDR2(session.ports.writers.create(silent_)) {}

void frmReadStatus::Load() {
  takePicture(session_, &frmImages::imgTags, Image1);
}

void frmReadStatus::Activate() {
  if (ReadDone) return;
  ReadDone = true;
  readTracks();
  unload();
}

void frmReadStatus::readTracks() {
  session_.mod.TagsMissing = false;
  session_.mod.TrackTimes.clear();
  session_.mod.TrackTimeCount = 0;
  clsMP3Info info(session_);
  for (int number = 1; number <= session_.frmListing().ListView1.Count(); ++number) readTrack(number, info);
}

void frmReadStatus::readTrack(int number, clsMP3Info& info) {
  Label1.Caption = "Reading ID3 Tag Information from Track #" + std::to_string(number) + "...";
  Label1.Refresh();
  const HostPath track = sourcePath(session_.frmListing().ListView1, number);
  session_.mod.TrackTimes.push_back(playTime(track));
  session_.mod.TrackTimeCount = ToInt16(session_.mod.TrackTimeCount + 1);
  info.SetFileName(track);
  forms_.frmPrintList->ListView1.Add({FormatTwoDigits(number), {upToNul(info.Artist()), upToNul(info.Title())}});
}

std::string frmReadStatus::playTime(const HostPath& track) {
  CDR2->ClearAudioQueue();
  CDR2->AddAudioTrack(track, 1);
  return shortened(CDR2->BlocksToTime(CDR2->AudioQueueBlocks()));
}

}  // namespace trackloom

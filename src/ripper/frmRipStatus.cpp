#include "ripper/frmRipStatus.h"

#include "model/Session.h"
#include "model/frmImages.h"
#include "ripper/RipperForms.h"
#include "ripper/modWriteMP3.h"
#include "runtime/Numbers.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

constexpr std::int32_t PercentOfTrack = 100;

/// What is told of a rip's trouble; empty for a code that has no words.
std::string wordsOf(std::int32_t code, std::int32_t value) {
  switch (code) {
    case 2:
      return "Jitter Could Not Be Corrected..." + std::to_string(value);
    case 3:
      return "Speed Adjusted to Correct Error...";
    case 4:
      return "Read Failed...";
    case 5:
      return "Retrying Read...";
    case 6:
      return "Retry Failed...";
    case 8:
      return "File Aborted...";
    case 9:
      return "Buffer Could Not Be Initialized...";
    case 10:
      return "Error Creating File...";
    case 11:
      return "Error Writing File...";
    case 12:
      return "Error Closing File...";
    case 13:
      return "Drive Could Not Be Initialized...";
    case 14:
      return "Ripping Cancelled...";
    default:
      return "";
  }
}

ID3Tag tagOf(const CDRipperMod1& mod, const std::string& title) {
  return {.Title = title,
          .Artist = mod.DiscArtist,
          .Album = mod.DiscAlbum,
          .Year = mod.DiscYear,
          .Comment = {},
          .Genre = mod.DiscGenre};
}

}  // namespace

frmRipStatus::frmRipStatus(Session& session, RipperForms& forms)
    : Form(session.host, "frmRipStatus", "Ripping Status"), session_(session), forms_(forms) {
  cmdCancel.Cancel = true;
  cmdCancel.Click = [this] { cmdCancel_Click(); };
}

void frmRipStatus::Load() {
  takePicture(session_, &frmImages::imgRipper, Image1);
}

void frmRipStatus::StartRipSession(CDRipperX& engine) {
  m_objRipper = &engine;
  m_objRipper->listen(this);
  prgTotal.SetValue(0);
  prgTrack.SetValue(0);
  showModal(&forms_.frmRipMain.get());
}

void frmRipStatus::Unload() {
  if (m_objRipper != nullptr) m_objRipper->listen(nullptr);
}

void frmRipStatus::Activate() {
  // In this pump the user can have unloaded the dialog: what follows then meets an engine that nobody listens to.
  session_.ports.pump.pumpEvents();
  prgTotal.SetMax(forms_.frmRipMain->ListView2.CheckedCount());
  prgTotal.SetValue(0);
  TrackNames.clear();
  FinishedCount = 0;
  m_objRipper->ClearQueue();
  queueCheckedRows();
  if (m_objRipper->StartRip()) return;
  session_.ask({"Error", "An error was encountered.  Extraction could not be started."});
  unload();
}

void frmRipStatus::queueCheckedRows() {
  const ListView& list = forms_.frmRipMain->ListView2;
  for (int row = 1; row <= list.Count(); ++row) {
    CurrentTrack = ToInt16(row);
    if (list.Item(row).Checked) queueRow(CurrentTrack);
  }
}

void frmRipStatus::queueRow(std::int16_t row) {
  prgTrack.SetMax(PercentOfTrack);
  prgTrack.SetValue(0);
  if (m_objRipper->TrackIsAudio(row)) m_objRipper->QueueTrack(row, pathOf(row), row);
  TrackNames.push_back(Trim(forms_.frmRipMain->ListView2.Item(row).Text));
}

HostPath frmRipStatus::pathOf(std::int16_t row) const {
  const CDRipperMod1& mod = forms_.mod;
  const std::string extension = mod.RipToMP3 ? ".mp3" : ".wav";
  const std::string name = Trim(forms_.frmRipMain->ListView2.Item(row).Text);
  switch (mod.RipNameMethod) {
    case NameOfList:
      return HostPath(mod.RipFolder + name + extension);
    case ArtistAndName:
      return HostPath(mod.RipFolder + Trim(mod.DiscArtist.get()) + " - " + name + extension);
    case AlbumAndName:
      return HostPath(mod.RipFolder + Trim(mod.DiscAlbum.get()) + " - " + name + extension);
    default:
      return HostPath(mod.RipFolder + Trim(mod.RipCustomName) + FormatTwoDigits(row) + extension);
  }
}

void frmRipStatus::RipStarted() {
  RipRunning = true;
}

void frmRipStatus::TrackStarted(const HostPath& path, std::int32_t first, std::int32_t last,
                                std::int32_t callerNumber) {
  CurrentFile = path;
  TrackFirstSector = first;
  TrackLastSector = last;
  CurrentTrack = ToInt16(callerNumber);
}

void frmRipStatus::RipStatus(std::int32_t code, std::int32_t value) {
  if (code == RipProgress)
    showProgress(value);
  else if (const std::string words = wordsOf(code, value); !words.empty())
    StatusBar1.SetPanelText(1, words);
  session_.ports.pump.pumpEvents();
}

void frmRipStatus::showProgress(std::int32_t sector) {
  const CDRipperMod1& mod = forms_.mod;
  StatusBar1.SetPanelText(1, mod.RipToMP3
                                 ? "Ripping Track(s) as MP3 format (" + std::to_string(mod.RipBitRate) + " kbps)..."
                                 : "Ripping Track(s) as standard WAV audio...");
  const std::int32_t done = sector - TrackFirstSector;
  const std::int32_t length = TrackLastSector - TrackFirstSector;
  lblTime.Caption = "Track " + FormatTwoDigits(CurrentTrack) + "     " + m_objRipper->SectorsToTime(done) + " / " +
                    m_objRipper->SectorsToTime(length);
  // Of an empty track no engine reports progress.
  if (length != 0) prgTrack.SetValue(ToInt32(static_cast<std::int64_t>(RoundHalfEven(done * 100.0 / length))));
}

void frmRipStatus::TrackFinished() {
  prgTotal.SetValue(prgTotal.Value() + 1);
  const std::string name = FinishedCount < TrackNames.size() ? TrackNames[FinishedCount] : "";
  ++FinishedCount;
  // A row that still has its number is no name; names that begin like one share its lot.
  if (!name.empty() && name.front() != '0') WriteID3Tag(tagOf(forms_.mod, name), CurrentFile);
}

void frmRipStatus::RipFinished() {
  RipRunning = false;
  if (CancelRequested)
    session_.ask({"Operation Cancelled", "Ripping operation was cancelled.", BoxButtons::Ok, BoxIcon::Information});
  else
    session_.ask(
        {"Operation Complete", "Ripping of selected tracks is now complete.", BoxButtons::Ok, BoxIcon::Information});
  CancelRequested = false;
  unload();
}

void frmRipStatus::cmdCancel_Click() {
  if (!RipRunning) {
    unload();
    return;
  }
  CancelRequested = true;
  m_objRipper->CancelRip();
  session_.ports.pump.pumpEvents();
}

}  // namespace trackloom

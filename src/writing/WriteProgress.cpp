#include "writing/WriteProgress.h"

#include "model/Layout.h"
#include "model/QueueNumber.h"
#include "model/Session.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"
#include "writing/DiscTools.h"
#include "writing/WritingForms.h"

namespace trackloom {

namespace {

constexpr const char* Preparing = "Preparing to write disc...Please wait...";

/// A percentage rounded to a 16-bit whole number. Of nothing there is none, which is an error like any other.
std::int16_t percentOf(double part, double whole) {
  return ToInt16(part / whole * 100);
}

std::string percentText(std::int16_t percent) {
  return std::to_string(percent) + "%";
}

}  // namespace

frmStatus& WriteProgress::status() {
  return forms_.frmStatus.get();
}

void WriteProgress::OnWriteStarting() {
  ListingWindow& window = session_.frmListing();
  window.TotalTracks = isAudioLayout(session_) ? ToInt16(window.ListView1.Count()) : std::int16_t{1};
  frmStatus::say(status().lblOperation, Preparing);
}

void WriteProgress::OnTrackCacheStart(std::int16_t track, std::int32_t blocks) {
  if (session_.mod.IsoWriteActive) {
    forms_.frmISO->pbCache.SetMax(blocks);
    return;
  }
  status().pbTrack.SetValue(0);
  status().cmdCancel.Enabled = false;
  status().pbCache.SetMax(blocks);
  frmStatus::say(status().lblOperation, isAudioLayout(session_) ? "Caching Track #" + std::to_string(track) + "..."
                                                                : "Caching Entire Data Track...");
}

void WriteProgress::OnCacheProgress(std::int32_t position) {
  (session_.mod.IsoWriteActive ? forms_.frmISO->pbCache : status().pbCache).SetValue(position);
}

void WriteProgress::OnTrackWriteStart(std::int16_t track, std::int32_t blocks) {
  status().pbCache.SetValue(0);
  status().cmdCancel.Enabled = true;
  const std::string what =
      isAudioLayout(session_) ? "Writing Track #" + std::to_string(track) + "..." : "Writing Data Track...";
  frmStatus::say(status().lblOperation, (session_.frmListing().CDR1->TestMode() ? "Test " : "") + what);
  status().pbTrack.SetMax(blocks);
  session_.frmListing().TrackBlocks = blocks;
}

void WriteProgress::OnWriteProgress(std::int16_t track, std::int32_t position, std::int16_t level) {
  const ListingWindow& window = session_.frmListing();
  std::int16_t ofTrack = 0;
  std::int16_t overall = 0;
  skipOnError([&] { ofTrack = percentOf(position, window.TrackBlocks); });
  skipOnError([&] { overall = percentOf((track - 1) + ofTrack / 100.0, window.TotalTracks); });
  status().pbTrack.SetValue(position);
  frmStatus::say(status().lblDevice, percentText(level));
  status().pbOverall.SetValue(overall);
}

void WriteProgress::OnReadBufferLevel(std::int16_t percent) {
  frmStatus::say(status().lblBuffer, percentText(percent));
}

void WriteProgress::OnTrackClosing(std::int16_t track) {
  const std::string total = std::to_string(session_.frmListing().TotalTracks);
  const std::string number = std::to_string(track);
  frmStatus::say(status().lblOperation,
                 isAudioLayout(session_) ? "Closing Track #" + number + "..." : "Closing Data Track...");
  frmStatus::say(status().lblTracks, isAudioLayout(session_) ? number + " of " + total : "1 of 1");
}

void WriteProgress::OnSessionClosing() {
  showClosing("Closing session...Please wait...");
}

void WriteProgress::OnDiscClosing() {
  showClosing("Closing disc...This operation can take several minutes on slower CD recording drives...Please wait...");
}

void WriteProgress::showClosing(const std::string& text) {
  if (!session_.mod.WriteActive) return;
  frmStatus& window = status();
  window.pbCache.SetValue(0);
  window.pbTrack.SetValue(0);
  for (Label* label : {&window.lblBuffer, &window.lblDevice, &window.lblTracks}) label->Caption = "";
  window.pbOverall.SetValue(0);
  window.cmdCancel.Enabled = false;
  frmStatus::say(window.lblOperation, text);
}

void WriteProgress::OnOperationComplete() {
  if (session_.mod.DiscCloseActive) {
    finishDiscClose(session_, forms_);
    return;
  }
  if (session_.mod.WritePhase == TestBeforeWrite) {
    prepareRealPass();
    return;
  }
  session_.mod.CopiesDone = ToInt16(session_.mod.CopiesDone + 1);
  if (session_.mod.CopiesDone == session_.mod.CopiesWanted) {
    finishRecording();
    return;
  }
  session_.frmListing().CDR1->EjectDisc();
  session_.frmListing().Timer2.Enabled = true;
}

void WriteProgress::prepareRealPass() {
  frmStatus& window = status();
  window.lblOperation.Caption = Preparing;
  for (Label* label : {&window.lblBuffer, &window.lblDevice, &window.lblTracks}) label->Caption = "N/A";
  window.pbTrack.SetValue(0);
  window.pbOverall.SetValue(0);
  session_.frmListing().Timer1.Enabled = true;
}

void WriteProgress::finishRecording() {
  ListingWindow& window = session_.frmListing();
  forms_.frmStatus.unload();
  window.show();
  window.CDR1->EjectDisc();
  forms_.frmDone->showModal(&window);
}

void WriteProgress::OnWriteError(std::int32_t code, std::int32_t deviceError) {
  if (!session_.mod.WriteActive) {
    session_.ask({.title = "Error",
                  .text = "There was an error encountered trying to perform the requested disc operation.",
                  .ofFailure = true});
    forms_.frmErase.unload();
    forms_.frmDiskInfo.unload();
    return;
  }
  forms_.frmStatus.unload();
  session_.frmListing().show();
  forms_.frmError->lblError.Caption = " " + errorMessage(code, deviceError);
  forms_.frmError->showModal(&session_.frmListing());
}

void WriteProgress::OnEraseStarted() {
  forms_.frmErase->showErasing();
}

void WriteProgress::OnEraseComplete() {
  forms_.frmErase.unload();
  session_.frmListing().CDR1->EjectDisc();
  session_.ask({"Complete", "The erase operation in now complete.", BoxButtons::Ok, BoxIcon::Information});
}

void WriteProgress::OnAudioTrackListed(const HostPath& path, std::int32_t, std::int32_t, std::int32_t,
                                       std::int16_t number) {
  noteListedTrack(session_, path, number);
}

std::string WriteProgress::errorMessage(std::int32_t code, std::int32_t deviceError) {
  switch (code) {
    case ReadBufferError:
      return "The read buffer could not be initialized...check your memory/disc resources.";
    case WriteBufferError:
      return "The write buffer could not be initialized...check your memory/disc resources.";
    case FileError:
      return "A file error was encountered while writing the disc.";
    case DeviceError:
      return "A device error has occurred. Device Error: " + std::to_string(deviceError) + CrLf + "Error Data - " +
             session_.frmListing().CDR1->LastDeviceErrorText();
    default:
      return "Unknown error occurred.";
  }
}

}  // namespace trackloom

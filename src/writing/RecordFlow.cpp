#include "writing/RecordFlow.h"

#include "model/Capacity.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/TrackRow.h"
#include "runtime/Text.h"
#include "writing/LayoutTracks.h"
#include "writing/WritingForms.h"

namespace trackloom {

namespace {

CDWriterXP& writerOf(Session& session) {
  return *session.frmListing().CDR1;
}

void refuse(Session& session, const std::string& title, const std::string& text) {
  session.ask({title, text, BoxButtons::Ok, BoxIcon::Exclamation});
}

bool discIsLoaded(Session& session) {
  if (writerOf(session).MediaLoaded()) return true;
  refuse(session, "Media Not Loaded",
         "Please insert a CDR disc into the chosen drive and select the Record CD option again when ready.");
  return false;
}

bool discIsWritable(Session& session) {
  if (writerOf(session).DiscStatus() != DiscClosed) return true;
  refuse(session, "Closed Disc",
         std::string("The inserted disc in the selected drive is closed for further writing.  This disc cannot be "
                     "used.") +
             ParagraphBreak + "Please insert a new disc and choose the Record CD option again when ready.");
  return false;
}

bool rewritableIsWanted(Session& session) {
  if (!isAudioLayout(session) || !writerOf(session).DiscRewritable()) return true;
  return session.ask({"CDRW Disc Inserted",
                      std::string("The inserted disc in the selected drive appears to be a CDRW disc (rewritable disc) "
                                  "which should not be used to create standard Audio CD's, as most CD players will not "
                                  "read this format correctly.") +
                          ParagraphBreak +
                          "Do you still wish to create a standard Audio CD with the inserted CDRW disc?",
                      BoxButtons::OkCancel, BoxIcon::Question}) == BoxAnswer::Ok;
}

bool layoutFits(Session& session) {
  Trackloom50Mod1& mod = session.mod;
  CDWriterXP& writer = writerOf(session);
  const std::int32_t kind = layoutBlockKind(session);
  mod.DiscBlocks = writer.FreeBlocks(kind);
  mod.DiscBytes = writer.BlocksToBytes(mod.DiscBlocks, kind);
  if (writer.BlocksToBytes(layoutQueueBlocks(session), kind) <= mod.DiscBytes) return true;
  refuse(session, "CD Changed",
         std::string("The inserted disc may have changed since the start of CD layout creation.") + ParagraphBreak +
             "There does not appear to be enough room on the currently inserted CD to create the open CD layout.");
  return false;
}

/// The engine's cache bar means something only when the engine caches.
void showStatus(Session& session, WritingForms& forms) {
  CDWriterXP& writer = writerOf(session);
  const bool audio = isAudioLayout(session);
  if (!(audio ? writer.CacheAudioTracks() : writer.CacheDataTrack())) forms.frmStatus->Frame2.Enabled = false;
  forms.frmStatus->show();
}

void queueAudioRows(Session& session) {
  const ListView& listing = session.frmListing().ListView1;
  writerOf(session).ClearAudioQueue();
  for (int row = 1; row <= listing.Count(); ++row)
    writerOf(session).AddAudioTrack(sourcePath(listing, row), ToInt16(row));
}

void continueLastSession(Session& session, WritingForms& forms) {
  if (writerOf(session).ImportLastSession(true)) {
    forms.frmStatus->lblOperation.Caption = "Importing Previous Session...";
    forms.frmStatus->Refresh();
  }
  writerOf(session).SetVolumeLabel(session.mod.DiscVolumeLabel);
}

}  // namespace

void PrepareRecord(Session& session, WritingForms& forms) {
  session.mod.RecordConfirmed = false;
  if (!discIsLoaded(session) || !discIsWritable(session) || !rewritableIsWanted(session)) return;
  if (!tracksExist(session, "CD creation") || !layoutFits(session)) return;
  forms.frmOptions->showModal(&session.frmListing());
}

void StartDiscWrite(Session& session, WritingForms& forms) {
  Trackloom50Mod1& mod = session.mod;
  session.frmListing().hide();
  mod.CopiesDone = 0;
  mod.IsoWriteActive = false;
  mod.DiscCloseActive = false;
  writerOf(session).SetDiscMode(layoutBlockKind(session));
  showStatus(session, forms);
  if (isAudioLayout(session)) {
    queueAudioRows(session);
  } else {
    continueLastSession(session, forms);
    queueDataRows(session, writerOf(session));
  }
  mod.WriteActive = true;
  writerOf(session).StartWrite();
}

void startRealWrite(Session& session) {
  session.mod.WritePhase = RealWrite;
  writerOf(session).SetTestMode(false);
  writerOf(session).StartWrite();
}

void startNextCopy(Session& session, WritingForms& forms) {
  ListingWindow& window = session.frmListing();
  while (!writerOf(session).MediaLoaded()) {
    const std::string done = std::to_string(session.mod.CopiesDone);
    const BoxAnswer answer = session.ask(
        {"Insert Disc",
         "Copy " + done + " of " + std::to_string(session.mod.CopiesWanted) + " complete." + ParagraphBreak +
             "Please insert the next disc for the next copy of the current layout and click OK when the disc is ready.",
         BoxButtons::OkCancel, BoxIcon::Information});
    if (answer == BoxAnswer::Ok) continue;
    forms.frmStatus.unload();
    window.show();
    forms.frmDone->showModal(&window);
    window.Timer2.Enabled = false;
    return;
  }
  startRealWrite(session);
  window.Timer2.Enabled = false;
}

}  // namespace trackloom

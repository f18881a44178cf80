#include "model/DriveReadiness.h"

#include "model/Capacity.h"
#include "model/Session.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

BoxAnswer askForMedia(Session& session) {
  return session.ask(
      {"No Media",
       std::string("No media is currently loaded in the selected CD Recording Drive.  In order for Trackloom to track "
                   "total time and available space a CD needs to be inserted.") +
           ParagraphBreak +
           "Please insert a new CDR disc into the selected CD Recording Drive and click OK when the disc is ready, "
           "otherwise click Cancel to cancel the current operation.",
       BoxButtons::OkCancel, BoxIcon::Exclamation});
}

void tellNoSpace(Session& session) {
  session.ask({"No Available Space",
               std::string("The current disc in your CD writer does not have any free space on it.  The disc is either "
                           "closed for further writing or is not a writable disc.") +
                   ParagraphBreak + "Please insert a new CDR disc before creating or opening a CD layout.",
               BoxButtons::Ok, BoxIcon::Exclamation});
}

/// False: the user gave up.
bool waitForMedia(Session& session) {
  while (!session.frmListing().CDR1->MediaLoaded())
    if (askForMedia(session) == BoxAnswer::Cancel) return false;
  return true;
}

}  // namespace

void ReadDiscCapacity(Session& session) {
  Trackloom50Mod1& mod = session.mod;
  ListingWindow& window = session.frmListing();
  window.CDR1->ClearDataQueue();
  window.CDR1->ClearAudioQueue();
  if (!waitForMedia(session)) {
    mod.LayoutOpen = false;
    window.panel1.Text = "";
    return;
  }
  const std::int32_t kind = layoutBlockKind(session);
  mod.DiscBlocks = window.CDR1->FreeBlocks(kind);
  window.Progress1.Maximum = mod.DiscBlocks;
  mod.DiscBytes = window.CDR1->BlocksToBytes(mod.DiscBlocks, kind);
  if (mod.DiscBlocks != 0) return;
  window.panel1.Text = "";
  tellNoSpace(session);
  mod.LayoutOpen = false;
}

}  // namespace trackloom

#include "writing/frmDone.h"

#include "model/Layout.h"
#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

namespace {

/// The first condition that holds gives the text; the kind of layout decides, not the operation that has ended.
std::string resultText(Session& session) {
  if (session.mod.WritePhase == TestOnly)
    return "Test creation of the current layout was performed successfully.  No errors were encountered during the "
           "testing process.";
  const bool closed = session.frmListing().CDR1->CloseDisc();
  if (isAudioLayout(session))
    return closed ? "The created audio disc is ready to be played in any standard CD player.  No further tracks can "
                    "be added to this disc."
                  : "The created audio disc has been left open so you can add further audio tracks.  The disc cannot "
                    "be played as a standard Audio CD until you choose Close Session from the Tools/CD Information "
                    "Info option with the disc inserted.";
  if (isMp3Layout(session))
    return closed ? "The created MP3 style CD is ready to be played in any MP3 compatible player.  No further tracks "
                    "can be added to this disc."
                  : "The created MP3 style CD has been left open so further MP3 tracks can be added to it.  The disc "
                    "may or may not play in an MP3 player until you choose Close Disc from the Tools/CD Information "
                    "option with the disc inserted.";
  return "The created disc now contains the chosen ISO image.  The disc has been closed for any further writing.";
}

}  // namespace

frmDone::frmDone(Session& session, WritingForms&)
    : Form(session.host, "frmDone", "Record Operation"), session_(session) {
  cmdClose.Default = true;
  cmdClose.Cancel = true;
  cmdClose.Click = [this] { unload(); };
}

void frmDone::Load() {
  takePicture(session_, &frmImages::imgDone, Image1);
  lblTypeInfo.Caption = resultText(session_);
}

}  // namespace trackloom

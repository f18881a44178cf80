#include "writing/DiscTools.h"

#include "model/Session.h"
#include "runtime/Text.h"
#include "writing/IsoFiles.h"
#include "writing/WritingForms.h"

namespace trackloom {

namespace {

bool discTakesImage(Session& session) {
  CDWriterXP& writer = *session.frmListing().CDR1;
  if (!writer.MediaLoaded()) {
    session.ask({"Media Not Loaded",
                 "Please insert a CDR or CDRW disc into the chosen drive and select the Record ISO option again when "
                 "ready."});
    return false;
  }
  if (writer.DiscStatus() != DiscClosed) return true;
  session.ask({"Closed Disc",
               std::string("The inserted disc in the selected drive is closed for further writing.  This disc cannot "
                           "be used.") +
                   ParagraphBreak + "Please insert a new disc and choose the Record ISO option again when ready."});
  return false;
}

/// Empty: the user has given the choice up.
std::string chosenImage(CommonDialog& dialog) {
  dialog.FileName = "";
  dialog.Filter = IsoFilter;
  dialog.Flags = {
      .pathMustExist = true, .fileMustExist = true, .hideReadOnly = true, .longNames = true, .explorer = true};
  dialog.ShowOpen();
  return dialog.FileName;
}

bool isToBeWritten(Session& session, const std::string& image) {
  return session.ask({"Write ISO Image",
                      "You have chosen to write the following ISO image to disc: " + Trim(image) + "." +
                          ParagraphBreak +
                          "The chosen ISO image will be written to the currently inserted disc and the disc will be "
                          "closed for any further writing." +
                          ParagraphBreak + "Continue writing this image?",
                      BoxButtons::OkCancel, BoxIcon::Question}) == BoxAnswer::Ok;
}

std::string wordsOfClose(const Trackloom50Mod1& mod) {
  if (mod.DiscClosedOnly == 1) return "The inserted disc has been closed for further writing.";
  if (mod.SessionAndDiscClosed) return "The last session and disc has been closed on the inserted CD.";
  return "The last session has been closed on the inserted CD.  The CD is still open for further writing.";
}

}  // namespace

void ShowDiscInfo(Session& session, WritingForms& forms) {
  if (session.frmListing().CDR1->MediaLoaded())
    forms.frmDiskInfo->showModal(&session.frmListing());
  else
    session.ask({"No CD", "There is no CD in the selected CD drive."});
}

void WriteISOImage(Session& session, WritingForms& forms) {
  if (!discTakesImage(session)) return;
  session.mod.IsoWriteActive = true;
  const std::string image = chosenImage(session.frmListing().CD1);
  if (image.empty() || !isToBeWritten(session, image)) return;
  session.mod.CopiesDone = 0;
  session.mod.CopiesWanted = 1;
  session.frmListing().hide();
  CDWriterXP& writer = *session.frmListing().CDR1;
  writer.SetDiscMode(DataBlocks);
  forms.frmStatus->Frame2.Enabled = false;
  forms.frmStatus->show();
  session.mod.WriteActive = true;
  writer.WriteIsoImage(HostPath(image));
}

void finishDiscClose(Session& session, WritingForms& forms) {
  if (forms.frmDiskInfo.exists()) forms.frmDiskInfo->Timer1.Enabled = false;
  forms.frmDiskInfo.unload();
  session.ask({"Complete", wordsOfClose(session.mod), BoxButtons::Ok, BoxIcon::Information});
  session.frmListing().CDR1->EjectDisc();
}

}  // namespace trackloom

#include "writing/DiscTools.h"

#include "model/Session.h"
#include "runtime/Text.h"
#include "writing/WritingForms.h"

namespace trackloom {

void ShowDiscInfo(Session& session, WritingForms& forms) {
  if (session.frmListing().CDR1->MediaLoaded())
    forms.frmDiskInfo->showModal(&session.frmListing());
  else
    session.ask({"No CD", "There is no CD in the selected CD drive."});
}

void WriteISOImage(Session& session) {
  CDWriterXP& writer = *session.frmListing().CDR1;
  if (!writer.MediaLoaded())
    session.ask({"Media Not Loaded",
                 "Please insert a CDR or CDRW disc into the chosen drive and select the Record ISO option again when "
                 "ready."});
  else if (writer.DiscStatus() == DiscClosed)
    session.ask({"Closed Disc",
                 std::string("The inserted disc in the selected drive is closed for further writing.  This disc cannot "
                             "be used.") +
                     ParagraphBreak + "Please insert a new disc and choose the Record ISO option again when ready."});
}

}  // namespace trackloom

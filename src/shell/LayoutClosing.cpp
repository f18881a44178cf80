#include "shell/LayoutClosing.h"

#include "layout/LayoutFile.h"
#include "layout/LayoutForms.h"
#include "model/CommandStates.h"
#include "model/Session.h"

namespace trackloom {

void closeQuestion(Session& session, LayoutForms& forms) {
  if (session.mod.Options.PromptSave == 1) PromptSaveLayout(session, forms);
}

void PromptSaveLayout(Session& session, LayoutForms& forms) {
  const ListView& listing = session.frmListing().ListView1;
  if (session.mod.LayoutSaved || (listing.Count() == 0 && session.mod.LayoutFileName.empty())) return;
  const BoxAnswer answer =
      session.ask({"Save Layout", "Save the currently open layout?", BoxButtons::YesNo, BoxIcon::Question});
  if (answer == BoxAnswer::Yes) saveOrAskName(session, forms);
}

void CloseLayout(Session& session) {
  ListingWindow& window = session.frmListing();
  window.ListView1.Clear();
  window.ListView1.Enabled = false;
  window.panel1.Text = "";
  window.panel3.Text = "";
  window.Progress1.Text = "";
  window.Progress1.Value = 0;
  window.CDR1->ClearAudioQueue();
  window.CDR1->ClearDataQueue();
  session.mod.LayoutOpen = false;
  session.mod.LayoutHasFile = false;
  session.mod.LayoutFileName.clear();
  if (session.mod.LayoutType == Mp3Layout && window.ListView1.columns().size() == 4) window.ListView1.RemoveColumn(4);
  UpdateCommandStates(session);
}

void saveOrAskName(Session& session, LayoutForms& forms) {
  if (session.mod.LayoutHasFile)
    SaveLayout(session);
  else
    forms.frmSave->showModal(&session.frmListing());
}

}  // namespace trackloom

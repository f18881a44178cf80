#include "shell/LayoutClosing.h"

#include "layout/LayoutFile.h"
#include "layout/LayoutForms.h"
#include "model/CommandStates.h"
#include "model/Layout.h"
#include "model/Session.h"

namespace trackloom {

void closeQuestion(Session& session, LayoutForms& forms) {
  if (session.mod.Options.PromptSave == 1) PromptSaveLayout(session, forms);
}

void PromptSaveLayout(Session& session, LayoutForms& forms) {
  if (needsSaving(session) && askToSave(session, BoxButtons::YesNo) == BoxAnswer::Yes) saveOrAskName(session, forms);
}

BoxAnswer askToSave(Session& session, BoxButtons buttons) {
  return session.ask({"Save Layout", "Save the currently open layout?", buttons, BoxIcon::Question});
}

void CloseLayout(Session& session) {
  ListingWindow& window = session.frmListing();
  window.ListView1.Clear();
  window.ListView1.Enabled = false;
  blankStatus(window);
  window.CDR1->ClearAudioQueue();
  window.CDR1->ClearDataQueue();
  ++session.batches.layoutsClosed;
  session.mod.LayoutOpen = false;
  session.mod.LayoutHasFile = false;
  session.mod.LayoutFileName.clear();
  if (isMp3Layout(session)) removeFolderColumn(session);
  UpdateCommandStates(session);
}

void blankStatus(ListingWindow& window) {
  window.panel1.Text = "";
  window.panel3.Text = "";
  window.Progress1.Text = "";
  window.Progress1.Value = 0;
}

void saveOrAskName(Session& session, LayoutForms& forms) {
  if (session.mod.LayoutHasFile)
    SaveLayout(session);
  else
    forms.frmSave->showModal(&session.frmListing());
}

}  // namespace trackloom

#include "layout/frmSave.h"

#include "help/HelpLaunch.h"
#include "layout/LayoutFile.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/frmImages.h"
#include "runtime/Files.h"
#include "runtime/Text.h"

namespace trackloom {

frmSave::frmSave(Session& session, LayoutForms&) : Form(session.host, "frmSave", "Save CD Layout"), session_(session) {
  cmdOK.Enabled = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  txtName.Change = [this] { txtName_Change(); };
  txtName.GotFocus = [this] { txtName.SelectAll(); };
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, SaveTopic); };
}

void frmSave::Load() {
  takePicture(session_, &frmImages::imgSave, Image1);
}

void frmSave::suggest(const std::string& name) {
  txtName.Text = name;
  txtName_Change();
}

void frmSave::txtName_Change() {
  cmdOK.Enabled = !Trim(txtName.Text.get()).empty();
}

bool frmSave::nameIsAllowed() {
  if (txtName.Text.get().find_first_of("\"?*/\\><:|") == std::string::npos) return true;
  session_.ask({"Layout Name",
                std::string("One or more of the characters included in the layout name are not allowed and are illegal "
                            "characters for file names on the Windows operating system.") +
                    ParagraphBreak + "Please name the layout using only numbers or letters."});
  return false;
}

bool frmSave::mayOverwrite(const std::string& name) {
  if (!FileExists(layoutFilePath(session_, layoutFileName(name)))) return true;
  return session_.ask({"Overwrite Layout",
                       "A layout by that name already exists.  Do you wish to save this layout anyway?",
                       BoxButtons::OkCancel, BoxIcon::Question}) == BoxAnswer::Ok;
}

void frmSave::cmdOK_Click() {
  const std::string name = Trim(txtName.Text.get());
  if (!nameIsAllowed() || !mayOverwrite(name)) {
    txtName.SetFocus();
    return;
  }
  writeLayoutFile(session_, layoutFilePath(session_, layoutFileName(name)));
  session_.mod.LayoutFileName = layoutFileName(name);
  session_.mod.LayoutHasFile = true;
  session_.mod.LayoutSaved = true;
  unload();
}

}  // namespace trackloom

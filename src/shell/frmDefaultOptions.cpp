#include "shell/frmDefaultOptions.h"

#include "help/HelpLaunch.h"
#include "model/Layout.h"
#include "model/OptionsFile.h"
#include "model/Session.h"
#include "model/frmImages.h"
#include "runtime/Statements.h"

namespace trackloom {

frmDefaultOptions::frmDefaultOptions(Session& session, ShellForms&)
    : Form(session.host, "frmDefaultOptions", "Default Options"), session_(session) {
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, DefaultOptionsTopic); };
}

void frmDefaultOptions::Load() {
  takePicture(session_, &frmImages::imgDefaultOptions, Image1);
  skipOnError([this] { readOptionsFile(session_); });
  const OptionsRecord& options = session_.mod.Options;
  chkBack.Value = options.ThemeColours == 1;
  chkPrompt.Value = options.PromptSave == 1;
  cboSort.AddItem("Sort by Track Name (Default)");
  cboSort.AddItem("Sort by Folder Name");
  cboSort.AddItem("No Sorting (Items are listed in order added)");
  cboSort.SetListIndex(options.SortMode);
}

void frmDefaultOptions::cmdOK_Click() {
  OptionsRecord& options = session_.mod.Options;
  options.ThemeColours = chkBack.Value ? 1 : 0;
  session_.frmListing().DockStudio1.UseThemeColours = options.ThemeColours;
  options.PromptSave = chkPrompt.Value ? 1 : 0;
  options.SortMode = ToInt16(cboSort.ListIndex());
  if (session_.mod.LayoutOpen && isMp3Layout(session_)) ApplyListingSort(session_);
  skipOnError([this] { writeOptionsFile(session_); });
  unload();
}

}  // namespace trackloom

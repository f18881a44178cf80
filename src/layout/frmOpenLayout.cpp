#include "layout/frmOpenLayout.h"

#include <cstddef>
#include <utility>

#include "help/HelpLaunch.h"
#include "model/DriveReadiness.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "model/frmImages.h"
#include "runtime/Files.h"
#include "runtime/RuntimeError.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"
#include "runtime/ValueFile.h"

namespace trackloom {

namespace {

/// Far more than the three values at the head of a layout file take, in bytes.
constexpr std::size_t HeadOfLayoutFile = 4096;

/// Number of tracks, total and kind, as the columns show them. A file that has not got them shows its name alone.
std::vector<std::string> cellsOf(const HostPath& file) {
  std::vector<std::string> cells(3);
  skipOnError([&] {
    ValueReader values(ReadStart(file, HeadOfLayoutFile));
    const std::string kind = values.next();
    const std::string tracks = values.next();
    cells = {tracks, values.next(), kind};
  });
  return cells;
}

}  // namespace

frmOpenLayout::frmOpenLayout(Session& session, LayoutForms&)
    : Form(session.host, "frmOpenLayout", "Open CD Layout"), session_(session) {
  cmdOK.Enabled = false;
  cmdDelete.Enabled = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdDelete.Click = [this] { cmdDelete_Click(); };
  cmdCancel.Click = [this] { unload(); };
  cmdHelp.Click = [this] { showHelpTopic(session_, OpenLayoutTopic); };
}

void frmOpenLayout::Load() {
  takePicture(session_, &frmImages::imgOpenLayout, Image1);
  skipOnError([this] { listLayouts(); });
  offerRows();
}

void frmOpenLayout::listLayouts() {
  const std::string extension = layoutFileName("");
  for (const std::string& fileName : ListFiles(HostPath(layoutsFolder(session_)), extension))
    if (fileName.ends_with(extension)) addRow(fileName);
}

void frmOpenLayout::addRow(const std::string& fileName) {
  ListItem row;
  row.Text = layoutName(fileName);
  row.SubItems = cellsOf(layoutFilePath(session_, fileName));
  ListView1.Add(std::move(row));
}

void frmOpenLayout::offerRows() {
  const bool any = ListView1.Count() > 0;
  cmdOK.Enabled = any;
  cmdDelete.Enabled = any;
  if (any) ListView1.SelectRow(1);
}

void frmOpenLayout::cmdOK_Click() {
  const int row = ListView1.SelectedRow();
  if (row == 0) return;
  session_.mod.LayoutOpen = true;
  ReadDiscCapacity(session_);
  if (!session_.mod.LayoutOpen) return;
  session_.mod.LayoutFileName = layoutFileName(ListView1.Item(row).Text);
  session_.mod.LayoutHasFile = true;
  unload();
}

void frmOpenLayout::cmdDelete_Click() {
  const BoxAnswer answer =
      session_.ask({"Delete", "Delete the selected Layout?", BoxButtons::OkCancel, BoxIcon::Question});
  if (answer == BoxAnswer::Cancel) return;
  try {
    const int row = ListView1.SelectedRow();
    DeleteFile(layoutFilePath(session_, layoutFileName(ListView1.Item(row).Text)));
    ListView1.Remove(row);
    offerRows();
  } catch (const RuntimeError&) {
    session_.ask({"Error", std::string("An error was encountered trying to delete the selected Layout.") +
                               ParagraphBreak +
                               "You may have to delete the Layout manually from the Trackloom layouts folder."});
  }
}

}  // namespace trackloom

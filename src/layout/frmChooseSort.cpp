#include "layout/frmChooseSort.h"

#include "model/Session.h"
#include "model/TrackRow.h"
#include "model/frmImages.h"

namespace trackloom {

frmChooseSort::frmChooseSort(Session& session, LayoutForms&)
    : Form(session.host, "frmChooseSort", "Choose Sort Type"), session_(session) {
  optName.select();
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { cmdCancel_Click(); };
}

void frmChooseSort::Load() {
  takePicture(session_, &frmImages::imgSort, Image1);
}

void frmChooseSort::cmdOK_Click() {
  ListView& listing = session_.frmListing().ListView1;
  listing.SetSortKey(optName.selected() ? 0 : FolderColumn);
  listing.SetSorted(true);
  unload();
}

void frmChooseSort::cmdCancel_Click() {
  session_.mod.SortChoiceCancelled = true;
  unload();
}

}  // namespace trackloom

#include "layout/frmChooseSort.h"

#include "model/Session.h"
#include "model/TrackRow.h"

namespace trackloom {

frmChooseSort::frmChooseSort(Session& session)
    : Form(session.host, "frmChooseSort", "Choose Sort Type"), session_(session) {
  Image1.Picture = "Sort";
  optName.select();
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { cmdCancel_Click(); };
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

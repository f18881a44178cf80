#include "printing/frmEdit.h"

#include "model/Session.h"
#include "model/TrackRow.h"
#include "model/frmImages.h"
#include "printing/PrintingForms.h"
#include "runtime/Text.h"

namespace trackloom {

frmEdit::frmEdit(Session& session, PrintingForms& forms)
    : Form(session.host, "frmEdit", "Edit Track"), session_(session), forms_(forms) {
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  for (TextBox* box : {&txtArtist, &txtTitle}) {
    box->Change = [this] { text_Change(); };
    box->GotFocus = [box] { box->SelectAll(); };
  }
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { unload(); };
}

void frmEdit::Load() {
  takePicture(session_, &frmImages::imgTags, Image1);
}

void frmEdit::suggest(const std::string& artist, const std::string& title) {
  txtArtist.Text = artist;
  txtTitle.Text = title;
  // What the program sets is a change as well.
  text_Change();
}

void frmEdit::text_Change() {
  cmdOK.Enabled = !Trim(txtArtist.Text.get()).empty() && !Trim(txtTitle.Text.get()).empty();
}

void frmEdit::cmdOK_Click() {
  ListView& list = forms_.frmPrintList->ListView1;
  list.SetSubItem(list.SelectedRow(), 1, Trim(txtArtist.Text.get()));
  list.SetSubItem(list.SelectedRow(), 2, Trim(txtTitle.Text.get()));
  unload();
}

}  // namespace trackloom

#include "printing/frmReadStatus.h"

#include "model/Session.h"
#include "model/frmImages.h"

namespace trackloom {

frmReadStatus::frmReadStatus(Session& session, PrintingForms&)
    : Form(session.host, "frmReadStatus", "Reading Tracks"), session_(session) {}

void frmReadStatus::Load() {
  takePicture(session_, &frmImages::imgTags, Image1);
}

}  // namespace trackloom

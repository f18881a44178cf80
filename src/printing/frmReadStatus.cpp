#include "printing/frmReadStatus.h"

#include "model/Session.h"

namespace trackloom {

frmReadStatus::frmReadStatus(Session& session) : Form(session.host, "frmReadStatus", "Reading Tracks") {
  Image1.Picture = "Tags";
}

}  // namespace trackloom

#include "shell/frmImages.h"

#include "model/Session.h"

namespace trackloom {

frmImages::frmImages(Session& session) : Form(session.host, "frmImages", "") {
  imgAbout.Picture = "About";
  imgDefaultOptions.Picture = "DefaultOptions";
}

}  // namespace trackloom

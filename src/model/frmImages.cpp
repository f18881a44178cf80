#include "model/frmImages.h"

#include "model/Session.h"

namespace trackloom {

frmImages::frmImages(Session& session) : Form(session.host, "frmImages", "") {}

void takePicture(Session& session, PictureBox frmImages::*picture, PictureBox& target) {
  target.Picture = (session.frmImages.get().*picture).Picture.get();
  session.frmImages.unload();
}

}  // namespace trackloom

#include "ripper/RipperForms.h"

namespace trackloom {

RipperForms::RipperForms(Session& shared)
    : session(shared),
      frmRipMain(session, *this),
      frmReading(session, *this),
      frmRipOptions(session, *this),
      frmRipStatus(session, *this) {}

RipperForms::~RipperForms() = default;

}  // namespace trackloom

#pragma once

#include <memory>

#include "engines/disc/Recorder.h"
#include "ports/DiscMounts.h"

namespace trackloom::engines::libburn {

/// The CD recorders of this machine in the order of their nodes, /dev/sr0 first. Drives that only read are left out; so
/// are those that may not be opened, since nobody can tell what they are.
RecorderList findRecorders(const std::shared_ptr<DiscMounts>& mounts = nullptr);

}  // namespace trackloom::engines::libburn

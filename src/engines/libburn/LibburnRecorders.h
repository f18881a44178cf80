#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engines/disc/DriveSurvey.h"
#include "engines/disc/Recorder.h"
#include "ports/DiscMounts.h"

namespace trackloom::engines::libburn {

/// What the drive at this node tells of itself. Takes as long as the drive does. Throws EngineError with words for the
/// user.
SeenDrive askDrive(const std::string& node);

/// Those of these drives that record, in their order; `mounts` unmounts what is in their way, where there is such a
/// service.
RecorderList recordersAmong(const std::vector<SeenDrive>& drives, const std::shared_ptr<DiscMounts>& mounts);

}  // namespace trackloom::engines::libburn

#pragma once

#include "engines/writer/IsoLibrary.h"

extern "C" {

/// A stream whose content these calls give, with data for them. The library frees it; null: no memory. What a stream is
/// made of its header shows to C alone, since a member has a name that C++ keeps for itself.
IsoStream* newIsoStream(IsoStreamIface* calls, void* data);
void* dataOfIsoStream(const IsoStream* stream);
}

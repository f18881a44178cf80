#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ports/Drives.h"

namespace trackloom::engines::drives {

/// Tells one mount from all others, for as long as both are there; 0: there is no such folder.
std::uint64_t mountOf(const std::string& folder);

/// The entries of a folder as the port lists them; empty where it cannot be read or lies in another mount.
std::vector<FindRecord> entriesOf(const std::string& folder, std::uint64_t mount);

}  // namespace trackloom::engines::drives

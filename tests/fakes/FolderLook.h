#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace trackloom::fakes {

/// The names of all that lies in a folder, in byte order.
std::vector<std::string> namesIn(const std::string& folder);
/// What `chmod` would say; of what is not there 0.
mode_t permissionsOf(const std::string& path);

}  // namespace trackloom::fakes

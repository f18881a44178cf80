#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ports/FileVersions.h"

namespace trackloom {

/// The version for a code that no table has, and the name of a version that none has.
inline constexpr std::string_view UnknownVersion = "unknown";

/// A file's version in the form of its table below.
std::string helpVersionText(const FileVersion& version);
std::string browserVersionText(const FileVersion& version);

/// The least version that a code of HHVerifyMinConfig asks for.
std::string_view leastHelpVersion(std::int32_t code);
std::string_view leastBrowserVersion(std::int32_t code);

/// The name under which people know a version.
std::string_view friendlyHelpName(std::string_view version);
std::string_view friendlyBrowserName(std::string_view version);

/// Versions compare as plain texts, whatever their case, and not by their numbers.
bool isAtLeast(std::string_view version, std::string_view least);

}  // namespace trackloom

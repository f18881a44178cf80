#pragma once

#include <map>
#include <string>
#include <string_view>

namespace trackloom::engines::helpfile {

/// The files of a compiled help file by their names, without the leading slash.
using ChmFiles = std::map<std::string, std::string>;

/// No file of ours comes near it, and whatever is larger is not read.
inline constexpr std::size_t LargestHelpFile = 32U << 20U;

/// The files that lie uncompressed in it, which are all of our own's. Throws Damaged; what it holds is never more than
/// LargestHelpFile.
ChmFiles readChm(std::string_view bytes);

/// The bytes of a help file that holds these, uncompressed: the same files give the same bytes. Throws
/// std::length_error for names that no directory holds.
std::string chmBytes(const ChmFiles& files);

}  // namespace trackloom::engines::helpfile

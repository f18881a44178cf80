#pragma once

#include <span>
#include <string>
#include <vector>

namespace trackloom::engines::writer {

/// A name wished for in a folder of a data image.
struct WishedName {
  std::string text;
  bool folder = false;
};

/// The names that the entries of one folder get, in the same order: valid UTF-8 of at most 64 characters of UCS-2,
/// without those that Joliet forbids (Joliet Recording Specification, "Handling of Unicode Character Set": control
/// characters and * / : ; ? \), and no two alike whatever their case. A name that fits as it is stays as it is; of
/// those that differ only in case the first does. Others are told apart by "~2", "~3" before the extension.
std::vector<std::string> imageNames(std::span<const WishedName> wished);

/// The volume label as the primary descriptor keeps it: at most 32 bytes of valid UTF-8, no character split.
std::string volumeLabel(const std::string& wished);

}  // namespace trackloom::engines::writer

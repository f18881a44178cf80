#include "model/TrackRow.h"

#include <algorithm>

#include "runtime/Text.h"

namespace trackloom {

namespace {

constexpr std::size_t LongestDiscName = 64;
constexpr std::size_t CutDiscName = 60;

}  // namespace

PathParts splitPathText(const std::string& path) {
  const auto separator = path.rfind(HostSep);
  if (separator == std::string::npos) return {};
  std::string name = path.substr(separator + 1);
  const std::size_t folder = std::max(Trim(path).size(), name.size()) - name.size();
  return {path.substr(0, folder), std::move(name), true};
}

std::string DiscName(const std::string& name) {
  return Len(name) <= LongestDiscName ? name : Left(name, CutDiscName) + ".mp3";
}

DiscPath DiscPathOf(const std::string& discFolder, const std::string& nameOnDisc) {
  return DiscPath((discFolder == NoFolder ? std::string() : discFolder) + DiscSep + nameOnDisc);
}

HostPath sourcePath(const ListView& listing, int row) {
  return HostPath(listing.SubItem(row, LocationColumn) + listing.Item(row).Text);
}

}  // namespace trackloom

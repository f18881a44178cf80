#include "app/DiscLooks.h"

#include <cstddef>
#include <string>
#include <utility>

namespace trackloom {

engines::discdb::ContentsOf contentsOf(engines::ReadingDrives drives) {
  return [drives = std::move(drives)](const std::string& letter) -> std::optional<engines::discdb::DiscContents> {
    const std::size_t place = letter.empty() ? drives.size() : static_cast<std::size_t>(letter.front() - 'D');
    if (place >= drives.size()) return std::nullopt;
    const auto found = drives[place]->contents();
    if (!found) return std::nullopt;
    engines::discdb::DiscContents contents;
    contents.leadOut = found->leadOut;
    for (const engines::ContentsTrack& track : found->tracks) contents.starts.push_back(track.start);
    contents.text = {found->text.disc.performer, found->text.disc.title, {}};
    for (const engines::DiscName& track : found->text.tracks) contents.text.titles.push_back(track.title);
    return contents;
  };
}

}  // namespace trackloom

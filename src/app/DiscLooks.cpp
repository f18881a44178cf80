#include "app/DiscLooks.h"

#include <cstddef>
#include <string>
#include <utility>

namespace trackloom {

engines::discdb::ContentsOf contentsOf(std::shared_future<engines::ReadingDrives> drives) {
  return [found = std::move(drives)](const std::string& letter) -> std::optional<engines::discdb::DiscContents> {
    const engines::ReadingDrives& all = found.get();
    const std::size_t place = letter.empty() ? all.size() : static_cast<std::size_t>(letter.front() - 'D');
    if (place >= all.size()) return std::nullopt;
    const auto told = all[place]->contents();
    if (!told) return std::nullopt;
    engines::discdb::DiscContents contents;
    contents.leadOut = told->leadOut;
    for (const engines::ContentsTrack& track : told->tracks) contents.starts.push_back(track.start);
    contents.text = {told->text.disc.performer, told->text.disc.title, {}};
    for (const engines::DiscName& track : told->text.tracks) contents.text.titles.push_back(track.title);
    return contents;
  };
}

}  // namespace trackloom

#include "engines/drives/Mounts.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <set>
#include <sstream>
#include <utility>

#include "runtime/MountTables.h"
#include "runtime/Paths.h"

namespace trackloom::engines::drives {

namespace {

std::vector<std::string> wordsOf(std::string_view line) {
  std::istringstream words{std::string(line)};
  return {std::istream_iterator<std::string>(words), {}};
}

bool readNumber(const std::string& word, int& number) {
  return std::from_chars(word.data(), word.data() + word.size(), number).ec == std::errc();
}

/// Six words, any number of optional ones, a dash, kind and source.
std::optional<Mount> readMount(std::string_view line) {
  constexpr std::size_t OptionalWords = 6;
  const std::vector<std::string> words = wordsOf(line);
  if (words.size() < OptionalWords) return std::nullopt;
  const auto dash = std::find(words.begin() + OptionalWords, words.end(), "-");
  if (words.end() - dash < 3) return std::nullopt;
  Mount mount{0, 0, words[2], unescaped(words[3]), unescaped(words[4]), dash[1], unescaped(dash[2])};
  if (!readNumber(words[0], mount.id) || !readNumber(words[1], mount.parent)) return std::nullopt;
  return mount;
}

/// The path is the folder or lies in it.
bool within(std::string_view path, std::string_view folder) {
  if (!path.starts_with(folder)) return false;
  return path.size() == folder.size() || folder.ends_with(HostSep) || path[folder.size()] == HostSep;
}

/// Where the top of `mount` is seen in `other`, which shows a folder around it; empty: nowhere.
std::string placeIn(const Mount& other, const Mount& mount) {
  if (other.device != mount.device || !within(mount.top, other.top)) return "";
  const std::string_view rest = std::string_view(mount.top).substr(other.top.size());
  if (rest.empty()) return other.place;
  return EnsureTrailingSep(other.place) + std::string(rest.starts_with(HostSep) ? rest.substr(1) : rest);
}

bool shows(const std::vector<Mount>& mounts, const Mount& other, const Mount& mount) {
  const std::string place = placeIn(other, mount);
  return !place.empty() && mountAt(mounts, place) == mountAt(mounts, other.place);
}

/// The mount that lies over the one of that number on the way to the path: its child with the shortest place.
const Mount* nextOver(const std::vector<Mount>& mounts, int below, std::string_view path) {
  const Mount* next = nullptr;
  for (const Mount& mount : mounts)
    if (mount.parent == below && within(path, mount.place) &&
        (next == nullptr || mount.place.size() < next->place.size()))
      next = &mount;
  return next;
}

/// What lies over a mount that this process does not see lies over none.
void forgetUnseenParents(std::vector<Mount>& mounts) {
  std::set<int> ids;
  for (const Mount& mount : mounts) ids.insert(mount.id);
  for (Mount& mount : mounts)
    if (mount.parent == mount.id || !ids.contains(mount.parent)) mount.parent = Mount::None;
}

}  // namespace

std::vector<Mount> readMounts(std::string_view mountinfo) {
  std::vector<Mount> mounts;
  std::istringstream lines{std::string(mountinfo)};
  for (std::string line; std::getline(lines, line);)
    if (std::optional<Mount> mount = readMount(line)) mounts.push_back(std::move(*mount));
  forgetUnseenParents(mounts);
  return mounts;
}

const Mount* mountAt(const std::vector<Mount>& mounts, std::string_view path) {
  const Mount* at = nullptr;
  while (const Mount* next = nextOver(mounts, at == nullptr ? Mount::None : at->id, path)) at = next;
  return at;
}

std::vector<Mount> distinctMounts(const std::vector<Mount>& mounts) {
  std::vector<Mount> candidates;
  for (const Mount& mount : mounts)
    if (mountAt(mounts, mount.place) == &mount) candidates.push_back(mount);
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const Mount& a, const Mount& b) { return a.top.size() < b.top.size(); });
  std::vector<Mount> distinct;
  for (const Mount& mount : candidates)
    if (std::none_of(distinct.begin(), distinct.end(), [&](const Mount& other) { return shows(mounts, other, mount); }))
      distinct.push_back(mount);
  std::sort(distinct.begin(), distinct.end(), [](const Mount& a, const Mount& b) { return a.place < b.place; });
  return distinct;
}

}  // namespace trackloom::engines::drives

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

std::optional<int> numberIn(const std::string& word) {
  int number{};
  if (std::from_chars(word.data(), word.data() + word.size(), number).ec != std::errc()) return std::nullopt;
  return number;
}

/// Six words, any number of optional ones, a dash, kind and source.
std::optional<Mount> readMount(std::string_view line) {
  constexpr std::ptrdiff_t FixedWords = 6;
  const std::vector<std::string> words = wordsOf(line);
  const auto dash = std::find(words.begin(), words.end(), "-");
  if (dash - words.begin() < FixedWords || words.end() - dash < 3) return std::nullopt;
  const std::optional<int> id = numberIn(words[0]);
  const std::optional<int> parent = numberIn(words[1]);
  if (!id || !parent) return std::nullopt;
  return Mount{*id, *parent, words[2], unescaped(words[3]), unescaped(words[4]), dash[1], unescaped(dash[2])};
}

/// The path is the folder or lies in it.
bool within(std::string_view path, std::string_view folder) {
  if (!path.starts_with(folder)) return false;
  return path.size() == folder.size() || folder.ends_with(HostSep) || path[folder.size()] == HostSep;
}

/// Where the top of `mount` is seen in `other`, which shows a folder around it.
std::optional<std::string> placeIn(const Mount& other, const Mount& mount) {
  if (other.device != mount.device || !within(mount.top, other.top)) return std::nullopt;
  const std::string_view rest = std::string_view(mount.top).substr(other.top.size());
  if (rest.empty()) return other.place;
  return EnsureTrailingSep(other.place) + std::string(rest.starts_with(HostSep) ? rest.substr(1) : rest);
}

bool shows(const std::vector<Mount>& mounts, const Mount& other, const Mount& mount) {
  const std::optional<std::string> place = placeIn(other, mount);
  return place && mountAt(mounts, *place) == mountAt(mounts, other.place);
}

/// The mount that lies over the one of that number on the way to the path: its child with the shortest place.
const Mount* nextOver(const std::vector<Mount>& mounts, int below, std::string_view path) {
  std::vector<const Mount*> over;
  for (const Mount& mount : mounts)
    if (mount.parent == below && within(path, mount.place)) over.push_back(&mount);
  const auto next = std::ranges::min_element(over, {}, [](const Mount* mount) { return mount->place.size(); });
  return next == over.end() ? nullptr : *next;
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
  std::ranges::stable_sort(candidates, {}, [](const Mount& mount) { return mount.top.size(); });
  std::vector<Mount> distinct;
  for (const Mount& mount : candidates)
    if (std::none_of(distinct.begin(), distinct.end(), [&](const Mount& other) { return shows(mounts, other, mount); }))
      distinct.push_back(mount);
  std::ranges::sort(distinct, {}, &Mount::place);
  return distinct;
}

}  // namespace trackloom::engines::drives

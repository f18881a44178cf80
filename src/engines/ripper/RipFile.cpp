#include "engines/ripper/RipFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "runtime/RuntimeError.h"

namespace trackloom::engines::ripper {

namespace {

/// NAME_MAX of Linux.
constexpr std::size_t longestName = 255;
/// As many as a disc has tracks, for several rips into one folder.
constexpr AsideNames asideNames{".trackloom-rip", 512};
/// The disk is set to work after so many bytes.
constexpr std::size_t syncEach = std::size_t{4} << 20;
constexpr unsigned char continuation = 0x80;

std::string_view nameOf(const HostPath& path) {
  return std::string_view(path.text).substr(path.text.rfind(HostSep) + 1);
}

std::string_view folderOf(const HostPath& path) {
  return std::string_view(path.text).substr(0, path.text.rfind(HostSep) + 1);
}

bool isThere(const HostPath& path) {
  struct stat status {};
  return ::lstat(path.text.c_str(), &status) == 0;
}

/// At most so many bytes, and no character of UTF-8 cut in two.
std::string_view cut(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return text;
  while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == continuation) --bytes;
  return text.substr(0, bytes);
}

/// "/music/Song.wav" becomes "/music/Song (2).wav".
HostPath numbered(const HostPath& path, int number) {
  const std::string_view name = nameOf(path);
  const std::size_t dot = std::min(name.rfind('.'), name.size());
  const std::string end = " (" + std::to_string(number) + ")" + std::string(name.substr(dot));
  const std::size_t room = longestName - std::min(longestName, end.size());
  return HostPath(std::string(folderOf(path)) + std::string(cut(name.substr(0, dot), room)) + end);
}

template <class Free>
HostPath firstFree(const HostPath& path, const Free& isFree) {
  for (int number = 2;; ++number) {
    HostPath other = numbered(path, number);
    if (isFree(other)) return other;
  }
}

bool leadsAstray(const std::string& path) {
  const std::filesystem::path parts(path);
  return std::ranges::any_of(parts, [](const auto& part) { return part == "." || part == ".."; });
}

bool canBeReplaced(const HostPath& target) {
  struct stat status {};
  if (::stat(target.text.c_str(), &status) != 0) return true;
  return S_ISREG(status.st_mode) && ::access(target.text.c_str(), W_OK) == 0;
}

/// The file system's troubles as the end of a track.
template <class Action>
auto attempt(std::int32_t code, const Action& action) {
  try {
    return action();
  } catch (const RuntimeError&) {
    throw TrackFailed{code};
  }
}

std::string_view textOf(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

HostPath RipNames::nameFor(const HostPath& wanted) {
  HostPath name = wanted;
  if (taken_.contains(wanted))
    name = firstFree(wanted, [this](const HostPath& other) { return !taken_.contains(other) && !isThere(other); });
  taken_.insert(name);
  return name;
}

void requireNameable(const HostPath& target) {
  const std::string_view name = nameOf(target);
  const bool possible = !name.empty() && name.size() <= longestName && target.text.find('\0') == std::string::npos;
  if (!possible || leadsAstray(target.text) || !canBeReplaced(target)) throw TrackFailed{status::cannotCreate};
}

RipFile::RipFile(const HostPath& target)
    : target_(target), aside_(attempt(status::cannotCreate, [&] {
        requireNameable(target);
        return AsideFile(target.text, asideNames);
      })) {}

void RipFile::requireRoom(std::int64_t bytes) const {
  std::error_code unknown;
  const auto space = std::filesystem::space(aside_.path(), unknown);
  if (!unknown && space.available < static_cast<std::uintmax_t>(bytes)) throw TrackFailed{status::cannotWrite};
}

void RipFile::append(std::span<const std::byte> bytes) {
  attempt(status::cannotWrite, [&] { aside_.write(textOf(bytes)); });
  unsynced_ += bytes.size();
  if (unsynced_ < syncEach) return;
  unsynced_ = 0;
  aside_.startSync();
}

void RipFile::putAtStart(std::span<const std::byte> bytes) {
  attempt(status::cannotWrite, [&] { aside_.writeAtStart(textOf(bytes)); });
}

void RipFile::complete() {
  attempt(status::cannotClose, [&] { aside_.sync(); });
}

HostPath RipFile::takeName(std::set<std::pair<std::uint64_t, std::uint64_t>>& made) {
  struct stat status {};
  if (::stat(target_.text.c_str(), &status) == 0 && made.contains({status.st_dev, status.st_ino}))
    target_ = firstFree(target_, [](const HostPath& other) { return !isThere(other); });
  aside_.setTarget(target_.text);
  attempt(status::cannotClose, [&] { aside_.takePlace(); });
  if (::stat(target_.text.c_str(), &status) == 0) made.insert({status.st_dev, status.st_ino});
  return target_;
}

}  // namespace trackloom::engines::ripper

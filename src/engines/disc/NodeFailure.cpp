#include "engines/disc/NodeFailure.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <vector>

#include "engines/disc/MountedAt.h"
#include "engines/disc/Sense.h"

namespace trackloom::engines {

namespace {

namespace fs = std::filesystem;

/// Of a folder that may go while it is listed, such as that of a process, what was heard until then.
std::vector<fs::path> entriesOf(const fs::path& folder) {
  std::vector<fs::path> all;
  std::error_code gone;
  for (fs::directory_iterator at(folder, gone), end; !gone && at != end; at.increment(gone)) all.push_back(at->path());
  return all;
}

bool isWithin(const std::string& path, const fs::path& link) {
  std::error_code gone;
  const std::string target = fs::read_symlink(link, gone).string();
  return target == path || target.starts_with(path + "/");
}

bool uses(const fs::path& process, const std::string& path) {
  if (isWithin(path, process / "cwd") || isWithin(path, process / "root") || isWithin(path, process / "exe"))
    return true;
  return std::ranges::any_of(entriesOf(process / "fd"), [&](const fs::path& file) { return isWithin(path, file); });
}

std::string nameOf(const fs::path& process) {
  std::string name;
  std::getline(std::ifstream(process / "comm") >> std::ws, name);
  return name + " (" + process.filename().string() + ")";
}

/// What a user without rights can do.
std::string rightsWords(const std::string& node) {
  return "you may not use the drive " + node +
         ": your account must belong to the group \"cdrom\" (sudo adduser YOUR-NAME cdrom, then log in anew)";
}

bool isProcess(const std::string& name) {
  return std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; }) && name != std::to_string(::getpid());
}

}  // namespace

std::string usersOf(const std::string& path) {
  std::vector<std::string> names;
  for (const fs::path& process : entriesOf("/proc"))
    if (isProcess(process.filename()) && uses(process, path)) names.push_back(nameOf(process));
  std::string all;
  for (std::size_t i = 0; i < names.size(); ++i)
    all += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + names[i];
  return all;
}

/// A mounted file system holds its drive alone.
EngineError driveInUse(const std::string& node, const std::string& said) {
  std::ifstream table("/proc/self/mounts");
  const std::string place = mountedAt(node, table);
  const std::string users = usersOf(place.empty() ? node : place);
  std::string words = "the drive " + node + " is in use by " + (users.empty() ? "another program" : users);
  if (!place.empty())
    words = "the disc in " + node + " is open as " + place + ": " +
            (users.empty() ? "unmount it first" : "close " + users + ", and unmount it");
  return deviceError(sense::busy, said.empty() ? words : words + " (" + said + ")");
}

EngineError cannotOpenNode(const std::string& node, int error) {
  if (error == EBUSY) return driveInUse(node, "");
  if (error == EACCES || error == EPERM) return {ErrorKind::Device, sense::notReady, rightsWords(node)};
  return {ErrorKind::Device, sense::notReady, "the drive " + node + " cannot be used: " + systemWords(error)};
}

}  // namespace trackloom::engines

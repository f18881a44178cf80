#include "shell/Rescue.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "layout/LayoutFile.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "runtime/Files.h"
#include "runtime/PrivateFiles.h"
#include "runtime/RuntimeError.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

constexpr std::string_view Mark = "Rescued ";
/// Leaves room for the words around it in the longest name that a folder takes, whatever the characters.
constexpr std::size_t LongestBase = 50;

/// All of a copy's name but its number.
std::string baseFor(const Session& session) {
  const std::string& file = session.mod.LayoutFileName;
  return std::string(Mark) + (file.empty() ? "layout" : Left(layoutName(file), LongestBase)) + " ";
}

/// The same, of a file that may be a copy.
std::optional<std::string> baseOf(const std::string& fileName) {
  const std::string name = layoutName(fileName);
  const std::string base = name.substr(0, name.find_last_not_of("0123456789") + 1);
  const bool isCopy = base.starts_with(Mark) && base.size() > Mark.size() && base.ends_with(' ') &&
                      base.size() < name.size() && layoutFileName(name) == fileName;
  return isCopy ? std::optional(base) : std::nullopt;
}

/// Numbers the names from 1 until `make` finds one free, which it answers with true; that name.
template <class Make>
std::string underFreeName(const std::string& base, Make&& make) {
  for (int number = 1;; ++number) {
    std::string name = base + std::to_string(number);
    if (make(layoutFileName(name))) return name;
  }
}

std::string copyInto(const std::string& folder, const std::string& base, const std::string& text) {
  return underFreeName(base, [&](const std::string& file) { return MakePrivateFile(HostPath(folder + file), text); });
}

/// The whole path of the copy; nothing: no refuge takes it.
std::optional<std::string> copyIntoRefuge(Session& session, const std::string& base, const std::string& text) {
  for (const HostPath& refuge : session.ports.process.refuges()) {
    const std::string folder = EnsureTrailingSep(refuge.text);
    std::string name;
    skipOnError([&] { name = copyInto(folder, base, text); });
    if (!name.empty()) return folder + layoutFileName(name);
  }
  return std::nullopt;
}

std::string copyOf(Session& session) {
  const std::string layouts = layoutsFolder(session);
  const std::string base = baseFor(session);
  const std::string text = layoutText(session);
  if (!FolderExists(HostPath(layouts))) skipOnError([&] { MakeFolder(HostPath(layouts)); });
  try {
    return copyInto(layouts, base, text);
  } catch (const RuntimeError&) {
    if (auto copy = copyIntoRefuge(session, base, text)) return *copy;
    throw;
  }
}

void bringHomeFrom(const std::string& refuge, const std::string& layouts) {
  for (const std::string& file : ListFiles(HostPath(refuge), ".mixl")) {
    const auto base = baseOf(file);
    if (!base) continue;
    const auto move = [&](const std::string& name) {
      return MovePrivateFile(HostPath(refuge + file), HostPath(layouts + name));
    };
    skipOnError([&] { underFreeName(*base, move); });
  }
}

}  // namespace

std::string rescueLayout(Session& session) {
  if (session.mod.LayoutSaved || session.frmListing().ListView1.Count() == 0) return {};
  std::string copy = copyOf(session);
  session.mod.LayoutSaved = true;
  return copy;
}

void bringRescuedHome(Session& session) {
  const std::string layouts = layoutsFolder(session);
  for (const HostPath& refuge : session.ports.process.refuges()) {
    std::error_code unknown;
    if (std::filesystem::equivalent(refuge.text, layouts, unknown)) continue;
    skipOnError([&] { bringHomeFrom(EnsureTrailingSep(refuge.text), layouts); });
  }
}

}  // namespace trackloom

#include "shell/UnhandledError.h"

#include "layout/LayoutFile.h"
#include "model/Layout.h"
#include "model/Session.h"
#include "runtime/Files.h"
#include "runtime/RuntimeError.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

/// Leaves room for the words around it in the longest name that a folder takes, whatever the characters.
constexpr std::size_t LongestBase = 50;

/// The first free name in the folder for a rescued copy of the open layout, without its extension.
std::string freeRescueName(const Session& session, const std::string& folder) {
  const std::string& file = session.mod.LayoutFileName;
  const std::string name = file.empty() ? "layout" : layoutName(file);
  const std::string base = "Rescued " + Left(name, LongestBase) + " ";
  int number = 1;
  while (FileExists(HostPath(folder + layoutFileName(base + std::to_string(number))))) ++number;
  return base + std::to_string(number);
}

/// The name of the copy that it makes.
std::string copyInto(Session& session, const std::string& folder) {
  std::string name = freeRescueName(session, folder);
  writeLayoutFile(session, HostPath(folder + layoutFileName(name)));
  return name;
}

/// The name of the copy among the layouts, or its whole path where it had to go elsewhere; empty where there was
/// nothing to save or it could not be.
std::string savedCopy(Session& session) {
  std::string saved;
  if (session.mod.LayoutSaved || session.frmListing().ListView1.Count() == 0) return saved;
  const std::string layouts = layoutsFolder(session);
  if (!FolderExists(HostPath(layouts))) skipOnError([&] { MakeFolder(HostPath(layouts)); });
  skipOnError([&] { saved = copyInto(session, layouts); });
  const std::string home = EnsureTrailingSep(HomeFolder().text);
  if (saved.empty()) skipOnError([&] { saved = home + layoutFileName(copyInto(session, home)); });
  return saved;
}

}  // namespace

void rescueLayout(Session& session, const RuntimeError& error) {
  const std::string copy = savedCopy(session);
  std::string text = "Run-time error '" + std::to_string(error.number()) + "':" + ParagraphBreak + error.description();
  if (!copy.empty()) text += ParagraphBreak + ("The open layout was saved as '" + copy + "'.");
  session.ask({"Trackloom", text, BoxButtons::Ok, BoxIcon::Critical});
}

void endWithError(Session& session, const RuntimeError& error) {
  rescueLayout(session, error);
  session.ports.process.end(1);
}

}  // namespace trackloom

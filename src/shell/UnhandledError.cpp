#include "shell/UnhandledError.h"

#include "layout/LayoutFile.h"
#include "model/Session.h"
#include "runtime/Files.h"
#include "runtime/RuntimeError.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

/// The first free name for a rescued copy of the open layout, without its extension.
std::string freeRescueName(Session& session) {
  const std::string& file = session.mod.LayoutFileName;
  const std::string base = "Rescued " + (file.empty() ? "layout" : Left(file, Len(file) - Len(LayoutExtension)));
  int number = 1;
  while (FileExists(layoutFilePath(session, base + " " + std::to_string(number)))) ++number;
  return base + " " + std::to_string(number);
}

/// The name under which the layout was saved; empty where there was nothing to save or it could not be.
std::string rescueLayout(Session& session) {
  std::string saved;
  if (session.mod.LayoutSaved || session.frmListing().ListView1.Count() == 0) return saved;
  skipOnError([&] {
    const std::string name = freeRescueName(session);
    writeLayoutFile(session, layoutFilePath(session, name));
    saved = name;
  });
  return saved;
}

}  // namespace

void endWithError(Session& session, const RuntimeError& error) {
  const std::string rescued = rescueLayout(session);
  std::string text = "Run-time error '" + std::to_string(error.number()) + "':" + ParagraphBreak + error.description();
  if (!rescued.empty()) text += ParagraphBreak + ("The open layout was saved as '" + rescued + "'.");
  session.ask({"Trackloom", text, BoxButtons::Ok, BoxIcon::Critical});
  session.ports.process.end(1);
}

}  // namespace trackloom

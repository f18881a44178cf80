#include "model/CommandStates.h"

#include <array>

#include "model/Layout.h"
#include "model/Session.h"

namespace trackloom {

namespace {

/// The four situations of the layout group, one column of the table each.
enum Situation : std::size_t { NoLayout, EmptyLayout, AudioTracks, Mp3Tracks };

struct Row {
  const char* tool;
  std::array<bool, 4> enabled;
};

constexpr bool on = true;
constexpr bool off = false;

// clang-format off
constexpr Row layoutGroup[] = {
    // tool               NoLayout Empty Audio MP3
    {"AddFiles",          {off,    on,   on,   on }},
    {"mnuActionsAdd",     {off,    on,   on,   on }},
    {"Search",            {off,    on,   on,   on }},
    {"mnuActionsSearch",  {off,    on,   on,   on }},
    {"mnuFileClose",      {off,    on,   on,   on }},
    {"mnuFileSave",       {off,    on,   on,   on }},
    {"mnuFileSaveAs",     {off,    on,   on,   on }},
    {"Record",            {off,    off,  on,   on }},
    {"mnuActionsRecord",  {off,    off,  on,   on }},
    {"Delete",            {off,    off,  on,   on }},
    {"mnuActionsDelete",  {off,    off,  on,   on }},
    {"Print",             {off,    off,  on,   on }},
    {"mnuFilePrint",      {off,    off,  on,   on }},
    {"mnuActionsPlay",    {off,    off,  on,   on }},
    {"CDFolder",          {off,    off,  off,  on }},
    {"mnuActionsFolder",  {off,    off,  off,  on }},
    {"mnuActionsCreate",  {off,    off,  off,  on }},
};
// clang-format on

constexpr const char* discGroup[] = {"mnuToolsInformation", "mnuToolsErase", "mnuFileWrite"};

Situation situationOf(Session& session) {
  if (!session.mod.LayoutOpen) return NoLayout;
  if (session.frmListing().ListView1.Count() == 0) return EmptyLayout;
  return isMp3Layout(session) ? Mp3Tracks : AudioTracks;
}

}  // namespace

void UpdateCommandStates(Session& session) {
  DockStudio& bars = session.frmListing().DockStudio1;
  const Situation situation = situationOf(session);
  for (const Row& row : layoutGroup) bars.tool(row.tool).Enabled = row.enabled[situation];

  const bool disc = session.frmListing().CDR1->MediaLoaded();
  for (const char* tool : discGroup) bars.tool(tool).Enabled = disc;
}

}  // namespace trackloom

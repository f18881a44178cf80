#pragma once

#include <cstdint>

namespace trackloom {

struct Session;

/// The topics of the help file, one for each dialog that has a Help button.
enum HelpTopic : std::int32_t {
  NewOptionTopic = 69,
  FilesTopic = 70,
  SaveTopic = 71,
  OptionsTopic = 74,
  DiskInfoTopic = 76,
  DefaultOptionsTopic = 79,
  FolderTopic = 80,
  OpenLayoutTopic = 81,
  EraseTopic = 82,
  ErrorTopic = 83,
  SearchTopic = 85,
  IsoTopic = 86,
  PrintListTopic = 88,
  RipMainTopic = 90,
  RipOptionsTopic = 91,
};

/// The help file lies in the program folder; where it does not, the user is told so.
bool HelpFileExists(Session& session);

/// Opens the help window at a topic, or at its contents. Blocks nothing.
void showHelpTopic(Session& session, HelpTopic topic);
void showHelpContents(Session& session);

}  // namespace trackloom

#pragma once

#include "ports/CDRipperX.h"
#include "ports/CDWriterXP.h"
#include "ports/CommonControls.h"
#include "ports/DiscDatabase.h"
#include "ports/Drives.h"
#include "ports/EventPump.h"
#include "ports/FileDialogs.h"
#include "ports/FileVersions.h"
#include "ports/FolderListing.h"
#include "ports/HelpEngine.h"
#include "ports/MP3EncoderX.h"
#include "ports/MessageBoxes.h"
#include "ports/Process.h"
#include "ports/Registry.h"
#include "ports/ShellOpener.h"
#include "ports/VSPrinter.h"
#include "runtime/Numbers.h"

namespace trackloom {

/// What a running program asks of the world. All of it outlives the program.
struct Ports {
  MessageBoxes& boxes;
  FileDialogs& files;
  FolderListing& folders;
  Drives& drives;
  EventPump& pump;
  Process& process;
  WriterEngines& writers;
  ShellOpener& opener;
  HelpEngine& help;
  PrintControls& prints;
  RipEngines& rippers;
  MP3Encoders& encoders;
  DiscDatabases& databases;
  CommonControls& commonControls;
  Registry& registry;
  FileVersions& fileVersions;
  Separators separators;
};

}  // namespace trackloom

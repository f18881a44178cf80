#pragma once

#include <memory>

#include "controls/FormHost.h"
#include "controls/FormSlot.h"
#include "model/Batch.h"
#include "model/ListingWindow.h"
#include "model/Ports.h"
#include "model/Trackloom50Mod1.h"
#include "model/frmImages.h"

namespace trackloom {

class HTMLHelp;

/// What every feature shares of one running program: the world, the shared state, and the main window as plain state.
struct Session {
  Session(FormHost& formHost, Ports worldPorts) : host(formHost), ports(std::move(worldPorts)) {}
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  FormHost& host;
  Ports ports;
  Trackloom50Mod1 mod;
  /// Set by the program before any feature runs.
  ListingWindow* mainWindow = nullptr;
  /// Here and not with the shell's forms, since every dialog of every feature takes its picture from it.
  FormSlot<class frmImages> frmImages{*this};

  /// Made at its first use.
  std::shared_ptr<HTMLHelp> htmlHelp;

  RunningBatches batches;
  /// The program is ending by force: nothing but its last boxes takes input any more.
  bool ending = false;

  ListingWindow& frmListing() { return *mainWindow; }
  BoxAnswer ask(const MessageBox& box) { return ports.boxes.show(box); }
};

}  // namespace trackloom

#pragma once

#include "controls/FormHost.h"
#include "model/ListingWindow.h"
#include "model/Ports.h"
#include "model/Trackloom50Mod1.h"

namespace trackloom {

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

  ListingWindow& frmListing() { return *mainWindow; }
  BoxAnswer ask(const MessageBox& box) { return ports.boxes.show(box); }
};

}  // namespace trackloom

#pragma once

#include "model/ListingWindow.h"
#include "shell/Commands.h"

namespace trackloom {

struct ProgramForms;
struct Session;

/// The main window's own handlers: its start, its first activation, its commands, and the close that ends the process.
class frmListing final : public ListingWindow {
 public:
  frmListing(Session& session, ProgramForms& forms, CDWriterEvents& writeEvents);

  /// The close sequence is past its question; nothing stops it any more.
  bool closing() const { return closing_; }
  /// The close sequence without its question, with this exit status; before the window stands nothing is stored.
  void closeUnasked(int status);

 private:
  void Load() override;
  void Activate() override;
  bool QueryUnload(CloseReason reason) override;
  void Unload() override;

  void connectEvents();
  void setAppFolder();
  void LoadDockLayout();
  void SaveDockLayout();
  void EnsureLayoutsFolder();
  void RestoreWindowPlacement();
  void saveBeforeClose();
  void store();
  void storePlacement();

  Session& session_;
  ProgramForms& forms_;
  Commands commands_;
  bool stands_ = false;
  bool closing_ = false;
};

}  // namespace trackloom

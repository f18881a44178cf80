#pragma once

#include <functional>
#include <memory>

#include "model/Session.h"
#include "shell/ProgramForms.h"
#include "shell/frmListing.h"
#include "writing/WriteProgress.h"

namespace trackloom {

class RuntimeError;

/// One running program: the shared state, every form, and the world it runs in. Nothing of it is static, so several can
/// live side by side in a test.
class Program {
 public:
  Program(FormHost& host, Ports ports);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// Shows the splash; everything else follows from its timer.
  void start();

  /// Runs what a window or an engine has to say to a form. An error that nobody handles ends the process.
  void run(const std::function<void()>& handler);

  /// Ends the process with this status where nobody can be asked any more: rescues the open layout, and stores what the
  /// close of the main window stores if that window stands.
  void endUnasked(int status);

  Session& session() { return session_; }
  ProgramForms& forms() { return forms_; }

 private:
  void fail(const RuntimeError& error);

  Session session_;
  ProgramForms forms_;
  WriteProgress writeProgress_;
  std::shared_ptr<frmListing> mainWindow_;
};

}  // namespace trackloom

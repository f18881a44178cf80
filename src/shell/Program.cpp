#include "shell/Program.h"

#include <exception>
#include <utility>

#include "runtime/RuntimeError.h"
#include "shell/UnhandledError.h"

namespace trackloom {

namespace {

/// The language's number for an error that only the program itself can be blamed for.
constexpr int InternalError = 51;

}  // namespace

Program::Program(FormHost& host, Ports ports)
    : session_(host, std::move(ports)),
      forms_{session_},
      writeProgress_(session_, forms_.writing),
      mainWindow_(std::make_shared<frmListing>(session_, forms_, writeProgress_)) {
  session_.mainWindow = mainWindow_.get();
}

Program::~Program() = default;

void Program::start() {
  forms_.shell.frmOpen->show();
}

void Program::run(const std::function<void()>& handler) {
  if (session_.ending) return;
  try {
    handler();
  } catch (const RuntimeError& error) {
    fail(error);
  } catch (const std::exception& error) {
    fail(RuntimeError(InternalError, std::string("Internal error: ") + error.what()));
  }
}

void Program::fail(const RuntimeError& error) {
  tellFatalError(session_, error);
  if (!mainWindow_->closing()) session_.ports.process.end(1);
  // The dialog in which it failed goes, and the close goes on.
  forms_.layout.frmSave.unload();
}

void Program::endUnasked(int status) {
  const bool fatal = session_.ending && !mainWindow_->closing();
  rescueUnasked(session_);
  if (fatal) session_.ports.process.end(1);
  mainWindow_->closeUnasked(status);
}

}  // namespace trackloom

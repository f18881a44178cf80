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

void Program::start() {
  forms_.shell.frmOpen->show();
}

void Program::run(const std::function<void()>& handler) {
  try {
    handler();
  } catch (const RuntimeError& error) {
    endWithError(session_, error);
  } catch (const std::exception& error) {
    endWithError(session_, RuntimeError(InternalError, std::string("Internal error: ") + error.what()));
  }
}

}  // namespace trackloom

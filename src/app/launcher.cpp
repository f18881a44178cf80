#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "launcher/OwnFolder.h"

/// The command that the package installs: brings up the user's own program folder and becomes the program in it. All it
/// needs is found from its own place, `bin` beside `lib` and `libexec`.

namespace {

namespace fs = std::filesystem;

bool hasDisplay() {
  return std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
}

/// In a window too where there is a display, since nobody reads what a menu's program writes.
void tell(const fs::path& teller, std::string words) {
  std::fprintf(stderr, "trackloom: %s\n", words.c_str());
  if (!hasDisplay()) return;
  std::string name = teller.filename();
  char* const arguments[] = {name.data(), words.data(), nullptr};
  pid_t window = 0;
  if (::posix_spawn(&window, teller.c_str(), nullptr, nullptr, arguments, environ) == 0) ::waitpid(window, nullptr, 0);
}

/// An upgrade that finds no room costs nobody the program that he has.
void run(const fs::path& place, char** arguments) {
  const trackloom::launcher::OwnFolder own(place / "lib/trackloom", trackloom::launcher::dataFolder() / "trackloom");
  try {
    own.bringUp();
  } catch (const trackloom::launcher::Trouble& trouble) {
    if (!own.canStart()) throw;
    tell(place / "libexec/trackloom/tell", trouble.what());
  }
  own.start(arguments);
}

}  // namespace

int main(int, char** argv) {
  fs::path place;
  try {
    place = fs::read_symlink("/proc/self/exe").parent_path().parent_path();
    run(place, argv);
  } catch (const std::exception& trouble) {
    tell(place / "libexec/trackloom/tell", trouble.what());
  }
  return 1;
}

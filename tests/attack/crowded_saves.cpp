// Saves onto a disk that is full at every possible byte, and looks at what is left.
// Usage: crowded-saves <bytes>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "runtime/Files.h"
#include "runtime/PrivateFiles.h"
#include "runtime/RuntimeError.h"

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The error number of the saves in a process whose files can have so many bytes; 0: none.
int saveWithin(const fs::path& folder, rlim_t room, const std::string& bytes) {
  const pid_t process = ::fork();
  if (process != 0) {
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{room, room};
  ::setrlimit(RLIMIT_FSIZE, &limit);
  int error = 0;
  const auto attempt = [&](auto&& save) {
    try {
      save();
    } catch (const trackloom::RuntimeError& failure) {
      error = failure.number();
    }
  };
  attempt([&] { trackloom::ReplaceFile(trackloom::HostPath(folder / "replaced"), bytes); });
  attempt([&] { trackloom::WriteStart(trackloom::HostPath(folder / "made"), bytes); });
  attempt([&] { trackloom::MakePrivateFile(trackloom::HostPath(folder / "rescued"), bytes); });
  ::_exit(error);
}

}  // namespace

int main(int argc, char** argv) {
  const auto size = static_cast<rlim_t>(argc > 1 ? std::atoi(argv[1]) : 100);
  std::string pattern = (fs::temp_directory_path() / "crowded-saves-XXXXXX").string();
  const fs::path folder = ::mkdtemp(pattern.data());
  const std::string bytes(size, 'n');
  int wrong = 0;
  for (rlim_t room = 0; room <= size; ++room) {
    fs::remove(folder / "made");
    fs::remove(folder / "rescued");
    std::ofstream(folder / "replaced", std::ios::binary) << "old";
    const bool fits = room == size;
    const int error = saveWithin(folder, room, bytes);
    const bool asDue = fits ? error == 0 && contentOf(folder / "replaced") == bytes &&
                                  contentOf(folder / "made") == bytes && contentOf(folder / "rescued") == bytes
                            : error == trackloom::RuntimeError::DiskFull && contentOf(folder / "replaced") == "old" &&
                                  std::distance(fs::directory_iterator(folder), {}) == 1;
    if (!asDue) ++wrong;
  }
  fs::remove_all(folder);
  std::cout << "attack: " << size + 1 << " disks, each full at another byte, " << wrong << " wrong ends\n";
  return wrong == 0 ? 0 : 1;
}

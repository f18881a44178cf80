// Kills a process that saves without a pause, at random moments, and looks at what it left.
// Usage: kill-saves <kills>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <thread>

#include "runtime/Files.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t LayoutSize = 100000;
constexpr std::size_t OptionsSize = 276;

/// Saves layouts of one letter each, and options that it makes anew each time, until it is killed.
[[noreturn]] void saveForEver(const fs::path& folder) {
  for (char letter = 'a';; letter = letter == 'z' ? 'a' : static_cast<char>(letter + 1)) {
    trackloom::ReplaceFile(trackloom::HostPath(folder / "layout"), std::string(LayoutSize, letter));
    fs::remove(folder / "options");
    trackloom::WriteStart(trackloom::HostPath(folder / "options"), std::string(OptionsSize, letter));
  }
}

bool isWhole(const fs::path& path, std::size_t size) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  return bytes.size() == size && bytes.find_first_not_of(bytes.front()) == std::string::npos;
}

void killAfter(pid_t process, std::chrono::microseconds delay) {
  std::this_thread::sleep_for(delay);
  ::kill(process, SIGKILL);
  ::waitpid(process, nullptr, 0);
}

}  // namespace

int main(int argc, char** argv) {
  const int kills = argc > 1 ? std::atoi(argv[1]) : 100;
  std::string pattern = (fs::temp_directory_path() / "kill-saves-XXXXXX").string();
  const fs::path folder = ::mkdtemp(pattern.data());
  trackloom::ReplaceFile(trackloom::HostPath(folder / "layout"), std::string(LayoutSize, 'o'));
  std::mt19937 random(std::random_device{}());
  int torn = 0;
  int left = 0;
  for (int kill = 0; kill < kills; ++kill) {
    const pid_t process = ::fork();
    if (process == 0) saveForEver(folder);
    killAfter(process, std::chrono::microseconds(random() % 20000));
    if (!isWhole(folder / "layout", LayoutSize)) ++torn;
    if (fs::exists(folder / "options") && !isWhole(folder / "options", OptionsSize)) ++torn;
    if (std::distance(fs::directory_iterator(folder), {}) > 2) ++left;
  }
  trackloom::ReplaceFile(trackloom::HostPath(folder / "layout"), "the last one");
  fs::remove(folder / "options");
  const auto strays = std::distance(fs::directory_iterator(folder), {}) - 1;
  fs::remove_all(folder);
  std::cout << "attack: " << kills << " kills, " << torn << " torn files, " << left
            << " times half a file beside them, " << strays << " left after the next save\n";
  return torn == 0 && strays == 0 ? 0 : 1;
}

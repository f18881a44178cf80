// A disc database on loopback for whoever drives the program from outside. It knows every disc, and says of each what
// stands in the file "entry"; while there is a file "silent" it says nothing. Its port comes out on standard output,
// every target that is asked for goes into the file "requests".
// Usage: disc-database <folder>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include "engines/discdb/DatabaseServer.h"

namespace {

using trackloom::engines::discdb::asksFor;
using trackloom::engines::discdb::DatabaseServer;

std::string bytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string discIn(const std::string& target) {
  const std::size_t command = target.find("query+") + 6;
  return target.substr(command, target.find('+', command) - command);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::filesystem::path folder = argv[1];
  const DatabaseServer server([&](DatabaseServer::Wire& wire, const std::string& target) {
    std::ofstream(folder / "requests", std::ios::app) << target << '\n';
    if (std::filesystem::exists(folder / "silent")) return wire.stayForEver();
    if (asksFor(target, "query")) return wire.answer("200 misc " + discIn(target) + " Of the tour\r\n");
    wire.answer("210 OK, CDDB database entry follows (until terminating marker)\r\n" + bytesOf(folder / "entry") +
                ".\r\n");
  });
  std::printf("%d\n", server.port());
  std::fflush(stdout);
  for (;;) std::this_thread::sleep_for(std::chrono::hours(1));
}

#include "fakes/FakeDatabase.h"

namespace trackloom::fakes {

FakeDatabase::FakeDatabase(RipperStage& stage) : stage_(stage) {}

FakeDatabase::~FakeDatabase() = default;

void FakeDatabase::ConfigureServer(const std::string& host, int port, int limit, const std::string& proxyHost,
                                   int proxyPort, const std::string& user, const std::string& password) {
  stage_.note("m_objCDDB.ConfigureServer", "(" + host + ", " + std::to_string(port) + ", " + std::to_string(limit) +
                                               ", \"" + proxyHost + "\", " + std::to_string(proxyPort) + ", \"" + user +
                                               "\", \"" + password + "\")");
}

void FakeDatabase::QueryDrive(int one, const std::string& letter, const std::string& first, const std::string& second) {
  stage_.note("m_objCDDB.QueryDrive",
              "(" + std::to_string(one) + ", " + letter + ", \"" + first + "\", \"" + second + "\")");
}

std::vector<DiscRecord> FakeDatabase::Matches() {
  stage_.note("m_objCDDB.Matches");
  return stage_.matches;
}

}  // namespace trackloom::fakes

#pragma once

#include <string>
#include <vector>

#include "fakes/RipperStage.h"
#include "ports/DiscDatabase.h"

namespace trackloom::fakes {

/// A disc database that knows what its stage tells it, whatever the disc.
class FakeDatabase final : public DiscDatabase {
 public:
  explicit FakeDatabase(RipperStage& stage) : stage_(stage) {}

  void ConfigureServer(const std::string& host, int port, int limit, const std::string& proxyHost, int proxyPort,
                       const std::string& user, const std::string& password) override {
    stage_.note("m_objCDDB.ConfigureServer", "(" + host + ", " + std::to_string(port) + ", " + std::to_string(limit) +
                                                 ", \"" + proxyHost + "\", " + std::to_string(proxyPort) + ", \"" +
                                                 user + "\", \"" + password + "\")");
  }
  void QueryDrive(int one, const std::string& letter, const std::string& first, const std::string& second) override {
    stage_.note("m_objCDDB.QueryDrive",
                "(" + std::to_string(one) + ", " + letter + ", \"" + first + "\", \"" + second + "\")");
  }
  std::vector<DiscRecord> Matches() override {
    stage_.note("m_objCDDB.Matches");
    return stage_.matches;
  }

 private:
  RipperStage& stage_;
};

}  // namespace trackloom::fakes

#pragma once

#include <string>
#include <vector>

#include "fakes/RipperStage.h"
#include "ports/DiscDatabase.h"

namespace trackloom::fakes {

/// A disc database that knows what its stage tells it, whatever the disc.
class FakeDatabase final : public DiscDatabase {
 public:
  explicit FakeDatabase(RipperStage& stage);
  ~FakeDatabase() override;

  void ConfigureServer(const std::string& host, int port, int limit, const std::string& proxyHost, int proxyPort,
                       const std::string& user, const std::string& password) override;
  void QueryDrive(int one, const std::string& letter, const std::string& first, const std::string& second) override;
  std::vector<DiscRecord> Matches() override;

 private:
  RipperStage& stage_;
};

}  // namespace trackloom::fakes

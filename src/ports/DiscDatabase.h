#pragma once

#include <memory>
#include <string>
#include <vector>

namespace trackloom {

struct DiscTrackRecord {
  std::string Title;
};

/// What the database knows of a disc, as it was entered there: untrimmed, any of it may be empty.
struct DiscRecord {
  std::string Artist;
  std::string Title;
  std::string Genre;
  std::string Year;
  /// In the order of the disc, data tracks included.
  std::vector<DiscTrackRecord> Tracks;
};

/// The database of discs. Every failure is a RuntimeError; each operation may take until its deadline.
class DiscDatabase {
 public:
  virtual ~DiscDatabase() = default;

  /// `limit` is in seconds. No proxy is used where its host is empty.
  virtual void ConfigureServer(const std::string& host, int port, int limit, const std::string& proxyHost,
                               int proxyPort, const std::string& user, const std::string& password) = 0;
  /// Asks for the disc in the drive of that letter.
  virtual void QueryDrive(int one, const std::string& letter, const std::string& first, const std::string& second) = 0;
  /// What the last query found, the best match first.
  virtual std::vector<DiscRecord> Matches() = 0;
};

/// Makes database clients, one for each ripper window.
class DiscDatabases {
 public:
  virtual ~DiscDatabases() = default;
  virtual std::unique_ptr<DiscDatabase> create() = 0;
};

}  // namespace trackloom

#include "engines/discdb/WebDatabases.h"

#include <optional>
#include <utility>

#include "engines/discdb/ByDeadline.h"
#include "engines/discdb/DiscId.h"
#include "engines/discdb/DiscNames.h"
#include "engines/discdb/LookUp.h"
#include "engines/discdb/PlainText.h"
#include "engines/discdb/Replies.h"
#include "engines/ground/EngineError.h"
#include "runtime/RuntimeError.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"

namespace trackloom::engines::discdb {

namespace {

/// "02": what a track is called that nobody has named.
std::string numberOf(std::size_t track) {
  return (track < 10 ? "0" : "") + std::to_string(track);
}

/// Tracks between named ones are often left out on a disc, as files without tags are.
void numberBlanks(std::vector<DiscTrackRecord>& tracks) {
  for (std::size_t at = 0; at < tracks.size(); ++at)
    if (Trim(tracks[at].Title).empty()) tracks[at].Title = numberOf(at + 1);
}

/// Nothing: the disc bears no name.
std::optional<DiscRecord> recordOf(const DiscText& text) {
  DiscRecord record;
  record.Artist = plainText(text.artist);
  record.Title = plainText(text.title);
  for (const std::string& title : text.titles) record.Tracks.push_back({plainText(title)});
  record.Tracks = withoutTail(std::move(record.Tracks));
  numberBlanks(record.Tracks);
  const bool bearsName = !Trim(record.Artist + record.Title).empty() || !record.Tracks.empty();
  return bearsName ? std::optional(record) : std::nullopt;
}

/// A disc, and what is known of it without the server.
struct KnownDisc {
  DiscContents contents;
  std::string id;
  std::vector<DiscRecord> matches;
};

KnownDisc look(const ContentsOf& contents, const DiscNames& names, const std::string& letter) {
  const auto disc = contents(letter);
  if (!disc) throw RuntimeError(RuntimeError::DeviceIoError, "There is no disc in drive " + letter);
  KnownDisc known{*disc, discId(*disc), {}};
  if (const auto kept = names.find(known.id))
    known.matches = {*kept};
  else if (const auto own = recordOf(disc->text))
    known.matches = {*own};
  return known;
}

class WebDatabase final : public DiscDatabase {
 public:
  WebDatabase(DiscServerSettings server, const HostPath& programFolder, ContentsOf contents, Patience& patience)
      : server_(std::move(server)), names_(programFolder), contents_(std::move(contents)), patience_(patience) {}

  void ConfigureServer(const std::string&, int, int limit, const std::string&, int, const std::string&,
                       const std::string&) override {
    limit_ = std::chrono::seconds(limit);
  }

  void QueryDrive(int, const std::string& letter, const std::string&, const std::string&) override {
    matches_.clear();
    try {
      query(letter);
    } catch (const RuntimeError&) {
      throw;
    } catch (const std::exception& error) {
      throw RuntimeError(RuntimeError::DeviceIoError, error.what());
    }
  }

  std::vector<DiscRecord> Matches() override { return matches_; }

 private:
  void query(const std::string& letter) {
    const auto deadline = std::chrono::steady_clock::now() + limit_;
    const KnownDisc disc = byDeadline(
        deadline, patience_, [contents = contents_, names = names_, letter] { return look(contents, names, letter); });
    matches_ = disc.matches;
    if (mayAsk(server_)) ask(disc, deadline);
  }

  void ask(const KnownDisc& disc, WebServer::Time deadline) {
    const auto found = byDeadline(deadline, patience_, [server = server_, names = names_, disc, deadline] {
      auto entry = lookUp(server, disc.contents, deadline);
      if (entry) skipOnError([&] { names.keep(disc.id, entry->reply); });
      return entry;
    });
    if (found) matches_ = {found->record};
  }

  DiscServerSettings server_;
  DiscNames names_;
  ContentsOf contents_;
  Patience& patience_;
  std::chrono::seconds limit_{0};
  std::vector<DiscRecord> matches_;
};

}  // namespace

WebDatabases::WebDatabases(DiscServerSettings server, const HostPath& programFolder, ContentsOf contents,
                           Patience& patience)
    : server_(std::move(server)), programFolder_(programFolder), contents_(std::move(contents)), patience_(patience) {}

std::unique_ptr<DiscDatabase> WebDatabases::create() {
  return std::make_unique<WebDatabase>(server_, programFolder_, contents_, patience_);
}

}  // namespace trackloom::engines::discdb

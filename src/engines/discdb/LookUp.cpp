#include "engines/discdb/LookUp.h"

#include <algorithm>
#include <utility>

#include "engines/discdb/DiscId.h"
#include "engines/discdb/Replies.h"

namespace trackloom::engines::discdb {

namespace {

/// A word of a command, which no sign within it can end.
bool isWord(const std::string& text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < '\x7F'; });
}

/// The two sides of an address; empty where it is none.
std::pair<std::string, std::string> sidesOf(const std::string& email) {
  constexpr std::size_t LongestAddress = 254;  // RFC 5321, 4.5.3.1.3
  const std::size_t at = email.rfind('@');
  if (at == std::string::npos || email.size() > LongestAddress) return {};
  return {email.substr(0, at), email.substr(at + 1)};
}

/// Words as they stand in a query, joined by the sign for a blank.
std::string joined(const std::string& command) {
  std::string query = percentEncoded(command);
  for (std::size_t at = query.find("%20"); at != std::string::npos; at = query.find("%20", at))
    query.replace(at, 3, "+");
  return query;
}

std::string queryOf(const std::string& command, const std::string& email) {
  const auto [user, place] = sidesOf(email);
  return "cmd=" + joined(command) + "&hello=" + joined(user + " " + place + " Trackloom 5.0") + "&proto=6";
}

}  // namespace

bool mayAsk(const DiscServerSettings& server) {
  const auto [user, place] = sidesOf(server.email);
  return isWord(user) && isWord(place);
}

std::optional<FoundEntry> lookUp(const DiscServerSettings& server, const DiscContents& disc, WebServer::Time deadline) {
  WebServer web(server.host, server.port, deadline);
  const auto ask = [&](const std::string& command) {
    return web.get("/~cddb/cddb.cgi", queryOf(command, server.email));
  };
  const auto place = firstMatch(ask(queryCommand(disc)));
  if (!place) return std::nullopt;
  std::string reply = ask("cddb read " + place->category + " " + place->id);
  DiscRecord record = entryOf(reply, place->category);
  return FoundEntry{std::move(record), std::move(reply)};
}

}  // namespace trackloom::engines::discdb

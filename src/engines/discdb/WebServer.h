#pragma once

#include <chrono>
#include <memory>
#include <string>

namespace trackloom::engines::discdb {

/// One server that is asked over HTTP (RFC 9110), by one thread at a time. All that it is asked ends at one deadline;
/// only this host is talked to, on this port, without a proxy and without anything of the environment or the user's
/// files.
class WebServer {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// No reply comes near this size in bytes; a longer one is a failure.
  static constexpr std::size_t longestReply = std::size_t{512} * 1024;

  /// Throws RuntimeError where this names no host.
  WebServer(const std::string& host, int port, Time deadline);
  ~WebServer();
  WebServer(const WebServer&) = delete;
  WebServer& operator=(const WebServer&) = delete;

  /// The body of the answer to a GET; `query` stands as it is to be sent. Throws RuntimeError: no answer by the
  /// deadline, one that is cut off, too long, no success, or leads elsewhere.
  std::string get(const std::string& path, const std::string& query);

 private:
  struct Connection;
  std::unique_ptr<Connection> connection_;
};

/// The text with every byte that means something in a query written as a number (RFC 3986, 2.1).
std::string percentEncoded(const std::string& text);

}  // namespace trackloom::engines::discdb

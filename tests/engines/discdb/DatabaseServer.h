#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace trackloom::engines::discdb {

/// A disc-database server of the tests' own on loopback. What it answers to each request, byte by byte, its script
/// says; nothing of it waits for longer than the server lives.
class DatabaseServer {
 public:
  /// The way back to who asked.
  class Wire {
   public:
    Wire(DatabaseServer& server, int socket) : server_(server), socket_(socket) {}

    /// False: nobody listens any more.
    bool send(std::string_view bytes);
    /// An answer with the status, its length and that body.
    void answer(std::string_view body, std::string_view status = "200 OK");
    void redirect(const std::string& target);
    /// False: the server ends.
    bool pause(std::chrono::milliseconds time);
    void stayForEver();

   private:
    DatabaseServer& server_;
    int socket_;
  };

  /// Answers one request, of which it gets the target ("/~cddb/cddb.cgi?cmd=...").
  using Script = std::function<void(Wire&, const std::string& target)>;

  explicit DatabaseServer(Script script);
  ~DatabaseServer();
  DatabaseServer(const DatabaseServer&) = delete;
  DatabaseServer& operator=(const DatabaseServer&) = delete;

  int port() const { return port_; }
  /// "127.0.0.1:4711".
  std::string place() const { return "127.0.0.1:" + std::to_string(port_); }
  /// Every request as it came, head and all.
  std::vector<std::string> requests();

 private:
  void acceptAll();
  void serve(int socket);

  Script script_;
  int listening_ = -1;
  int port_ = 0;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool ends_ = false;
  std::set<int> open_;
  std::vector<std::string> requests_;
  std::vector<std::thread> threads_;
  std::thread acceptor_;
};

/// Answers queries with `query` and reads with `read`.
DatabaseServer::Script answering(std::string query, std::string read);

/// Whether the target of a request asks for this command of the protocol.
bool asksFor(const std::string& target, const std::string& command);

}  // namespace trackloom::engines::discdb

#include "engines/discdb/DatabaseServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace trackloom::engines::discdb {

namespace {

/// A socket that listens on a port of its own; throws where the system has none.
int listeningSocket() {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 || ::listen(socket, 16) != 0)
    throw std::runtime_error("no port on loopback");
  return socket;
}

int portOf(int socket) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin_port);
}

/// The head of a request; empty: it did not come.
std::string requestFrom(int socket) {
  std::string request;
  std::array<char, 4096> buffer{};
  while (request.find("\r\n\r\n") == std::string::npos) {
    const ssize_t count = ::recv(socket, buffer.data(), buffer.size(), 0);
    if (count <= 0) return "";
    request.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return request;
}

std::string targetOf(const std::string& request) {
  const std::size_t begin = request.find(' ') + 1;
  return request.substr(begin, request.find(' ', begin) - begin);
}

}  // namespace

bool DatabaseServer::Wire::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

void DatabaseServer::Wire::answer(std::string_view body, std::string_view status) {
  send("HTTP/1.1 " + std::string(status) + "\r\nContent-Type: text/plain; charset=UTF-8\r\nContent-Length: " +
       std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n" + std::string(body));
}

void DatabaseServer::Wire::redirect(const std::string& target) {
  send("HTTP/1.1 302 Found\r\nLocation: " + target + "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
}

bool DatabaseServer::Wire::pause(std::chrono::milliseconds time) {
  std::unique_lock lock(server_.mutex_);
  return !server_.changed_.wait_for(lock, time, [this] { return server_.ends_; });
}

void DatabaseServer::Wire::stayForEver() {
  std::unique_lock lock(server_.mutex_);
  server_.changed_.wait(lock, [this] { return server_.ends_; });
}

DatabaseServer::DatabaseServer(Script script)
    : script_(std::move(script)), listening_(listeningSocket()), port_(portOf(listening_)) {
  acceptor_ = std::thread([this] { acceptAll(); });
}

DatabaseServer::~DatabaseServer() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
    changed_.notify_all();
    ::shutdown(listening_, SHUT_RDWR);
    for (const int socket : open_) ::shutdown(socket, SHUT_RDWR);
  }
  acceptor_.join();
  for (std::thread& thread : threads_) thread.join();
  ::close(listening_);
}

std::vector<std::string> DatabaseServer::requests() {
  const std::lock_guard lock(mutex_);
  return requests_;
}

void DatabaseServer::acceptAll() {
  for (;;) {
    const int socket = ::accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) return;
    const std::lock_guard lock(mutex_);
    if (ends_) ::shutdown(socket, SHUT_RDWR);
    open_.insert(socket);
    threads_.emplace_back([this, socket] { serve(socket); });
  }
}

void DatabaseServer::serve(int socket) {
  if (const std::string request = requestFrom(socket); !request.empty()) {
    {
      const std::lock_guard lock(mutex_);
      requests_.push_back(request);
    }
    Wire wire(*this, socket);
    script_(wire, targetOf(request));
  }
  const std::lock_guard lock(mutex_);
  open_.erase(socket);
  ::close(socket);
}

DatabaseServer::Script answering(std::string query, std::string read) {
  return [query = std::move(query), read = std::move(read)](DatabaseServer::Wire& wire, const std::string& target) {
    wire.answer(asksFor(target, "query") ? query : read);
  };
}

bool asksFor(const std::string& target, const std::string& command) {
  return target.find("cmd=cddb+" + command + "+") != std::string::npos;
}

}  // namespace trackloom::engines::discdb

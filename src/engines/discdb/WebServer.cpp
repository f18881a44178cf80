#include "engines/discdb/WebServer.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "engines/discdb/CurlLibrary.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::discdb {

namespace {

struct Freeing {
  void operator()(CURLU* address) const { curl().urlCleanup(address); }
  void operator()(CURL* transfer) const { curl().easyCleanup(transfer); }
  void operator()(char* text) const { curl().free(text); }
};
using Address = std::unique_ptr<CURLU, Freeing>;
using Transfer = std::unique_ptr<CURL, Freeing>;
using CurlText = std::unique_ptr<char, Freeing>;

[[noreturn]] void fail(const std::string& words) {
  throw RuntimeError(RuntimeError::DeviceIoError, words);
}

void set(const Address& address, CURLUPart part, const std::string& value) {
  if (curl().urlSet(address.get(), part, value.c_str(), 0) != CURLUE_OK)
    fail("\"" + value + "\" is no part of an address");
}

void setTarget(const Address& address, const std::string& path, const std::string& query) {
  set(address, CURLUPART_PATH, path);
  curl().urlSet(address.get(), CURLUPART_QUERY, nullptr, 0);
  if (!query.empty()) set(address, CURLUPART_QUERY, query);
}

/// Empty: the address has no such part.
std::string part(const Address& address, CURLUPart which) {
  char* text = nullptr;
  if (curl().urlGet(address.get(), which, &text, CURLU_DEFAULT_PORT) != CURLUE_OK) return "";
  return CurlText(text).get();
}

std::string lowerCase(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

bool isSameHost(const Address& one, const Address& other) {
  return part(one, CURLUPART_SCHEME) == part(other, CURLUPART_SCHEME) &&
         lowerCase(part(one, CURLUPART_HOST)) == lowerCase(part(other, CURLUPART_HOST)) &&
         part(one, CURLUPART_PORT) == part(other, CURLUPART_PORT);
}

}  // namespace

struct WebServer::Connection {
  Transfer transfer{curl().easyInit()};
  Address address{curl().url()};
  Time deadline;
  std::string body;
  std::size_t headerBytes = 0;

  template <class Value>
  void option(CURLoption name, Value value) {
    if (curl().easySetopt(transfer.get(), name, value) != CURLE_OK) fail("The web library lacks what is needed");
  }

  static std::size_t hear(const char* bytes, std::size_t size, std::size_t count, void* context);
  static std::size_t passHeader(const char* bytes, std::size_t size, std::size_t count, void* context);
  void keepToTheServer();
  void hearReplies();
  void beginTurn();
  /// Where the answer leads; nothing: it is the one.
  std::optional<std::string> turn();
  void follow(const std::string& target);
};

std::size_t WebServer::Connection::hear(const char* bytes, std::size_t size, std::size_t count, void* context) {
  auto& body = static_cast<Connection*>(context)->body;
  if (body.size() + size * count > longestReply) return 0;
  body.append(bytes, size * count);
  return size * count;
}

std::size_t WebServer::Connection::passHeader(const char* /*bytes*/, std::size_t size, std::size_t count,
                                              void* context) {
  auto& bytes = static_cast<Connection*>(context)->headerBytes;
  bytes += size * count;
  return bytes > longestReply ? 0 : size * count;
}

// The library's own ways out are shut one by one, since some are open unless told otherwise.
void WebServer::Connection::keepToTheServer() {
  option(CURLOPT_PROXY, "");
  option(CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
  option(CURLOPT_PROTOCOLS_STR, "http");
  option(CURLOPT_FOLLOWLOCATION, 0L);
  option(CURLOPT_NOSIGNAL, 1L);
  // A name that nobody resolves keeps its thread; it is not waited for.
  option(CURLOPT_QUICK_EXIT, 1L);
  option(CURLOPT_USERAGENT, "Trackloom/5.0");
}

void WebServer::Connection::hearReplies() {
  option(CURLOPT_WRITEFUNCTION, &hear);
  option(CURLOPT_WRITEDATA, this);
  option(CURLOPT_HEADERFUNCTION, &passHeader);
  option(CURLOPT_HEADERDATA, this);
}

void WebServer::Connection::beginTurn() {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
  if (left <= 0) fail("The disc database has not answered in time");
  option(CURLOPT_TIMEOUT_MS, static_cast<long>(left));
  option(CURLOPT_CURLU, address.get());
  body.clear();
  headerBytes = 0;
}

std::optional<std::string> WebServer::Connection::turn() {
  beginTurn();
  const CURLcode result = curl().easyPerform(transfer.get());
  if (result != CURLE_OK) fail(std::string("The disc database: ") + curl().easyStrerror(result));
  long status = 0;
  curl().easyGetinfo(transfer.get(), CURLINFO_RESPONSE_CODE, &status);
  const char* target = nullptr;
  curl().easyGetinfo(transfer.get(), CURLINFO_REDIRECT_URL, &target);
  if (target != nullptr) return target;
  constexpr long Success = 200;
  if (status != Success) fail("The disc database answered with status " + std::to_string(status));
  return std::nullopt;
}

void WebServer::Connection::follow(const std::string& target) {
  Address next{curl().url()};
  set(next, CURLUPART_URL, target);
  if (!isSameHost(address, next)) fail("The disc database leads to another server");
  setTarget(address, part(next, CURLUPART_PATH), part(next, CURLUPART_QUERY));
}

WebServer::WebServer(const std::string& host, int port, Time deadline) : connection_(std::make_unique<Connection>()) {
  if (!connection_->transfer || !connection_->address) fail("There is no memory for the disc database");
  connection_->deadline = deadline;
  set(connection_->address, CURLUPART_SCHEME, "http");
  set(connection_->address, CURLUPART_HOST, host);
  set(connection_->address, CURLUPART_PORT, std::to_string(port));
  connection_->keepToTheServer();
  connection_->hearReplies();
}

WebServer::~WebServer() = default;

std::string WebServer::get(const std::string& path, const std::string& query) {
  constexpr int MostTurns = 5;
  setTarget(connection_->address, path, query);
  for (int turns = 0; turns < MostTurns; ++turns) {
    const auto target = connection_->turn();
    if (!target) return std::move(connection_->body);
    connection_->follow(*target);
  }
  fail("The disc database leads in circles");
}

std::string percentEncoded(const std::string& text) {
  const CurlText encoded(curl().easyEscape(nullptr, text.c_str(), static_cast<int>(text.size())));
  if (!encoded) fail("There is no memory for the disc database");
  return encoded.get();
}

}  // namespace trackloom::engines::discdb

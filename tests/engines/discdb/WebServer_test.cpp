#include "engines/discdb/WebServer.h"

#include <stdlib.h>

#include <catch2/catch.hpp>
#include <string>
#include <string_view>

#include "engines/discdb/DatabaseServer.h"
#include "engines/discdb/HangingNames.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::discdb {

namespace {

using Wire = DatabaseServer::Wire;
using std::chrono::milliseconds;

constexpr milliseconds Long{60000};
constexpr milliseconds Short{200};

WebServer::Time in(milliseconds time) {
  return std::chrono::steady_clock::now() + time;
}

std::string got(WebServer& web) {
  try {
    return web.get("/a", "b=c");
  } catch (const RuntimeError& error) {
    return "failed: " + error.description();
  }
}

/// What one request to a server of that script brings.
std::string got(DatabaseServer::Script script, milliseconds time = Long) {
  const DatabaseServer server(std::move(script));
  WebServer web("127.0.0.1", server.port(), in(time));
  return got(web);
}

bool failed(const std::string& answer) {
  return answer.starts_with("failed: ");
}

/// Sends these bytes and hangs up.
DatabaseServer::Script saying(const std::string& bytes) {
  return [bytes](Wire& wire, const std::string&) { wire.send(bytes); };
}

std::string lineOf(const std::string& request, const std::string& name) {
  const std::size_t begin = request.find("\r\n" + name) + 2;
  return request.substr(begin, request.find("\r\n", begin) - begin);
}

/// A variable of the environment, for as long as it lives.
class Variable {
 public:
  Variable(const char* name, const std::string& value) : name_(name) { ::setenv(name, value.c_str(), 1); }
  ~Variable() { ::unsetenv(name_); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
};

}  // namespace

TEST_CASE("An answer's body is had as it is, whatever its bytes") {
  const std::string body("200\0\xFF\r\n.\r\n", 10);
  DatabaseServer server([&](Wire& wire, const std::string&) { wire.answer(body); });
  WebServer web("127.0.0.1", server.port(), in(Long));
  CHECK(got(web) == body);
  CHECK(web.get("/second", "") == body);
  REQUIRE(server.requests().size() == 2);
  CHECK(server.requests()[0].starts_with("GET /a?b=c HTTP/1.1\r\n"));
  CHECK(lineOf(server.requests()[0], "Host:") == "Host: " + server.place());
  CHECK(lineOf(server.requests()[0], "User-Agent:") == "User-Agent: Trackloom/5.0");
  CHECK(server.requests()[0].find("Authorization") == std::string::npos);
}

TEST_CASE("Bodies in pieces and without a length are whole bodies") {
  CHECK(got(saying("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nab\r\n3\r\ncde\r\n0\r\n\r\n")) ==
        "abcde");
  CHECK(got(saying("HTTP/1.0 200 OK\r\n\r\nabc")) == "abc");
  CHECK(got(saying("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nabcde")) == "ab");
  CHECK(got(saying("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nab")) == "ab");
  // A head that is cut off has an empty body, which is no reply of any protocol.
  CHECK(got(saying("HTTP/1.1 200 OK\r\n")).empty());
}

TEST_CASE("Answers that are no whole success are failures") {
  const std::vector<std::string> answers{
      "",
      "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc",
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nabc",
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nabc",
      "HTTP/1.1 500 Internal Server Error\r\nContent-Length: 3\r\n\r\nabc",
      "HTTP/1.1 404 Not Found\r\nContent-Length: 3\r\n\r\nabc",
      "HTTP/1.1 204 No Content\r\n\r\n",
      "HTTP/1.1 302 Found\r\nContent-Length: 3\r\n\r\nabc",
      "200 rock 940aac0d A / B\r\n",
      std::string("\0\xFF\xFE\x80\r\n\r\n", 8),
  };
  for (const std::string& answer : answers) {
    INFO(answer);
    CHECK(failed(got(saying(answer))));
  }
}

TEST_CASE("An answer that is too long is given up, in its body and in its head") {
  const std::string most(WebServer::longestReply, 'x');
  CHECK(got([&](Wire& wire, const std::string&) { wire.answer(most); }) == most);
  CHECK(failed(got([&](Wire& wire, const std::string&) { wire.answer(most + "x"); })));
  CHECK(failed(got(saying("HTTP/1.0 200 OK\r\n\r\n" + std::string(10000000, 'x')))));
  std::string head = "HTTP/1.1 200 OK\r\n";
  for (int line = 0; line < 1000; ++line) head += "X: " + std::string(1000, 'x') + "\r\n";
  CHECK(failed(got(saying(head + "Content-Length: 2\r\n\r\nab"))));
}

TEST_CASE("A server that keeps silent, breaks off without hanging up, or drips, is given up at the deadline") {
  const std::vector<DatabaseServer::Script> scripts{
      [](Wire& wire, const std::string&) { wire.stayForEver(); },
      [](Wire& wire, const std::string&) {
        wire.send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc");
        wire.stayForEver();
      },
      [](Wire& wire, const std::string&) {
        wire.send("HTTP/1.1 200 OK\r\n\r\n");
        while (wire.send("x") && wire.pause(milliseconds(20))) continue;
      },
      [](Wire& wire, const std::string&) {
        wire.send("HTTP/1.1 200 OK\r\n");
        while (wire.send("X: y\r\n") && wire.pause(milliseconds(20))) continue;
      },
      [](Wire& wire, const std::string&) {
        while (wire.send("HTTP/1.1 100 Continue\r\n\r\n") && wire.pause(milliseconds(20))) continue;
      },
  };
  for (const DatabaseServer::Script& script : scripts) CHECK(failed(got(script, Short)));
}

TEST_CASE("The words of a failure tell a status from a server elsewhere and from one without end") {
  CHECK(got(saying("HTTP/1.1 503 Busy\r\nContent-Length: 0\r\n\r\n")) ==
        "failed: The disc database answered with status 503");
  CHECK(got([](Wire& wire, const std::string&) { wire.redirect("http://elsewhere.invalid/x"); }) ==
        "failed: The disc database leads to another server");
  CHECK(got([](Wire& wire, const std::string&) { wire.redirect("/again"); }) ==
        "failed: The disc database leads in circles");
}

TEST_CASE("The deadline is one for all requests, and behind it nothing is sent") {
  DatabaseServer server([](Wire& wire, const std::string&) { wire.answer("ab"); });
  WebServer web("127.0.0.1", server.port(), in(milliseconds(0)));
  CHECK(failed(got(web)));
  CHECK(failed(got(web)));
  CHECK(server.requests().empty());
}

TEST_CASE("A name that nobody resolves is given up at the deadline, and others are resolved meanwhile") {
  WebServer hanging(hangingName, 80, in(Short));
  CHECK(failed(got(hanging)));
  const DatabaseServer server([](Wire& wire, const std::string&) { wire.answer("ab"); });
  WebServer web("localhost", server.port(), in(Long));
  CHECK(got(web) == "ab");
}

TEST_CASE("A redirect is followed on the same server, a few times") {
  int turns = 0;
  DatabaseServer server([&](Wire& wire, const std::string& target) {
    if (turns-- > 0) return wire.redirect(turns == 0 ? "/there?x=y" : target);
    wire.answer(target);
  });
  const auto answerBehind = [&](int count) {
    turns = count;
    WebServer web("127.0.0.1", server.port(), in(Long));
    return got(web);
  };
  CHECK(answerBehind(0) == "/a?b=c");
  CHECK(answerBehind(1) == "/there?x=y");
  CHECK(answerBehind(4) == "/there?x=y");
  CHECK(failed(answerBehind(5)));
  CHECK(failed(answerBehind(1000)));
}

TEST_CASE("A redirect's full address is followed where it names the same server in its own way") {
  DatabaseServer server([&](Wire& wire, const std::string& target) {
    if (target == "/there") return wire.answer("ab");
    // Its own words are no part of the answer.
    wire.send("HTTP/1.1 301 Moved Permanently\r\nContent-Length: 5\r\nLocation: HTTP://127.0.0.1:" +
              std::to_string(server.port()) + "/there\r\n\r\nMoved");
  });
  WebServer web("127.0.0.1", server.port(), in(Long));
  CHECK(got(web) == "ab");
}

TEST_CASE("A server's name is the same in small letters and in capital ones") {
  DatabaseServer server([&](Wire& wire, const std::string& target) {
    if (target == "/there") return wire.answer("ab");
    wire.redirect("http://LocALhoST:" + std::to_string(server.port()) + "/there");
  });
  WebServer web("lOCalHOst", server.port(), in(Long));
  CHECK(got(web) == "ab");
}

TEST_CASE("A redirect to anywhere else is a failure, and nobody there is asked") {
  DatabaseServer other([](Wire& wire, const std::string&) { wire.answer("other"); });
  const std::vector<std::string> targets{
      "http://" + other.place() + "/a?b=c",
      "http://localhost:" + std::to_string(other.port()) + "/",
      "//" + other.place() + "/",
      "ftp://" + other.place() + "/",
      "https://" + other.place() + "/",
      "file:///etc/passwd",
      "http://127.0.0.2:" + std::to_string(other.port()) + "/",
      "gopher://" + other.place() + "/x",
      "http://",
  };
  for (const std::string& target : targets) {
    INFO(target);
    CHECK(failed(got([&](Wire& wire, const std::string&) { wire.redirect(target); })));
  }
  CHECK(other.requests().empty());
}

TEST_CASE("A name and a password in a redirect are not sent on") {
  DatabaseServer server([&](Wire& wire, const std::string& target) {
    if (target == "/there") return wire.answer("ab");
    wire.redirect("http://name:secret@" + server.place() + "/there");
  });
  WebServer web("127.0.0.1", server.port(), in(Long));
  CHECK(got(web) == "ab");
  for (const std::string& request : server.requests()) CHECK(request.find("Authorization") == std::string::npos);
}

TEST_CASE("No proxy is used, whatever the environment says") {
  DatabaseServer proxy([](Wire& wire, const std::string&) { wire.answer("proxy"); });
  const std::string place = "http://" + proxy.place();
  const Variable small("http_proxy", place);
  const Variable all("ALL_PROXY", place);
  const Variable smallAll("all_proxy", place);
  CHECK(got([](Wire& wire, const std::string&) { wire.answer("ab"); }) == "ab");
  CHECK(proxy.requests().empty());
}

TEST_CASE("A server that is not there, and words that name none, are failures") {
  int port = 0;
  {
    const DatabaseServer gone([](Wire&, const std::string&) {});
    port = gone.port();
  }
  WebServer web("127.0.0.1", port, in(Long));
  CHECK(failed(got(web)));
  for (const char* host : {"", " ", "a b", "a/b", "a:80", "a?b", "a#b", "user@a", "a\nb", "http://a"}) {
    INFO(host);
    CHECK_THROWS_AS(WebServer(host, 80, in(Long)), RuntimeError);
  }
  CHECK_THROWS_AS(WebServer("127.0.0.1", 65536, in(Long)), RuntimeError);
}

TEST_CASE("Signs that mean something in a query are written as numbers") {
  CHECK(percentEncoded("joe&cmd=x+y z%/?#\xC3\xA9~a-b_c.d") == "joe%26cmd%3Dx%2By%20z%25%2F%3F%23%C3%A9~a-b_c.d");
  CHECK(percentEncoded("").empty());
}

}  // namespace trackloom::engines::discdb

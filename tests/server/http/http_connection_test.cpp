// One connection, whose bytes and moments the test gives.

#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

#include <gtest/gtest.h>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>

#include "server/http/http_connection.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

namespace asio = boost::asio;
using asio::ip::tcp;

class GivenConnection final : public HttpConnection {
 public:
  GivenConnection(FrontParts& parts, tcp::socket& socket)
      : HttpConnection(parts, socket, asio::ip::make_address("127.0.0.1")), socket_(socket) {}
  void start() override { beginFirstRequest(); }
  void arrive(const std::string& bytes) {
    std::memcpy(into_.data(), bytes.data(), bytes.size());
    received({}, bytes.size());
  }

 private:
  void startReading(asio::mutable_buffer into) override { into_ = into; }
  void startWriting(const std::array<asio::const_buffer, 2>&) override {}
  asio::any_io_executor executor() override { return socket_.get_executor(); }

  tcp::socket& socket_;
  asio::mutable_buffer into_;
};

/// What a front has around its connections, and the ends of one of them.
class HttpConnectionTest : public testing::Test {
 protected:
  HttpConnectionTest() {
    socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends_);
    socket.assign(tcp::v4(), ends_[0]);
  }
  ~HttpConnectionTest() override { close(ends_[1]); }

  /// Whether the server has ended the connection.
  bool isEnded() {
    char byte = 0;
    return recv(ends_[1], &byte, 1, MSG_DONTWAIT) == 0;
  }

  DeskLibrary library{"sqlite"};
  HttpLimits limits;
  asio::io_context loop;
  asio::executor_work_guard<asio::io_context::executor_type> open{loop.get_executor()};
  tcp::socket socket{loop};

 private:
  Clients clients_{std::vector<std::string>()};
  Metrics metrics_{[] { return Metrics::Load(); }};
  Routes routes_{library.runner(), metrics_};
  OpenConnections connections_;
  Workers workers_{1, 10};
  Handshakes handshakes_{0};
  int ends_[2] = {};

 protected:
  FrontParts parts{limits,   clients_, routes_,  metrics_,     workers_,
                   workers_, workers_, workers_, connections_, handshakes_};
};

TEST_F(HttpConnectionTest, TheTimeOfARequestIsNotCountedAnewAfterTheLookAtItsSender) {
  const auto connection = std::make_shared<GivenConnection>(parts, socket);
  connection->start();
  connection->arrive("POST /v1/request/GETLOCS HTTP/1.1\r\nRequest-Id: 1\r\nAuthorization: Bearer " +
                     library.token("desk") + "\r\nContent-Length: 200000\r\n\r\n");
  const auto arrived = HttpConnection::Clock::now();
  loop.run_one();  // the worker says that the sender is known
  connection->endIfLate(arrived);
  EXPECT_FALSE(isEnded());
  connection->endIfLate(arrived + limits.request);
  EXPECT_TRUE(isEnded());
}

}  // namespace
}  // namespace vantry::server

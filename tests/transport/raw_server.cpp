#include "transport/raw_server.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace vantry::test {

RawServer::RawServer() : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (::bind(listener_, generic, size) != 0 || ::listen(listener_, 8) != 0 ||
      ::getsockname(listener_, generic, &size) != 0)
    throw std::runtime_error("the test's server cannot listen");
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { serve(); });
}

RawServer::~RawServer() {
  ended_ = true;
  ::shutdown(listener_, SHUT_RDWR);
  if (open_ >= 0) ::shutdown(open_, SHUT_RDWR);
  thread_.join();
  ::close(listener_);
}

void RawServer::says(std::string bytes, After after) {
  const std::lock_guard lock(mutex_);
  turns_.push_back({std::move(bytes), after});
}

void RawServer::answers(int status, const std::string& body, After after) {
  says("HTTP/1.1 " + std::to_string(status) +
           " Status\r\nContent-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\n\r\n" + body,
       after);
}

std::vector<std::string> RawServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

void RawServer::serve() {
  while (!ended_) {
    const int connection = ::accept(listener_, nullptr, nullptr);
    if (connection < 0) break;
    open_ = connection;
    ++connections_;
    serveConnection(connection);
    open_ = -1;
    ::close(connection);
  }
}

void RawServer::serveConnection(int connection) {
  for (;;) {
    const std::string request = readRequest(connection);
    if (request.empty()) return;
    {
      const std::lock_guard lock(mutex_);
      requests_.push_back(request);
    }
    if (!takeTurn(connection)) return;
  }
}

bool RawServer::takeTurn(int connection) {
  Turn turn{{}, After::HangUp};
  {
    const std::lock_guard lock(mutex_);
    if (!turns_.empty()) {
      turn = std::move(turns_.front());
      turns_.pop_front();
    }
  }
  ::send(connection, turn.bytes.data(), turn.bytes.size(), MSG_NOSIGNAL);
  if (turn.after == After::Hold) {
    char ignored = 0;
    while (::recv(connection, &ignored, 1, 0) > 0) {
    }
  }
  return turn.after == After::Keep;
}

std::string RawServer::readRequest(int connection) {
  std::string request;
  std::size_t whole = std::string::npos;
  char buffer[4096];
  while (request.size() < whole) {
    const auto count = ::recv(connection, buffer, sizeof buffer, 0);
    if (count <= 0) return {};
    request.append(buffer, static_cast<std::size_t>(count));
    const auto headEnd = request.find("\r\n\r\n");
    if (headEnd == std::string::npos) continue;
    const auto length = request.find("Content-Length: ");
    whole = headEnd + 4;
    if (length < headEnd) whole += std::strtoul(request.c_str() + length + 16, nullptr, 10);
  }
  return request;
}

}  // namespace vantry::test

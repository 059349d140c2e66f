#include "support/server_raw_line.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

namespace vantry::server::test {

namespace {

sockaddr_in addressOf(const std::string& host, int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  inet_pton(AF_INET, host.c_str(), &address.sin_addr);
  return address;
}

}  // namespace

RawLine::RawLine(int port, const std::string& from) : line_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  const timeval longest{.tv_sec = 20, .tv_usec = 0};
  setsockopt(line_, SOL_SOCKET, SO_RCVTIMEO, &longest, sizeof longest);
  const sockaddr_in here = addressOf(from, 0);
  const sockaddr_in there = addressOf("127.0.0.1", port);
  if (bind(line_, reinterpret_cast<const sockaddr*>(&here), sizeof here) != 0 ||
      connect(line_, reinterpret_cast<const sockaddr*>(&there), sizeof there) != 0) {
    close(line_);
    throw std::runtime_error("no connection to port " + std::to_string(port));
  }
}

RawLine::~RawLine() {
  close(line_);
}

bool RawLine::send(const std::string& bytes) {
  return ::send(line_, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
}

std::string RawLine::readUntil(const std::string& text) {
  std::string all;
  char part[4096];
  while (all.find(text) == std::string::npos) {
    const ssize_t got = read(line_, part, sizeof part);
    if (got <= 0) return got < 0 && errno == EAGAIN ? all + " and the connection stays open" : all;
    all.append(part, static_cast<std::size_t>(got));
  }
  return all;
}

std::string RawLine::readToEnd() {
  return readUntil(std::string("\0 stands in no reply", 20));
}

std::string exchange(int port, const std::string& bytes) {
  RawLine line(port);
  line.send(bytes);
  return line.readToEnd();
}

bool isServed(int port) {
  const int line = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in there = addressOf("127.0.0.1", port);
  const bool isTaken = connect(line, reinterpret_cast<const sockaddr*>(&there), sizeof there) == 0;
  close(line);
  return isTaken;
}

FreePort::FreePort() : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address = addressOf("127.0.0.1", 0);
  socklen_t size = sizeof address;
  if (bind(socket_, reinterpret_cast<const sockaddr*>(&address), size) == 0 &&
      getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size) == 0)
    number_ = ntohs(address.sin_port);
}

FreePort::~FreePort() {
  close(socket_);
}

}  // namespace vantry::server::test

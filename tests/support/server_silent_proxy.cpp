#include "support/server_silent_proxy.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <vector>

namespace vantry::server {

namespace {

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

int connectTo(int port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
  const sockaddr_in address = loopback(port);
  if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return socket;
  close(socket);
  return -1;
}

/// False when the connection has ended.
bool pass(int from, int to, bool silent) {
  std::array<char, 16'384> part{};
  const ssize_t got = read(from, part.data(), part.size());
  if (got <= 0) return false;
  return silent || send(to, part.data(), static_cast<std::size_t>(got), MSG_NOSIGNAL) == got;
}

}  // namespace

SilentProxy::SilentProxy(int target) : target_(target), listener_(socket(AF_INET, SOCK_STREAM, 0)) {
  sockaddr_in address = loopback(0);
  socklen_t size = sizeof address;
  if (bind(listener_, reinterpret_cast<const sockaddr*>(&address), size) != 0 || listen(listener_, 20) != 0 ||
      getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0)
    throw std::runtime_error("no proxy for a test");
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { serve(); });
}

SilentProxy::~SilentProxy() {
  ending_ = true;
  shutdown(listener_, SHUT_RDWR);  // wakes it
  thread_.join();
  close(listener_);
}

/// The ends of a connection are neighbours, at 2n+1 and 2n+2.
void SilentProxy::serve() {
  std::vector<pollfd> ends{{.fd = listener_, .events = POLLIN, .revents = 0}};
  while (!ending_ && poll(ends.data(), ends.size(), -1) > 0) {
    if (ends[0].revents != 0 && !ending_) {
      const int client = accept(listener_, nullptr, nullptr);
      const int server = client < 0 ? -1 : connectTo(target_);
      for (const int each : {client, server}) ends.push_back({.fd = each, .events = POLLIN, .revents = 0});
      ends_ = ends.size() - 1;
    }
    for (std::size_t at = 1; at < ends.size(); ++at) {
      const std::size_t other = at % 2 == 1 ? at + 1 : at - 1;
      const bool silent = silent_ || at <= lost_;
      if (ends[at].revents == 0 || pass(ends[at].fd, ends[other].fd, silent)) continue;
      for (const std::size_t each : {at, other}) {
        close(ends[each].fd);
        ends[each] = {.fd = -1, .events = 0, .revents = 0};
      }
    }
  }
  for (std::size_t at = 1; at < ends.size(); ++at) {
    if (ends[at].fd >= 0) close(ends[at].fd);
  }
}

static std::size_t placeOfPort(const std::string& url) {
  return url.rfind(':', url.find('/', url.find("//") + 2)) + 1;
}

int portOf(const std::string& url) {
  return std::stoi(url.substr(placeOfPort(url)));
}

std::string throughPort(const std::string& url, int port) {
  const std::size_t at = placeOfPort(url);
  return url.substr(0, at) + std::to_string(port) + url.substr(url.find('/', at));
}

}  // namespace vantry::server

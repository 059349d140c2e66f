#include "support/server_mailbox.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace vantry::server::test {

namespace {

/// The lines of a connection, without their ends; false when there are no more.
class Lines {
 public:
  explicit Lines(int socket) : socket_(socket) {}

  bool next(std::string& line) {
    for (std::size_t end = rest_.find('\n'); end == std::string::npos; end = rest_.find('\n')) {
      char buffer[4096];
      const ssize_t size = recv(socket_, buffer, sizeof buffer, 0);
      if (size <= 0) return false;
      rest_.append(buffer, static_cast<std::size_t>(size));
    }
    const std::size_t end = rest_.find('\n');
    line = rest_.substr(0, end);
    if (line.ends_with('\r')) line.pop_back();
    rest_.erase(0, end + 1);
    return true;
  }

 private:
  int socket_;
  std::string rest_;
};

void say(int socket, const std::string& line) {
  const std::string text = line + "\r\n";
  static_cast<void>(send(socket, text.data(), text.size(), MSG_NOSIGNAL));
}

std::string addressIn(const std::string& line) {
  const std::size_t open = line.find('<') + 1;
  return line.substr(open, line.find('>') - open);
}

}  // namespace

std::string Mailbox::Mail::header(const std::string& name) const {
  const std::string mark = "\n" + name + ": ";
  const std::string all = "\n" + text;
  const std::size_t at = all.find(mark);
  if (at == std::string::npos || at > all.find("\n\n")) return {};
  const std::size_t begin = at + mark.size();
  return all.substr(begin, all.find('\n', begin) - begin);
}

Mailbox::Mailbox() : listening_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof place;
  auto* address = reinterpret_cast<sockaddr*>(&place);
  if (bind(listening_, address, size) != 0 || listen(listening_, 16) != 0)
    throw std::runtime_error("no port for a mailbox");
  getsockname(listening_, address, &size);
  port_ = ntohs(place.sin_port);
  acceptor_ = std::thread([this] { accept(); });
}

Mailbox::~Mailbox() {
  shutdown(listening_, SHUT_RDWR);
  acceptor_.join();
  {
    const std::lock_guard lock(mutex_);
    for (const int each : open_) shutdown(each, SHUT_RDWR);
  }
  for (std::thread& each : threads_) each.join();
  for (const int each : open_) close(each);
  close(listening_);
}

std::string Mailbox::address() const {
  return "smtp://127.0.0.1:" + std::to_string(port_);
}

void Mailbox::answer(const std::string& line, const std::string& reply) {
  const std::lock_guard lock(mutex_);
  replies_[line] = reply;
}

void Mailbox::fallSilent() {
  const std::lock_guard lock(mutex_);
  silent_ = true;
}

std::vector<Mailbox::Mail> Mailbox::mails() const {
  const std::lock_guard lock(mutex_);
  return mails_;
}

std::string Mailbox::subjects() const {
  std::string text;
  for (const Mail& each : mails()) text += each.to + ": " + each.header("Subject") + "\n";
  return text;
}

void Mailbox::accept() {
  for (;;) {
    const int socket = accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) return;
    const std::lock_guard lock(mutex_);
    open_.push_back(socket);
    if (!silent_) threads_.emplace_back([this, socket] { serve(socket); });
  }
}

void Mailbox::serve(int socket) {
  converse(socket);
  shutdown(socket, SHUT_RDWR);
}

void Mailbox::converse(int socket) {
  say(socket, greeting());
  Lines lines(socket);
  Mail mail;
  for (std::string line; lines.next(line);) {
    const std::string reply = replyTo(line, mail);
    say(socket, reply);
    if (line == "QUIT") return;
    if (line != "DATA" || !reply.starts_with('3')) continue;
    while (lines.next(line) && line != ".") mail.text += line + '\n';
    const std::lock_guard lock(mutex_);
    mails_.push_back(mail);
    mail = {};
    say(socket, "250 taken");
  }
}

std::string Mailbox::greeting() const {
  const std::lock_guard lock(mutex_);
  const auto given = replies_.find("");
  return given == replies_.end() ? "220 test" : given->second;
}

std::string Mailbox::replyTo(const std::string& line, Mail& mail) {
  const std::lock_guard lock(mutex_);
  if (const auto reply = replies_.find(line); reply != replies_.end()) return reply->second;
  if (line.starts_with("MAIL FROM:")) mail.from = addressIn(line);
  if (line.starts_with("RCPT TO:")) mail.to = addressIn(line);
  return line == "DATA" ? "354 go on" : "250 well";
}

}  // namespace vantry::server::test

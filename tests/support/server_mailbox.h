#pragma once

#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace vantry::server::test {

/// A mail server of the test's own, on a port of this machine. It speaks what little a sender needs, and
/// keeps what it gets.
class Mailbox {
 public:
  Mailbox();
  ~Mailbox();
  Mailbox(const Mailbox&) = delete;
  Mailbox& operator=(const Mailbox&) = delete;

  /// "smtp://127.0.0.1:PORT".
  [[nodiscard]] std::string address() const;

  /// Answers this line, "RCPT TO:<ada@example.org>" for example, with that one; the empty line is the begin
  /// of a connection.
  void answer(const std::string& line, const std::string& reply);
  /// Says nothing more from the next connection on, but keeps it open.
  void fallSilent();

  struct Mail {
    std::string from;
    std::string to;
    std::string text;  ///< lines end in "\n"

    /// The rest of the header's line that begins so.
    [[nodiscard]] std::string header(const std::string& name) const;
  };
  [[nodiscard]] std::vector<Mail> mails() const;
  /// "to: Subject", one a line.
  [[nodiscard]] std::string subjects() const;

 private:
  void accept();
  void serve(int socket);
  void converse(int socket);
  [[nodiscard]] std::string greeting() const;
  std::string replyTo(const std::string& line, Mail& mail);

  int listening_ = -1;
  int port_ = 0;
  mutable std::mutex mutex_;
  std::map<std::string, std::string> replies_;
  std::vector<Mail> mails_;
  std::vector<int> open_;
  bool silent_ = false;
  std::vector<std::thread> threads_;
  std::thread acceptor_;
};

}  // namespace vantry::server::test

#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "messaging/transport.h"

namespace vantry {

class ReplyReader;

/// The line to a server over HTTP or HTTPS, by one kept connection.
///
/// A request that finds its kept connection closed is sent once more over a fresh one, with its id, so that
/// the server runs it once; every other failure is reported to the caller. SIGPIPE is ignored from the first
/// transport on: a broken connection is reported as a failure, not as a signal.
class HttpTransport : public Transport {
 public:
  struct Options {
    std::string address;  ///< "http://host:port" or "https://host:port"; the port may be missing
    std::string certificateFile =
        {};  ///< PEM file of the authority to trust; empty: the system's authorities
    bool plainBeyondLoopback = false;  ///< allows HTTP without TLS to another machine
    std::chrono::milliseconds connectLimit{5'000};
    std::chrono::milliseconds silenceLimit{30'000};  ///< how long the server may send nothing
    std::chrono::milliseconds replyLimit{120'000};   ///< how long a whole reply may take
    /// A connection that was idle for so long is replaced. Shorter than any server keeps one.
    std::chrono::milliseconds idleLimit{45'000};
    /// How long a request is repeated to a server that is busy before the operator is asked.
    std::chrono::milliseconds busyLimit{5'000};
    /// Lets the time pass between two tries.
    std::function<void(std::chrono::milliseconds)> wait = [](std::chrono::milliseconds time) {
      std::this_thread::sleep_for(time);
    };
    std::size_t largestReply = 256U * 1024 * 1024;  ///< in bytes
  };

  /// Does not connect yet. Throws std::invalid_argument, with a sentence for people, for an address that is
  /// malformed or that leads unprotected to another machine.
  explicit HttpTransport(Options options);
  ~HttpTransport() override;

  [[nodiscard]] bool reach(std::string& reason) override;
  [[nodiscard]] LogonAnswer logon(std::string_view operatorId, std::string_view password) override;
  void logoff() override;
  [[nodiscard]] bool changePassword(std::string_view old, std::string_view fresh,
                                    std::string& reason) override;
  [[nodiscard]] std::string passwordKey() override;
  [[nodiscard]] DeliveryResult send(const Request& request) override;
  [[nodiscard]] bool secured() const override;

 private:
  class Line;
  std::unique_ptr<Line> line_;
  std::unique_ptr<ReplyReader> reader_;
  std::string session_;  ///< the token; empty without a session
};

}  // namespace vantry

#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "transport/http_transport.h"

namespace vantry {

/// One connection to a server. Knows bytes and status codes, not what they mean.
class HttpTransport::Line {
 public:
  using Headers = std::vector<std::pair<std::string, std::string>>;

  struct Answer {
    enum class Outcome {
      Answered,   ///< a whole answer arrived, of any status
      Unsent,     ///< no connection: nothing was sent
      BrokenOff,  ///< sent, at least in part, but the connection broke before the answer was whole
      OutOfTime,  ///< sent, but the answer did not arrive in time
      TooLarge    ///< the answer is larger than anything that the server sends
    };
    Outcome outcome = Outcome::Unsent;
    int status = 0;
    std::string body;
    std::chrono::seconds retryAfter{0};  ///< what the server asks to wait before the next try
    std::string reason;                  ///< one sentence for the operator, where nothing was answered
  };

  explicit Line(Options options);
  ~Line();

  /// Sends one call. With `mayRepeat` it is sent once more when it met a kept connection that had been
  /// closed.
  Answer call(const char* method, const std::string& path, const Headers& headers, std::string body,
              bool mayRepeat);
  /// The same for a call that may be sent again by its id. While the server asks to come again in a moment,
  /// the call waits and is repeated, for as long as `busyLimit` allows.
  Answer callWhileBusy(const char* method, const std::string& path, const Headers& headers,
                       const std::string& body);
  /// The next call opens a new connection.
  void close();
  bool secured() const { return secured_; }

 private:
  class Client;
  Answer callOnce(const char* method, const std::string& path, const Headers& headers,
                  const std::string& body);
  std::string reasonOf(int error) const;

  using Clock = std::chrono::steady_clock;
  Options options_;
  bool secured_ = false;
  std::string serverName_;
  std::unique_ptr<Client> client_;
  bool isKept_ = false;  ///< a connection may be open
  Clock::time_point lastUse_;
};

}  // namespace vantry

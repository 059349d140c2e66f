#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "words/requests.h"

namespace vantry {

/// One request on its way to the server. The id stays the same when the request is sent again.
struct Request {
  std::string id;
  std::string code;
  std::vector<TagValue> tags;
};

/// A server's reply: head values and records, held in one block of text.
///
/// Filled in order: head values first (`add` before the first `beginRecord`), then record by record.
class Reply {
 public:
  /// Return code; 0 is success.
  int rc = 0;

  /// Makes room for a reply that takes so many bytes on the wire.
  void reserve(std::size_t bytes);
  void add(std::string_view tag, std::string_view value);
  void beginRecord();

  int recordCount() const { return static_cast<int>(starts_.size()); }
  struct Value {
    std::string_view text;
    bool present = false;
  };
  /// The value of a tag in the head (record -1) or in a record; the first one where a record carries it
  /// twice. The text lives as long as the reply and until the next `add`.
  [[nodiscard]] Value value(int record, std::string_view tag) const;

 private:
  struct Field {
    std::uint32_t tag;
    std::uint32_t start;
    std::uint32_t length;
  };
  int tagNumber(std::string_view tag) const;
  std::uint32_t numberFor(std::string_view tag);
  std::vector<std::string> tagNames_;
  std::size_t nextTag_ = 0;  ///< the tag that is most likely next: records repeat their tags in order
  std::string text_;
  std::vector<Field> fields_;
  std::vector<std::size_t> starts_;  ///< first field of each record
};

/// What became of one attempt to reach the server.
enum class Delivery {
  Answered,      ///< the reply is whole
  NotDelivered,  ///< nothing was sent, or the server refused to take it now
  Unknown,       ///< sent, but no whole reply came: the server may have run the request
  SessionEnded,  ///< the server no longer knows the session
  Rejected       ///< the server will never take this request as it is; nothing was run
};

struct DeliveryResult {
  Delivery delivery = Delivery::NotDelivered;
  Reply reply;         ///< meaningful when answered
  std::string reason;  ///< one sentence for the operator, otherwise
};

/// The result of a log-on.
enum class LogonResult { Accepted, Refused, TooManyTries, Unreachable };

/// What the server says to a log-on; it compares as its result.
struct LogonAnswer {
  LogonResult result = LogonResult::Unreachable;
  std::string operatorId = {};  ///< when accepted: the login as the server keeps it
  std::string reason = {};      ///< one sentence for the operator, otherwise

  bool operator==(LogonResult other) const { return result == other; }
};

/// The line to the server. One thread; every call blocks.
class Transport {
 public:
  virtual ~Transport() = default;

  /// Whether a server of this kind answers; the reason for people where it does not.
  [[nodiscard]] virtual bool reach(std::string& reason) = 0;
  /// Opens a session for the operator; the transport keeps it for all later requests.
  [[nodiscard]] virtual LogonAnswer logon(std::string_view operatorId, std::string_view password) = 0;
  virtual void logoff() = 0;
  /// Whether the line to the server is protected.
  [[nodiscard]] virtual bool secured() const { return false; }
  /// Changes the operator's password; the reason for people where the server refuses.
  [[nodiscard]] virtual bool changePassword(std::string_view old, std::string_view fresh,
                                            std::string& reason) = 0;
  /// The server's public key, for passwords that requests carry, as the health call tells it; empty where it
  /// cannot be had now.
  [[nodiscard]] virtual std::string passwordKey() { return {}; }
  [[nodiscard]] virtual DeliveryResult send(const Request& request) = 0;
};

}  // namespace vantry

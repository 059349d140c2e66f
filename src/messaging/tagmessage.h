#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "messaging/transport.h"

namespace vantry {

class ConnectDialog;
class ServerSession;

/// The one object through which every window speaks to the server.
///
/// `Add` the tags, `Send` the code, read the reply with `Get`, `Count` and `NextRecord` until the next
/// `Send`.
class TagMessage {
 public:
  /// Asked when a request found no server, with one sentence about why: true tries the same request again.
  using AskRetry = std::function<bool(const std::string& reason)>;
  /// Asked when the session has ended on the server: true when the operator has logged on anew.
  using LogonAgain = std::function<bool()>;

  explicit TagMessage(Transport& transport) : transport_(transport) {}

  AskRetry OnLost;
  LogonAgain OnSessionEnded;
  /// Ends the program, since no server is reached and the operator has given up.
  std::function<void()> OnGivenUp;

  /// Opens the link for a module; true on success. The dialog tells the operator what is wrong and
  /// asks to try again until a server answers or they give up. It stays open on success.
  [[nodiscard]] bool Connect(int moduleNumber, ServerSession& session, ConnectDialog& dialog);

  void Add(std::string_view tag, std::string_view value);
  /// Sends what was added and waits for the reply; afterwards the outgoing list is empty. Returns the reply's
  /// code.
  ///
  /// Does not return when the operator gives up a lost connection, does not log on again after the session
  /// has ended, or the server answers with `codes::Lost`: `OnGivenUp` is called and `ProgramEnd` is thrown,
  /// so that nothing of the command runs on.
  ///
  /// A request that the server will never take gives `codes::NotTaken`, and `Refusal` its sentence. Timers
  /// fire while the operator is asked about a lost connection: a `Send` from one of them gives the silent
  /// code `codes::Busy` and disturbs nothing.
  [[nodiscard]] int Send(std::string_view code);
  /// Why the server did not take the last request; empty where it did.
  [[nodiscard]] const std::string& Refusal() const { return refusal_; }

  /// The value of the tag in the walk's current record. Before a walk and after its end: in the head, else in
  /// the first record that carries the tag. Empty where it is missing.
  [[nodiscard]] std::string Get(std::string_view tag) const;
  /// Number of records that carry the tag.
  [[nodiscard]] int Count(std::string_view tag) const;
  /// Moves the tag's own walk to the next record that carries it; false when there is none.
  bool NextRecord(std::string_view tag);

  /// Another operator begins: what is known of the session before is forgotten.
  void forgetSession() { location_.clear(); }

  /// A request within a walk: while this object lives, the message may be used freely; then the reply and the
  /// walks of before are back.
  class Inner {
   public:
    explicit Inner(TagMessage& message);
    ~Inner();
    Inner(const Inner&) = delete;
    Inner& operator=(const Inner&) = delete;

   private:
    TagMessage& message_;
    std::vector<TagValue> outgoing_;
    Reply reply_;
    std::map<std::string, int, std::less<>> cursors_;
    int current_;
  };

 private:
  DeliveryResult deliver(const Request& request);
  [[noreturn]] void giveUp();
  bool resumeSession();
  int take(Reply reply);
  void forgetReply();

  Transport& transport_;
  std::vector<TagValue> outgoing_;
  Reply reply_;
  std::string refusal_;
  bool sending_ = false;
  std::vector<TagValue> location_;  ///< the tags that told the session its location; empty before that
  std::map<std::string, int, std::less<>> cursors_;  ///< the current record of each tag's walk
  int current_ = -1;                                 ///< the record that `Get` reads; -1 outside a walk
};

/// A fresh random id for a request.
[[nodiscard]] std::string newRequestId();

}  // namespace vantry

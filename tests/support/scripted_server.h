#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <source_location>
#include <string>
#include <string_view>
#include <vector>

#include "messaging/transport.h"
#include "support/scripted_reply.h"

namespace vantry::test {

/// The server as a script. Requests must come in the order in which they are expected, with exactly these
/// tags; what comes unexpected fails the test, and so does what was expected and never came.
///
///   server.expect("VALDELBK", "BOOKID=7").fails(106);
///   server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N").replies(R"(
///     BOOKID=7 BKRES=0  STIME=2026-11-24 09:00:00
///     BOOKID=8 BKRES=99 STIME=2026-11-24 10:30:00 REQ="Ink, Ina")");
///
/// Requests and replies are also held against the protocol's table, so that a test cannot agree with a window
/// on a tag that the real server would refuse or never send. scripted_reply.h tells how they are written.
class ScriptedServer : public Transport {
 public:
  using Place = std::source_location;

  /// What the server does with an expected request; without a word it answers with an empty success.
  class Answer {
   public:
    /// Success. A single reply (its row has no walk) is written without "head:".
    void replies(std::string_view block);
    /// A reply that the table is not asked about: for what a broken server sends, or one built by code.
    void replies(Reply reply);
    void fails(int rc, std::string_view block = {});
    /// Made when the request comes, for replies that depend on it.
    void computes(std::function<Reply(const Request&)> reply);
    /// The connection breaks before the request went out, or after.
    void losesRequest(std::string reason = "The server does not answer.");
    void losesReply(std::string reason = "The server does not answer.");
    void endsSession();
    void rejects(std::string reason);

   private:
    friend class ScriptedServer;
    struct Step;
    explicit Answer(Step& step) : step_(step) {}
    void set(std::string_view block, int rc);
    void breaks(Delivery delivery, std::string reason);
    Step& step_;
  };

  ScriptedServer();
  ~ScriptedServer() override;

  /// The next request. A value "*" stands for any; two requests never have the same id.
  Answer expect(std::string_view code, std::string_view tags = {}, Place place = Place::current());
  /// The request before, or the last one of this code, comes once more with its id and its tags.
  Answer expectAgain(Place place = Place::current());
  Answer expectAgain(std::string_view code, Place place = Place::current());
  /// Answered whenever it comes while another code is expected next, as often as it does; for what a window
  /// always reads and this test is not about.
  Answer always(std::string_view code, Place place = Place::current());

  void expectLogon(std::string_view operatorId, std::string_view password,
                   LogonResult result = LogonResult::Accepted, Place place = Place::current());
  /// The same, and all that the server says to it.
  void expectLogon(std::string_view operatorId, std::string_view password, LogonAnswer answer,
                   Place place = Place::current());
  /// A refusal is what the server says; empty: it accepts.
  void expectPasswordChange(std::string_view old, std::string_view fresh, std::string refusal = {},
                            Place place = Place::current());
  /// The server cannot be reached once; otherwise it can, and needs no announcement.
  void expectUnreachable(std::string reason, Place place = Place::current());

  /// Fails for all that has not come, and forgets it. Runs at the end as well.
  void checkAllCame();

  /// All requests that came, in their order.
  const std::vector<Request>& requests() const { return requests_; }
  /// Who is logged on; empty for nobody.
  const std::string& operatorId() const { return operatorId_; }
  bool isSecured = false;

  [[nodiscard]] bool reach(std::string& reason) override;
  [[nodiscard]] LogonAnswer logon(std::string_view operatorId, std::string_view password) override;
  void logoff() override;
  [[nodiscard]] bool changePassword(std::string_view old, std::string_view fresh,
                                    std::string& reason) override;
  [[nodiscard]] DeliveryResult send(const Request& request) override;
  [[nodiscard]] bool secured() const override { return isSecured; }

 private:
  using Step = Answer::Step;
  Step& addStep(std::string what, Place place);
  /// Takes the next step if it is this one; otherwise fails the test.
  std::optional<Step> take(const std::string& what);
  /// The step that answers this request, or nothing when the test has failed.
  std::optional<Step> stepFor(const Request& request);
  void checkRequest(const Request& request) const;
  void checkId(const Request& request, bool again) const;

  std::deque<Step> steps_;
  std::map<std::string, Step, std::less<>> standing_;
  std::vector<Request> requests_;
  std::string operatorId_;
};

}  // namespace vantry::test

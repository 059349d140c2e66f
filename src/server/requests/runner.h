#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "server/access/passwords.h"
#include "server/access/sealing.h"
#include "server/access/sessions.h"
#include "server/access/spare_sessions.h"
#include "server/access/stored_replies.h"
#include "server/base/moment.h"
#include "server/desk/refusal_counts.h"
#include "server/directory/directory.h"
#include "server/mail/mail_kinds.h"
#include "server/requests/reply.h"
#include "server/requests/search_limits.h"
#include "server/store/database.h"
#include "words/requests.h"

namespace vantry::server {

struct OperatorAccount;

/// What is done beside the requests.
struct RunnerUse {
  RefusalCounts* refusals = nullptr;  ///< counts what is refused, where somebody wants to know
  MailKinds mail = {};                ///< what patrons are told by mail
  Directory* directory = nullptr;     ///< judges the passwords of its operators
};

/// What the server does, without HTTP: logins and requests. Holds no state of its own but the spare sessions,
/// so that several processes may work on one store. Safe for many threads at once. Every operation may throw
/// StoreError.
class RequestRunner {
 public:
  /// The database's schema is up to date.
  RequestRunner(Database& database, Clock clock, HashCost cost, const SearchLimits& search = {},
                const RunnerUse& use = {});

  /// The key to which clients seal the passwords that requests contain.
  [[nodiscard]] const std::string& sealingKey() const { return keys_.open; }

  /// Whether a call may wait for the house's directory. One that may not, and would have to, does nothing and
  /// answers so.
  enum class Waiting { Allowed, Forbidden };
  /// Whether anybody would have to.
  [[nodiscard]] bool asksDirectory() const { return directory_ != nullptr; }

  struct LoginResult {
    enum class Kind {
      Granted,
      Refused,
      TooMany,
      Away,  ///< the directory says nothing now
      NeedsDirectory
    } kind;
    std::string token = {};  ///< when granted
    std::string login = {};  ///< when granted: the operator's name as it is stored
    Moment retryAfter = 0;   ///< when there were too many tries: seconds to wait
  };
  [[nodiscard]] LoginResult login(std::string_view name, std::string_view password, std::string_view address,
                                  Waiting waiting = Waiting::Allowed);

  /// Whether the token opens a session now: one cheap read, so that a stranger waits in no queue.
  [[nodiscard]] bool knowsSession(std::string_view token) const;

  /// False when the token opens no session.
  bool logout(std::string_view token);

  struct PasswordResult {
    enum class Kind {
      Changed,
      NoSession,
      WrongOld,
      TooWeak,
      TooMany,
      NotOurs  ///< it is one of the directory
    } kind;
    std::string weakness = {};  ///< when too weak: one sentence
    Moment retryAfter = 0;
  };
  [[nodiscard]] PasswordResult changePassword(std::string_view token, std::string_view old,
                                              std::string_view fresh, std::string_view address);

  struct Incoming {
    std::string_view token;
    std::string_view code;
    std::string_view requestId;
    std::span<const TagValue> tags;
    Waiting waiting = Waiting::Allowed;
  };
  struct Answer {
    enum class Kind { Done, NoSession, UnknownCode, IdMisused, NeedsDirectory } kind = Kind::NoSession;
    std::string json;             ///< when done: the reply
    std::int64_t locationId = 0;  ///< of the session, when a writing request is done
  };
  /// Runs a request once: a repeated id of a writing request is answered with the stored reply. An id that
  /// belongs to another request, or to other tags, is misused.
  [[nodiscard]] Answer run(const Incoming& incoming);

  struct FeedAnswer {
    enum class Kind { Told, Unknown, TooMany } kind = Kind::Unknown;
    std::string text;       ///< when told: the calendar
    std::string version;    ///< when told: differs from that of any other text
    Moment changedAt = 0;   ///< when told: in seconds since 1970-01-01 UTC
    Moment retryAfter = 0;  ///< when there were too many wrong guesses: seconds to wait
  };
  /// The feed whose address has this secret. What belongs to no feed counts as a guess of the client.
  [[nodiscard]] FeedAnswer feed(std::string_view secret, std::string_view address);

 private:
  /// What is decided before the request runs: who asks, whether they hold the right, whether the message is
  /// sound. Who lacks the right learns nothing of what the request would take.
  struct Judged {
    std::optional<Session> session;
    std::optional<StoredReply> stored;  ///< when the request ran before
    std::optional<Reply> refusal;
    bool lacksRight = false;
  };
  struct Supervisor;
  static Answer repeat(const StoredReply& stored, std::string_view code, std::string_view digest);

  std::string openSpareSession(const OperatorAccount& account, const StoreError& error, Moment now);
  void keepLocation(Connection& db, const Session& session, std::int64_t location) const;
  Judged judge(Connection& db, const Incoming& incoming, Moment now) const;
  void noteGuess(std::string_view address, Moment now);
  Answer runReading(const Incoming& incoming);
  void writeAfterRead(const Database::Work& work);
  Answer runWriting(const Incoming& incoming);
  void countRefusal(std::string_view code, const Reply& reply, std::int64_t locationId, Moment now) const;
  Answer answerOnce(Connection& db, const Incoming& incoming, Moment now, const Reply* refusal) const;
  Answer runOverride(const Incoming& incoming);
  Supervisor meetSupervisor(Connection& db, const Incoming& incoming, Moment now) const;
  [[nodiscard]] int judgeSupervisor(const Supervisor& met, std::string_view sealed) const;
  [[nodiscard]] bool needsDirectory(const std::optional<OperatorAccount>& account) const;
  [[nodiscard]] Directory::Verdict judgePassword(const OperatorAccount& account,
                                                 std::string_view password) const;

  Database& database_;
  Clock clock_;
  HashCost cost_;
  SearchLimits search_;
  RefusalCounts* refusals_;
  MailKinds mail_;
  Directory* directory_;
  SealingKeys keys_;
  mutable SpareSessions spare_;
};

}  // namespace vantry::server

#pragma once

#include <memory>
#include <string>

#include "server/mail/outbox.h"
#include "server/mail/postman.h"
#include "support/server_desk_library.h"
#include "support/server_mailbox.h"

namespace vantry::server {

/// The small library, two of whose patrons have mail addresses: Ada Bell (1) and Hal Gray (4). Lou Kent (6)
/// has one as well, and asked not to be remembered.
class MailCase : public OnEachDatabase {
 protected:
  void prepare() override {
    execute("update patrons set email = 'ada@example.org' where id = 1");
    execute("update patrons set email = 'hal@example.org' where id = 4");
    execute("update patrons set email = 'lou@example.org', withheld = 1 where id = 6");
    for (const MailKind kind : allMailKinds) all.add(kind);
    runner = std::make_unique<RequestRunner>(library().database(), library().clock(), HashCost::Quick,
                                             SearchLimits{}, RunnerUse{.mail = all});
  }

  Got send(const std::string& code, const std::string& tags) { return library().sendTo(*runner, code, tags); }

  /// Books for Ada Bell.
  Got book(int dayOfMarch, const std::string& from, const std::string& until,
           const std::string& things = {}) {
    return send("NEWBK", booking(times(dayOfMarch, from, until), "LOC=1", 3, things));
  }

  /// The same save, for Hal Gray.
  static std::string forHal(std::string save) {
    const std::string ada = "PID=1";
    return save.replace(save.find(ada), ada.size(), "PID=4");
  }

  [[nodiscard]] MailSettings settings() const {
    MailSettings settings;
    settings.kinds = all;
    settings.from = "Desk <desk@library.example>";
    settings.through = mailbox.address();
    settings.texts.clear();
    return settings;
  }

  /// A server of its own, as far as mail is concerned.
  std::unique_ptr<Postman> postman() {
    return std::make_unique<Postman>(library().database(), library().clock(), settings());
  }

  /// The news has settled.
  void later() { execute("update outbox set due_at = 0 where state = 0"); }

  /// Sends what is there, and tells all that the mailbox has got.
  std::string sent() {
    later();
    EXPECT_TRUE(postman()->sendDue());
    return mailbox.subjects();
  }

  /// "kind booking" of all that waits or was given up.
  std::string outbox() {
    std::string text;
    library().database().read([&](Connection& db) {
      text.clear();
      for (const OutboxRow& row : outboxRows(db))
        text += std::string(text.empty() ? "" : ", ") + std::string(mailKindName(row.kind)) + " " +
                std::to_string(row.bookingId) + (row.givenUp ? " given up" : "");
    });
    return text;
  }

  MailKinds all;
  test::Mailbox mailbox;
  std::unique_ptr<RequestRunner> runner;
};

}  // namespace vantry::server

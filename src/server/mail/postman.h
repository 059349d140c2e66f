#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "server/base/moment.h"
#include "server/mail/letter.h"
#include "server/mail/mail_carrier.h"
#include "server/mail/outbox.h"
#include "server/store/database.h"

namespace vantry::server {

/// Sends what is in the outbox, on a thread of its own from `start` to `stop`, so that no desk waits for a
/// mail server. Any number of processes may do this on one store: each mail is sent by one of them. A crash
/// between the sending of a letter and the mark of it sends the same letter again, with the same Message-ID.
class Postman {
 public:
  /// Throws UserError with a sentence for settings that make no sense. What they name and is not there is
  /// looked for again before mail is sent.
  Postman(Database& database, Clock clock, const MailSettings& settings);
  ~Postman();
  Postman(const Postman&) = delete;
  Postman& operator=(const Postman&) = delete;

  void start();
  void stop();

  /// Sends what is due now; false when the mail system failed, and all that is left waits. Throws StoreError,
  /// and MailUnavailable.
  bool sendDue(const std::stop_token& ending = {});

  struct Figures {
    std::int64_t queued = 0;  ///< when it last looked, by any process
    std::int64_t sent = 0;    ///< by this one, as is the next
    std::int64_t failed = 0;  ///< given up
  };
  [[nodiscard]] Figures figures() const { return {queued_, sent_, failed_}; }

 private:
  struct Written;
  void findCarrier();
  void work(const std::stop_token& ending);
  bool sendDueSafely(const std::stop_token& ending);
  bool send(const std::vector<TakenMail>& mails, const std::stop_token& ending);
  Written write(const std::vector<TakenMail>& mails);
  Delivery carry(const Written& written, const std::stop_token& ending);
  void settle(const Written& written, const Delivery& delivery);
  void change(const Database::Work& work);
  void tellFaults(const UsedText& used);

  Database& database_;
  Clock clock_;
  MailSettings settings_;
  MailSender from_;
  std::unique_ptr<MailCarrier> carrier_;
  std::string toldFault_;
  std::atomic<std::int64_t> queued_ = 0;
  std::atomic<std::int64_t> sent_ = 0;
  std::atomic<std::int64_t> failed_ = 0;
  std::mutex mutex_;
  std::condition_variable_any wake_;
  std::jthread thread_;
};

/// How long a mail waits after so many tries.
[[nodiscard]] Moment delayAfter(std::int64_t tries);

}  // namespace vantry::server

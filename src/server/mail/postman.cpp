#include "server/mail/postman.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

#include <spdlog/spdlog.h>

#include "server/access/passwords.h"
#include "server/base/user_error.h"
#include "server/desk/booking_store.h"
#include "server/mail/mail_facts.h"

namespace vantry::server {

namespace {

using std::chrono::seconds;

constexpr seconds betweenLooks{5};
constexpr seconds shortestPause{15};
constexpr seconds longestPause{300};
constexpr Moment longestDelay = 4 * hour;

/// Whether the mail still tells the truth.
bool stillHolds(const TakenMail& mail, const std::optional<BookingFacts>& booking, Moment now) {
  if (!mail.values.empty()) return mail.about > now;
  if (!booking) return false;
  const bool isOurs = booking->patronId == mail.patronId;
  switch (mail.kind) {
    case MailKind::Confirmed:
    case MailKind::Changed:
      return isOurs && booking->status == BookingStatus::Live && booking->endsAt > now;
    case MailKind::Cancelled:
      return booking->endsAt > now && (!isOurs || isOver(booking->status));
    case MailKind::Due:
      return isOurs && booking->status == BookingStatus::Charged && booking->endsAt > now;
    case MailKind::Overdue:
      return isOurs && booking->status == BookingStatus::Overdue;
  }
  return false;
}

/// A mark of what a patron is told, so that a change which they cannot see is not told.
std::string markOf(const MailValues& values) {
  std::string text;
  for (const auto& [name, value] : values) text += name + '=' + value + '\n';
  return hashToken(text);
}

}  // namespace

Moment delayAfter(std::int64_t tries) {
  Moment delay = minute;
  for (std::int64_t each = 1; each < tries && delay < longestDelay; ++each) delay *= 4;
  return std::min(delay, longestDelay);
}

/// A mail with all that is known of it now; without a recipient it is not to be sent.
struct Postman::Written {
  std::optional<MailRecipient> recipient;
  MailValues values;
  std::string told;
};

Postman::Postman(Database& database, Clock clock, const MailSettings& settings)
    : database_(database),
      clock_(std::move(clock)),
      texts_(settings.texts),
      from_(senderIn(settings.from)),
      carrier_(makeCarrier(settings)) {}

Postman::~Postman() {
  stop();
}

void Postman::start() {
  thread_ = std::jthread([this](const std::stop_token& ending) { work(ending); });
}

void Postman::stop() {
  thread_.request_stop();
  wake_.notify_all();
  if (thread_.joinable()) thread_.join();
}

/// While the mail system fails, it is asked less and less often.
void Postman::work(const std::stop_token& ending) {
  seconds pause = shortestPause;
  std::unique_lock lock(mutex_);
  while (!ending.stop_requested()) {
    lock.unlock();
    const bool isWell = sendDueSafely(ending);
    lock.lock();
    wake_.wait_for(lock, ending, isWell ? betweenLooks : pause, [] { return false; });
    pause = isWell ? shortestPause : std::min(2 * pause, longestPause);
  }
}

bool Postman::sendDueSafely(const std::stop_token& ending) {
  try {
    return sendDue(ending);
  } catch (const StoreError& error) {
    spdlog::warn("mail is put off: {}", error.what());
  } catch (const std::exception& error) {
    spdlog::error("mail failed: {}", error.what());
  }
  return false;
}

bool Postman::sendDue(const std::stop_token& ending) {
  bool isWell = true;
  while (isWell && !ending.stop_requested()) {
    const Moment now = clock_();
    bool isDue = false;
    database_.readOnce([&](Connection& db) { isDue = isMailDue(db, now); });
    if (!isDue) break;
    std::optional<TakenMail> mail;
    change([&](Connection& db) { mail = takeMail(db, now); });
    if (mail) isWell = send(*mail, ending);
  }
  database_.readOnce([&](Connection& db) { queued_ = countWaitingMail(db); });
  return isWell;
}

void Postman::change(const Database::Work& work) {
  database_.writeApart({}, work);
}

/// False when the mail system failed.
bool Postman::send(const TakenMail& mail, const std::stop_token& ending) {
  const Written written = write(mail);
  if (!written.recipient) {
    change([&](Connection& db) { dropMail(db, mail); });
    return true;
  }
  const Delivery delivery = carry(mail, written, ending);
  settle(mail, written, delivery);
  return delivery.kind != Delivery::Kind::Failed;
}

Postman::Written Postman::write(const TakenMail& mail) {
  Written written;
  const Moment now = clock_();
  database_.read([&](Connection& db) {
    written = {};
    const std::optional<BookingFacts> booking =
        mail.values.empty() ? findBookingFacts(db, mail.bookingId) : std::nullopt;
    if (!stillHolds(mail, booking, now)) return;
    written.values = booking ? booking->values : valuesKept(mail.values);
    written.told = markOf(written.values);
    if (mail.kind == MailKind::Changed && lastTold(db, mail) == written.told) return;
    written.recipient = findRecipient(db, mail.patronId);
  });
  if (written.recipient) written.values["name"] = written.recipient->name;
  return written;
}

/// Each fault of a text once, until there is another one.
void Postman::tellFaults(const UsedText& used) {
  if (used.faults.empty() || used.faults.front() == toldFault_) return;
  toldFault_ = used.faults.front();
  spdlog::warn("{} The built-in text is sent.", toldFault_);
}

Delivery Postman::carry(const TakenMail& mail, const Written& written, const std::stop_token& ending) {
  const UsedText used = usedText(texts_, mail.kind);
  tellFaults(used);
  const std::string id = "vantry." + confirmationNumber(mail.bookingId) + '.' +
                         std::to_string(mail.queuedAt) + '.' + std::to_string(mail.id) + '.' +
                         std::to_string(mail.revision);
  const LetterHead head{.from = from_,
                        .toName = written.recipient->name,
                        .toAddress = written.recipient->address,
                        .id = id,
                        .at = mail.queuedAt};
  try {
    const std::string text = letterText(head, filledText(used.text, written.values));
    return carrier_->carry({.from = from_.address, .to = head.toAddress, .text = text}, ending);
  } catch (const UserError& error) {
    return {Delivery::Kind::Refused, error.what()};
  }
}

void Postman::settle(const TakenMail& mail, const Written& written, const Delivery& delivery) {
  const Moment now = clock_();
  if (delivery.kind == Delivery::Kind::Sent) {
    ++sent_;
    return change([&](Connection& db) { markSent(db, mail, written.told, now); });
  }
  const std::string about = confirmationNumber(mail.bookingId);
  if (delivery.kind != Delivery::Kind::Refused && now - mail.queuedAt < mailPatience) {
    spdlog::warn("mail {} about booking {} waits: {}", mail.id, about, delivery.fault);
    return change([&](Connection& db) { postpone(db, mail, delivery.fault, now + delayAfter(mail.tries)); });
  }
  ++failed_;
  spdlog::error("mail {} about booking {} is given up: {}", mail.id, about, delivery.fault);
  change([&](Connection& db) { giveUp(db, mail, delivery.fault); });
}

}  // namespace vantry::server

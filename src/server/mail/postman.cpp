#include "server/mail/postman.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <optional>
#include <span>
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

struct WrittenMail {
  TakenMail mail;
  MailValues values;
  std::string told;
};

/// Nothing for a mail that is not to be sent any more.
std::optional<WrittenMail> writtenMail(Connection& db, const TakenMail& mail, Moment now) {
  const std::optional<BookingFacts> booking =
      mail.values.empty() ? findBookingFacts(db, mail.bookingId) : std::nullopt;
  if (!stillHolds(mail, booking, now)) return std::nullopt;
  WrittenMail written{mail, booking ? booking->values : valuesKept(mail.values), {}};
  MailValues& values = written.values;
  written.told = markOf(values);
  if (mail.kind == MailKind::Changed && lastTold(db, mail) == written.told) return std::nullopt;
  values["dates"] = "- " + values["number"] + ": " + values["start"] + " to " + values["end"];
  return written;
}

/// Whether one letter can tell both: bookings of one save may have got other places or things since.
bool isAlike(const MailValues& one, const MailValues& other) {
  return one.at("place") == other.at("place") && one.at("things") == other.at("things");
}

/// Those of the first booking, and what counts for all.
MailValues valuesOf(std::span<const WrittenMail> mails, const std::string& name) {
  MailValues values = mails.front().values;
  values["name"] = name;
  values["count"] = std::to_string(mails.size());
  for (const WrittenMail& each : mails.subspan(1)) values["dates"] += '\n' + each.values.at("dates");
  return values;
}

/// "0000001 and 2 more"
std::string bookingsText(const std::vector<WrittenMail>& mails) {
  const std::string first = confirmationNumber(mails.front().mail.bookingId);
  return mails.size() == 1 ? first : first + " and " + std::to_string(mails.size() - 1) + " more";
}

}  // namespace

Moment delayAfter(std::int64_t tries) {
  Moment delay = minute;
  for (std::int64_t each = 1; each < tries && delay < longestDelay; ++each) delay *= 4;
  return std::min(delay, longestDelay);
}

/// A letter with all that is known of it now.
struct Postman::Written {
  MailRecipient recipient;
  std::vector<WrittenMail> mails;  ///< what it tells; it is sent only when there is something
  std::vector<TakenMail> moot;     ///< what is not to be told any more
  std::vector<TakenMail> others;   ///< what needs a letter of its own
};

Postman::Postman(Database& database, Clock clock, const MailSettings& settings)
    : database_(database), clock_(std::move(clock)), settings_(settings), from_(senderIn(settings.from)) {
  try {
    findCarrier();
  } catch (const MailUnavailable& error) {
    spdlog::error("mail waits: {}", error.what());  // desks do not
  }
}

Postman::~Postman() {
  stop();
}

void Postman::findCarrier() {
  if (!carrier_) carrier_ = makeCarrier(settings_);
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
  } catch (const MailUnavailable& error) {
    spdlog::error("mail waits: {}", error.what());
  } catch (const std::exception& error) {
    spdlog::error("mail failed: {}", error.what());
  }
  return false;
}

bool Postman::sendDue(const std::stop_token& ending) {
  const auto countQueued = [&](Connection& db) { queued_ = countWaitingMail(db); };
  if (!carrier_)
    database_.readOnce(countQueued);  // what waits is told although there may be no way to send it
  findCarrier();
  bool isWell = true;
  while (isWell && !ending.stop_requested()) {
    const Moment now = clock_();
    bool isDue = false;
    database_.readOnce([&](Connection& db) { isDue = isMailDue(db, now); });
    if (!isDue) break;
    std::vector<TakenMail> mails;
    database_.writeApart("mail", [&](Connection& db) { mails = takeMails(db, now); });
    if (!mails.empty()) isWell = send(mails, ending);
  }
  database_.readOnce(countQueued);
  return isWell;
}

void Postman::change(const Database::Work& work) {
  database_.writeApart({}, work);
}

/// False when the mail system failed.
bool Postman::send(const std::vector<TakenMail>& mails, const std::stop_token& ending) {
  const Written written = write(mails);
  if (!written.moot.empty() || !written.others.empty()) {
    change([&](Connection& db) {
      for (const TakenMail& mail : written.moot) dropMail(db, mail);
      for (const TakenMail& mail : written.others) tellApart(db, mail);
    });
  }
  if (written.mails.empty()) return true;
  const Delivery delivery = carry(written, ending);
  settle(written, delivery);
  return delivery.kind != Delivery::Kind::Failed;
}

Postman::Written Postman::write(const std::vector<TakenMail>& mails) {
  Written written;
  const Moment now = clock_();
  database_.read([&](Connection& db) {
    written = {};
    const std::optional<MailRecipient> recipient = findRecipient(db, mails.front().patronId);
    if (recipient) written.recipient = *recipient;
    for (const TakenMail& mail : mails) {
      std::optional<WrittenMail> told = recipient ? writtenMail(db, mail, now) : std::nullopt;
      if (!told)
        written.moot.push_back(mail);
      else if (!written.mails.empty() && !isAlike(written.mails.front().values, told->values))
        written.others.push_back(mail);
      else
        written.mails.push_back(std::move(*told));
    }
  });
  return written;
}

/// Each fault of a text once, until there is another one.
void Postman::tellFaults(const UsedText& used) {
  if (used.faults.empty() || used.faults.front() == toldFault_) return;
  toldFault_ = used.faults.front();
  spdlog::warn("{} The built-in text is sent.", toldFault_);
}

Delivery Postman::carry(const Written& written, const std::stop_token& ending) {
  const TakenMail& first = written.mails.front().mail;
  const UsedText used =
      usedText(settings_.texts, written.mails.size() > 1 ? severalConfirmed : mailKindName(first.kind));
  tellFaults(used);
  const std::string id = "vantry." + confirmationNumber(first.bookingId) + '.' +
                         std::to_string(first.queuedAt) + '.' + std::to_string(first.id) + '.' +
                         std::to_string(first.revision);
  const MailRecipient& recipient = written.recipient;
  const LetterHead head{.from = from_,
                        .toName = recipient.name,
                        .toAddress = recipient.address,
                        .id = id,
                        .at = first.queuedAt};
  try {
    const std::string text = letterText(head, filledText(used.text, valuesOf(written.mails, recipient.name)));
    return carrier_->carry({.from = from_.address, .to = head.toAddress, .text = text}, ending);
  } catch (const UserError& error) {
    return {Delivery::Kind::Refused, error.what()};
  }
}

void Postman::settle(const Written& written, const Delivery& delivery) {
  const Moment now = clock_();
  const TakenMail& first = written.mails.front().mail;
  const auto changeEach = [&](const auto& what) {
    change([&](Connection& db) {
      for (const WrittenMail& each : written.mails) what(db, each);
    });
  };
  if (delivery.kind == Delivery::Kind::Sent) {
    sent_ += std::ssize(written.mails);
    return changeEach(
        [&](Connection& db, const WrittenMail& each) { markSent(db, each.mail, each.told, now); });
  }
  const std::string about = bookingsText(written.mails);
  if (delivery.kind != Delivery::Kind::Refused && now - first.queuedAt < mailPatience) {
    spdlog::warn("mail {} about booking {} waits: {}", first.id, about, delivery.fault);
    const Moment until = now + delayAfter(first.tries);
    return changeEach(
        [&](Connection& db, const WrittenMail& each) { postpone(db, each.mail, delivery.fault, until); });
  }
  failed_ += std::ssize(written.mails);
  spdlog::error("mail {} about booking {} is given up: {}", first.id, about, delivery.fault);
  changeEach([&](Connection& db, const WrittenMail& each) { giveUp(db, each.mail, delivery.fault); });
}

}  // namespace vantry::server

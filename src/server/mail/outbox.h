#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "server/base/moment.h"
#include "server/mail/mail_kinds.h"
#include "server/store/database.h"

namespace vantry::server {

// The mails that are to be sent. They are put there in the transaction of what they tell, and are written
// only when they are sent: so they tell the booking as it is then, and names are stored nowhere else.

/// Time for further changes of a booking, which the same mail tells.
inline constexpr Moment mailSettling = minute;
/// How long it is tried to send a mail.
inline constexpr Moment mailPatience = 2 * day;

/// Puts mails about bookings there: Confirmed, Changed or Cancelled. None for a booking in the past, or whose
/// requester has no address or asked not to be remembered. A mail of the booking that still waits tells the
/// news as well, instead of a second one. Several bookings are those of one save, and share a letter.
void queueNews(Connection& db, MailKind kind, std::span<const std::int64_t> bookings, Moment now);

/// Tells a patron that a booking is not theirs any more.
struct Farewell {
  std::int64_t bookingId = 0;
  std::int64_t patronId = 0;
  Moment endsAt = 0;
  std::string values = {};  ///< what is kept of one that will be gone; empty for one that stays
  bool ifWaiting = false;   ///< only instead of a mail that waits
};
void queueFarewell(Connection& db, const Farewell& farewell, Moment now);

/// Puts there what time brings: what is out and due tomorrow, and what became overdue within the last days.
/// Each once for a booking and its end.
void queueReminders(Connection& db, const MailKinds& kinds, Moment now);

/// A mail that one server has taken to send. No other sends it until the lease is over.
struct TakenMail {
  std::int64_t id = 0;
  MailKind kind = MailKind::Confirmed;
  std::int64_t bookingId = 0;
  std::int64_t patronId = 0;
  Moment about = 0;  ///< the end of the booking that a reminder or a farewell is about
  std::int64_t revision = 0;
  Moment queuedAt = 0;
  std::int64_t tries = 0;  ///< this one included
  std::string values;      ///< of a booking that is gone
  std::string told;        ///< see `lastTold`
  std::int64_t save = 0;   ///< the same for all mails of one save; 0 for a mail of its own
};
/// Whether one is due; a cheap read.
[[nodiscard]] bool isMailDue(Connection& db, Moment now);
/// Takes what becomes the next letter: one mail, or those of one save in the order of their bookings. Empty
/// when nothing is due. Servers must do this one after another, or each might take a part of one save.
[[nodiscard]] std::vector<TakenMail> takeMails(Connection& db, Moment now);

// What becomes of it. When the booking has changed since it was taken, it stays in the outbox and is sent
// again, as a change.

void markSent(Connection& db, const TakenMail& mail, const std::string& told, Moment now);
void postpone(Connection& db, const TakenMail& mail, const std::string& fault, Moment until);
void giveUp(Connection& db, const TakenMail& mail, const std::string& fault);
void dropMail(Connection& db, const TakenMail& mail);
/// It is none of its save any more, and is due at once.
void tellApart(Connection& db, const TakenMail& mail);

/// The mark of what the patron was told last of the booking; empty when nothing was.
[[nodiscard]] std::string lastTold(Connection& db, const TakenMail& mail);

/// What whoever runs the server sees of it.
struct OutboxRow {
  std::int64_t id = 0;
  MailKind kind = MailKind::Confirmed;
  std::int64_t bookingId = 0;
  bool givenUp = false;
  Moment queuedAt = 0;
  Moment dueAt = 0;
  std::int64_t tries = 0;
  std::string fault;
};
/// Those that wait and those that were given up, the oldest first.
[[nodiscard]] std::vector<OutboxRow> outboxRows(Connection& db);
[[nodiscard]] std::int64_t countWaitingMail(Connection& db);

/// Has the mails sent as soon as there is a server, also those that were given up; 0 for all. How many.
std::int64_t retryMail(Connection& db, std::int64_t id, Moment now);
/// Takes a mail out of the outbox; 0 for all. How many.
std::int64_t removeMail(Connection& db, std::int64_t id);

/// Drops what was sent or given up long ago.
void dropOldMail(Connection& db, Moment now);

}  // namespace vantry::server

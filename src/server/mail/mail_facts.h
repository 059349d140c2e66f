#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "server/base/moment.h"
#include "server/mail/mail_texts.h"
#include "server/policy/booking_rules.h"
#include "server/store/database.h"

namespace vantry::server {

/// What mails tell of a booking, and what decides whether they still hold. The values name no patron.
struct BookingFacts {
  std::int64_t patronId = 0;
  BookingStatus status = BookingStatus::Live;
  Moment endsAt = 0;
  MailValues values;
};
[[nodiscard]] std::optional<BookingFacts> findBookingFacts(Connection& db, std::int64_t bookingId);

/// The moment at which a booking is past: one without an end of its own ends with its day.
[[nodiscard]] Moment pastAt(Moment startsAt, Moment endsAt);

/// Values as they are kept for a booking that will be gone.
[[nodiscard]] std::string keptValues(const MailValues& values);
[[nodiscard]] MailValues valuesKept(const std::string& text);

/// Whom a mail is for. Nothing for a patron who is gone, has no address, or asked not to be remembered.
struct MailRecipient {
  std::string name;  ///< "Ada Bell"
  std::string address;
};
[[nodiscard]] std::optional<MailRecipient> findRecipient(Connection& db, std::int64_t patronId);

}  // namespace vantry::server

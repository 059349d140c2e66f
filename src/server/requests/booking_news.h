#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "server/mail/mail_kinds.h"
#include "server/mail/outbox.h"
#include "server/requests/handlers.h"

namespace vantry::server {

/// What a request that writes a booking has to tell its patron by mail. Made before the request runs.
class BookingNews {
 public:
  BookingNews(Context& context, std::string_view code, const Message& message);

  /// Puts the mails into the outbox, in the transaction of the request, which was done.
  void queue();

 private:
  void queueChange();

  Context& context_;
  std::string_view code_;
  std::int64_t bookingId_ = 0;
  std::int64_t patronId_ = 0;         ///< as the message tells; 0 for an administrative booking
  std::optional<Farewell> farewell_;  ///< to whose booking it was before
};

}  // namespace vantry::server

#pragma once

#include <string_view>

#include "server/desk/short_text.h"

namespace vantry::server {

/// What the audit says of a request that writes.
struct AuditWord {
  std::string_view code;
  std::string_view action;
  Audited kind = Audited::Booking;
  std::string_view key = {};  ///< the tag of the record; empty for a request that makes one
  int doneToo = 0;            ///< a code that tells, like 0, that it was done
};

/// Nothing for requests that only read, and for those that write their row by themselves or need none.
[[nodiscard]] const AuditWord* findAuditWord(std::string_view code);

}  // namespace vantry::server

#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "server/access/accounts.h"
#include "server/base/moment.h"
#include "server/requests/reply.h"
#include "server/store/database.h"
#include "words/requests.h"

namespace vantry::server {

/// The tags of one request, already checked against its row. A missing tag reads as empty text, or as 0.
class Message {
 public:
  explicit Message(std::span<const TagValue> tags) : tags_(tags) {}

  [[nodiscard]] std::span<const TagValue> tags() const { return tags_; }
  [[nodiscard]] bool has(std::string_view tag) const;
  [[nodiscard]] std::string_view text(std::string_view tag) const;
  [[nodiscard]] std::int64_t number(std::string_view tag) const;
  [[nodiscard]] bool flag(std::string_view tag) const { return text(tag) == "Y"; }
  [[nodiscard]] std::vector<std::int64_t> numbers(std::string_view tag) const;

 private:
  std::span<const TagValue> tags_;
};

/// The number at the start of the text; 0 where there is none.
[[nodiscard]] std::int64_t numberOf(std::string_view text);

/// What a request runs in: one transaction, the operator's session and one moment for all of it.
struct Context {
  Connection& db;
  const Session& session;
  Moment now;
};

/// Thrown by a request that refuses after it has begun to write: everything that it wrote is undone, and the
/// reply goes out.
struct Refused {
  Reply reply;
};

using Handler = Reply (*)(Context&, const Message&);

struct HandlerRow {
  std::string_view code;
  Handler run;
  bool changesSession = false;  ///< writes, although its row says that it changes no data of the library
};

/// The families of requests, each in a file of its own. OPOV is none of them: it checks a password, which no
/// transaction waits for.
[[nodiscard]] std::span<const HandlerRow> operatorRequests();
[[nodiscard]] std::span<const HandlerRow> listRequests();
[[nodiscard]] std::span<const HandlerRow> scheduleRequests();
[[nodiscard]] std::span<const HandlerRow> calendarRequests();
[[nodiscard]] std::span<const HandlerRow> bookingEndRequests();
[[nodiscard]] std::span<const HandlerRow> bookingReadRequests();
[[nodiscard]] std::span<const HandlerRow> bookingWriteRequests();
[[nodiscard]] std::span<const HandlerRow> bookingListRequests();
[[nodiscard]] std::span<const HandlerRow> placeCheckRequests();
[[nodiscard]] std::span<const HandlerRow> usageCheckRequests();
[[nodiscard]] std::span<const HandlerRow> patronRequests();
[[nodiscard]] std::span<const HandlerRow> mediaRequests();
[[nodiscard]] std::span<const HandlerRow> catalogueRequests();
[[nodiscard]] std::span<const HandlerRow> chargeRequests();
[[nodiscard]] std::span<const HandlerRow> dischargeRequests();
[[nodiscard]] std::span<const HandlerRow> circulationSearchRequests();
[[nodiscard]] std::span<const HandlerRow> equipmentListRequests();
[[nodiscard]] std::span<const HandlerRow> findRequests();

/// The function behind a code, or nullptr.
[[nodiscard]] const HandlerRow* findHandler(std::string_view code);

}  // namespace vantry::server

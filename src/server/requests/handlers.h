#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "server/access/sessions.h"
#include "server/base/moment.h"
#include "server/mail/mail_kinds.h"
#include "server/requests/reply.h"
#include "server/requests/search_limits.h"
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

class Connection;

/// What a request runs in: one transaction, the operator's session and one moment for all of it.
struct Context {
  Connection& db;
  const Session& session;
  Moment now;
  SearchLimits search = {};
  MailKinds mail = {};                  ///< what patrons are told by mail
  std::vector<std::int64_t> made = {};  ///< the keys of the records that the request made
  std::int64_t movedTo = 0;  ///< the location for which the session works from now on; 0 for as before
  Database* beside =
      nullptr;  ///< for reading large things in parts, where the store has processors of its own
};

/// Thrown by a request that refuses after it has begun to write: everything that it wrote is undone, and the
/// reply is sent.
struct Refused {
  Reply reply;
};

using Handler = Reply (*)(Context&, const Message&);

struct HandlerRow {
  std::string_view code;
  Handler run;
  bool changesSession = false;  ///< writes, although its row says that it changes no data of the library
  bool mayRunAgain = false;     ///< a repeated request does no harm, so that its reply need not be kept
};

/// The families of requests, each in a file of its own. OPOV is none of them: it checks a password, which no
/// transaction waits for.
[[nodiscard]] std::span<const HandlerRow> operatorHandlers();
[[nodiscard]] std::span<const HandlerRow> listHandlers();
[[nodiscard]] std::span<const HandlerRow> scheduleHandlers();
[[nodiscard]] std::span<const HandlerRow> calendarHandlers();
[[nodiscard]] std::span<const HandlerRow> bookingEndHandlers();
[[nodiscard]] std::span<const HandlerRow> bookingReadHandlers();
[[nodiscard]] std::span<const HandlerRow> bookingWriteHandlers();
[[nodiscard]] std::span<const HandlerRow> bookingListHandlers();
[[nodiscard]] std::span<const HandlerRow> placeCheckHandlers();
[[nodiscard]] std::span<const HandlerRow> usageCheckHandlers();
[[nodiscard]] std::span<const HandlerRow> patronHandlers();
[[nodiscard]] std::span<const HandlerRow> mediaHandlers();
[[nodiscard]] std::span<const HandlerRow> catalogueHandlers();
[[nodiscard]] std::span<const HandlerRow> chargeHandlers();
[[nodiscard]] std::span<const HandlerRow> dischargeHandlers();
[[nodiscard]] std::span<const HandlerRow> circulationSearchHandlers();
[[nodiscard]] std::span<const HandlerRow> equipmentListHandlers();
[[nodiscard]] std::span<const HandlerRow> findHandlers();
[[nodiscard]] std::span<const HandlerRow> inventoryRecordHandlers();
[[nodiscard]] std::span<const HandlerRow> inventoryListHandlers();
[[nodiscard]] std::span<const HandlerRow> inventoryWriteHandlers();
[[nodiscard]] std::span<const HandlerRow> remarkHandlers();
[[nodiscard]] std::span<const HandlerRow> maintenanceHandlers();
[[nodiscard]] std::span<const HandlerRow> membershipHandlers();
[[nodiscard]] std::span<const HandlerRow> staffHandlers();
[[nodiscard]] std::span<const HandlerRow> monitorHandlers();
[[nodiscard]] std::span<const HandlerRow> conflictHandlers();
[[nodiscard]] std::span<const HandlerRow> pickListHandlers();

/// The function behind a code, or nullptr.
[[nodiscard]] const HandlerRow* findHandler(std::string_view code);

}  // namespace vantry::server

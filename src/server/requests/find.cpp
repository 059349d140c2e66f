// The search. So far it knows patrons by their barcode, which the booking windows look up with it.

#include <array>

#include "server/base/search_text.h"
#include "server/desk/usage_check.h"
#include "server/requests/handlers.h"
#include "server/store/query_help.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

constexpr std::int64_t patronCategory = 6;
constexpr std::int64_t patronBarcode = 17;

/// Who may look for patrons: who works with them, and who books for them.
constexpr std::string_view patronRights = "PACOU PAV PAADD PAUPD PADEL BKV BKADD BKUPD BKCAN BKCHA BKDIS";

/// A search window counts what it shows with 16 bits. More than that is refused: a list that is cut off would
/// look like a whole one.
constexpr std::int64_t mostFound = 32767;

std::string barcodeSql(Connection& db) {
  return "select p.id, p.last_name, p.first_name, p.middle_name, g.id, g.name, c.barcode, s.id, s.name "
         "from patron_barcodes c join patrons p on p.id = c.patron_id "
         "join patron_groups g on g.id = c.patron_group_id join barcode_statuses s on s.id = c.status_id "
         "where " +
         inRange(db, "c.barcode") + " order by p.last_name, p.first_name, c.id limit " +
         std::to_string(mostFound + 1);
}

Reply patronsByBarcode(Context& context, std::string_view text) {
  const TextRange range = textRange(text);
  Reply reply;
  if (range.high.empty()) return reply.head(tags::SRCHCNT, "0");
  std::int64_t id = 0;
  std::int64_t group = 0;
  std::int64_t status = 0;
  std::array<std::string, 6> texts;
  const std::string sql = barcodeSql(context.db);
  Query query(context.db, sql);
  query.bind("low", range.low).bind("high", range.high);
  query.into(id, texts[0], texts[1], texts[2], group, texts[3], texts[4], status, texts[5]);
  while (query.next()) {
    reply.record()
        .set(tags::PID, id)
        .set(tags::PLN, texts[0])
        .set(tags::PFN, texts[1])
        .set(tags::PMN, texts[2])
        .set(tags::PGID, group)
        .set(tags::PGNM, texts[3])
        .set(tags::BNO, texts[4])
        .set(tags::BSI, status)
        .set(tags::BST, texts[5]);
  }
  if (reply.recordCount() > mostFound) refuseTag(tags::SRCHVAL);
  return reply.head(tags::SRCHCNT, reply.recordCount());
}

Reply find(Context& context, const Message& message) {
  if (message.number(tags::SRCHFOR) != patronCategory) refuseTag(tags::SRCHFOR);
  if (!holdsAnyRight(context.db, context.session, patronRights)) return Reply(rc::noRight);
  if (message.number(tags::SRCHTAG) != patronBarcode) refuseTag(tags::SRCHTAG);
  return patronsByBarcode(context, message.text(tags::SRCHVAL));
}

constexpr std::array rows{HandlerRow{"FIND", find}};

}  // namespace

std::span<const HandlerRow> findRequests() {
  return rows;
}

}  // namespace vantry::server

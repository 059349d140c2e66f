// The search. So far it knows patrons by their barcode, which the booking windows look up with it.

#include <array>

#include "server/access/rights.h"
#include "server/base/tag_refusal.h"
#include "server/desk/patron_store.h"
#include "server/requests/handlers.h"
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

Reply patronsByBarcode(Context& context, std::string_view text) {
  Reply reply;
  const auto add = [&](const FoundCard& card) {
    reply.record()
        .set(tags::PID, card.patronId)
        .set(tags::PLN, card.lastName)
        .set(tags::PFN, card.firstName)
        .set(tags::PMN, card.middleName)
        .set(tags::PGID, card.groupId)
        .set(tags::PGNM, card.group)
        .set(tags::BNO, card.barcode)
        .set(tags::BSI, card.statusId)
        .set(tags::BST, card.status);
  };
  visitCards(context.db, text, mostFound + 1, add);
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

std::span<const HandlerRow> findHandlers() {
  return rows;
}

}  // namespace vantry::server

// Who works here: locations, rights, staff.

#include <algorithm>
#include <array>
#include <functional>

#include "server/access/audit.h"
#include "server/access/operators.h"
#include "server/access/rights.h"
#include "server/desk/list_store.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// Operators see their own locations only.
Reply authorizedLocations(Context& context, const Message& message) {
  if (loginKey(message.text(tags::OI)) != context.session.login) return Reply(rc::noRight);
  Reply reply;
  for (const LocationRow& row : locationsOf(context.db, context.session.operatorId)) {
    reply.record().set(tags::LNA, row.name).set(tags::LOC, row.id).set(tags::OLN, row.library);
  }
  return reply;
}

/// Tells the rights, and from then on the session works for this location.
Reply rightsAtLocation(Context& context, const Message& message) {
  const std::int64_t location = message.number(tags::LOC);
  if (!mayWorkAt(context.db, context.session.operatorId, location)) {
    audit(context.db, &context.session, context.now, "location refused", message.text(tags::LOC), {});
    return Reply(rc::noRight);
  }
  context.movedTo = location;
  const std::vector<std::string> held = rightsAt(context.db, context.session.operatorId, location);
  Reply reply;
  for (const std::string_view code : wordsOf(findRequest("SLL")->head)) {
    reply.head(code, std::binary_search(held.begin(), held.end(), code, std::less<>{}) ? "Y" : "N");
  }
  return reply;
}

Reply allLocations(Context& context, const Message&) {
  Reply reply;
  for (const LocationRow& row : allLocations(context.db)) {
    reply.record().set(tags::LNA, row.name).set(tags::LOC, row.id);
  }
  return reply;
}

Reply staffList(Context& context, const Message&) {
  Reply reply;
  for (const StaffRow& row : staff(context.db)) {
    reply.record()
        .set(tags::PID, row.patronId)
        .set(tags::PATNM, row.name)
        .set(tags::PSTS, row.active ? "Y" : "N")
        .set(tags::BCNT, row.bookings);
  }
  return reply;
}

constexpr std::array rows{
    HandlerRow{"RLL", authorizedLocations},
    HandlerRow{"SLL", rightsAtLocation, true},
    HandlerRow{"GETLOCS", allLocations},
    HandlerRow{"GETOPS", staffList},
};

}  // namespace

std::span<const HandlerRow> operatorHandlers() {
  return rows;
}

}  // namespace vantry::server

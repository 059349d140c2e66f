// The staff list, and the counters of patrons.

#include <array>

#include "server/base/tag_refusal.h"
#include "server/desk/staff_store.h"
#include "server/requests/inventory_message.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

constexpr std::int64_t mostCounted = 99'999;

Reply addMember(Context& context, const Message& message) {
  const std::int64_t patron = message.number(tags::PID);
  if (!hasPatron(context.db, patron)) refuseTag(tags::PID);
  addStaff(context.db, patron, message.flag(tags::PSTS));
  return Reply();
}

/// One that is not on the list any more refuses the whole: another desk has deleted it.
Reply changeMembers(Context& context, const Message& message) {
  for (const std::int64_t patron : message.numbers(tags::PID)) {
    if (!setStaffActive(context.db, patron, message.flag(tags::PSTS))) throw Refused{Reply(rc::notFound)};
  }
  return Reply();
}

Reply removeMembers(Context& context, const Message& message) {
  for (const std::int64_t patron : message.numbers(tags::PID)) {
    removeStaff(context.db, patron, stampOf(context, 0));
  }
  return Reply();
}

Reply counters(Context& context, const Message& message) {
  const auto found = countersOf(context.db, message.number(tags::PID));
  if (!found) return Reply(rc::notFound);
  Reply reply;
  reply.head(tags::CURBK, found->current)
      .head(tags::LTRE, found->late)
      .head(tags::HBK, found->historical)
      .head(tags::CANBK, found->cancelled)
      .head(tags::UNBK, found->unclaimed)
      .head(tags::OI, found->setBy);
  return found->setAt == 0 ? reply : reply.head(tags::UDT, momentText(found->setAt));
}

std::int64_t counterOf(const Message& message, std::string_view tag) {
  const std::int64_t count = message.number(tag);
  if (message.text(tag).empty() || count < 0 || count > mostCounted) refuseTag(tag);
  return count;
}

Reply changeCounters(Context& context, const Message& message) {
  const std::int64_t patron = message.number(tags::PID);
  if (!hasPatron(context.db, patron)) return Reply(rc::notFound);
  const PatronCounters fresh{.current = 0,
                             .late = counterOf(message, tags::LTRE),
                             .historical = counterOf(message, tags::HBK),
                             .cancelled = counterOf(message, tags::CANBK),
                             .unclaimed = counterOf(message, tags::UNBK),
                             .setBy = {},
                             .setAt = 0};
  setCounters(context.db, patron, fresh, stampOf(context, 0));
  return Reply();
}

constexpr std::array rows{
    HandlerRow{"ADDOP", addMember}, HandlerRow{"UPDOPS", changeMembers}, HandlerRow{"DELOPS", removeMembers},
    HandlerRow{"GPAI", counters},   HandlerRow{"UPAI", changeCounters},
};

}  // namespace

std::span<const HandlerRow> staffHandlers() {
  return rows;
}

}  // namespace vantry::server

#include "server/requests/inventory_message.h"

#include "server/base/money_text.h"
#include "server/base/tag_refusal.h"
#include "words/tags.h"

namespace vantry::server {

std::string_view trimmedText(const Message& message, std::string_view tag) {
  std::string_view text = message.text(tag);
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

std::int64_t centsOf(const Message& message, std::string_view tag) {
  const std::optional<std::int64_t> cents = parseMoney(message.text(tag));
  if (!cents) refuseTag(tag);
  return *cents;
}

Moment dayOf(const Message& message, std::string_view tag) {
  if (message.text(tag).empty()) return 0;
  const std::optional<Moment> at = parseMoment(message.text(tag));
  if (!at) refuseTag(tag);
  return startOfDay(*at);
}

std::string dayText(Moment midnight) {
  return midnight == 0 ? std::string() : dateText(midnight);
}

Stamp stampOf(const Context& context, Moment last) {
  return {.at = nextStamp(last, context.now),
          .operatorId = context.session.operatorId,
          .locationId = context.session.locationId};
}

Reply createdReply(Context& context, std::string_view tag, std::int64_t id) {
  context.made.push_back(id);
  Reply reply;
  return reply.head(tag, id)
      .head(tags::CLN, context.session.locationName)
      .head(tags::CDT, momentText(context.now))
      .head(tags::CNM, context.session.operatorName);
}

Reply updatedReply(const Context& context, const Stamp& stamp) {
  Reply reply;
  return reply.head(tags::UDT, momentText(stamp.at))
      .head(tags::ULN, context.session.locationName)
      .head(tags::UNM, context.session.operatorName);
}

void addStamps(Reply& reply, const RecordStamps& stamps) {
  reply.head(tags::CNM, stamps.createdBy)
      .head(tags::CDT, momentText(stamps.createdAt))
      .head(tags::CLN, stamps.createdAtDesk);
  if (stamps.updatedAt == 0) return;
  reply.head(tags::UNM, stamps.updatedBy)
      .head(tags::UDT, momentText(stamps.updatedAt))
      .head(tags::ULN, stamps.updatedAtDesk);
}

}  // namespace vantry::server

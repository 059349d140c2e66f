#include "server/requests/serve.h"

#include <algorithm>

#include "server/desk/library_border.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

bool namesOthersBooking(Context& context, const Message& message) {
  const std::vector<std::int64_t> bookings = message.numbers(tags::BOOKID);
  return std::ranges::any_of(bookings, [&](std::int64_t id) {
    return id != 0 && isOfOtherLibrary(context.db, id, context.session.locationId);
  });
}

}  // namespace

Reply serve(const HandlerRow& handler, Context& context, const Message& message) {
  if (namesOthersBooking(context, message)) return Reply(rc::notFound);
  return handler.run(context, message);
}

}  // namespace vantry::server

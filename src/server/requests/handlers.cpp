#include "server/requests/handlers.h"

#include <algorithm>
#include <array>

#include "server/base/number_text.h"

namespace vantry::server {

namespace {

const TagValue* find(std::span<const TagValue> tags, std::string_view tag) {
  const auto found =
      std::find_if(tags.begin(), tags.end(), [&](const TagValue& each) { return each.tag == tag; });
  return found == tags.end() ? nullptr : &*found;
}

}  // namespace

bool Message::has(std::string_view tag) const {
  return find(tags_, tag) != nullptr;
}

std::string_view Message::text(std::string_view tag) const {
  const TagValue* found = find(tags_, tag);
  return found == nullptr ? std::string_view{} : std::string_view(found->value);
}

std::int64_t Message::number(std::string_view tag) const {
  return numberOf(text(tag));
}

std::vector<std::int64_t> Message::numbers(std::string_view tag) const {
  std::vector<std::int64_t> values;
  for (const TagValue& each : tags_) {
    if (each.tag == tag) values.push_back(numberOf(each.value));
  }
  return values;
}

const HandlerRow* findHandler(std::string_view code) {
  const std::array families{operatorHandlers(),        listHandlers(),          scheduleHandlers(),
                            calendarHandlers(),        bookingEndHandlers(),    bookingReadHandlers(),
                            bookingWriteHandlers(),    bookingListHandlers(),   placeCheckHandlers(),
                            usageCheckHandlers(),      patronHandlers(),        mediaHandlers(),
                            chargeHandlers(),          dischargeHandlers(),     circulationSearchHandlers(),
                            equipmentListHandlers(),   findHandlers(),          catalogueHandlers(),
                            inventoryRecordHandlers(), inventoryListHandlers(), inventoryWriteHandlers(),
                            remarkHandlers(),          maintenanceHandlers(),   membershipHandlers(),
                            staffHandlers(),           monitorHandlers(),       conflictHandlers(),
                            pickListHandlers()};
  for (const std::span<const HandlerRow> family : families) {
    for (const HandlerRow& row : family) {
      if (row.code == code) return &row;
    }
  }
  return nullptr;
}

}  // namespace vantry::server

#include "server/mail/mail_facts.h"

#include <nlohmann/json.hpp>

#include "server/desk/booking_reader.h"
#include "server/desk/booking_store.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// "2026-03-02 10:00".
std::string minuteText(Moment moment) {
  std::string text = momentText(moment);
  text.resize(text.rfind(':'));
  return text;
}

std::string thingsText(Connection& db, std::int64_t bookingId) {
  std::string text;
  const auto add = [&](const std::string& name) { text += (text.empty() ? "- " : "\n- ") + name; };
  for (const EquipmentLineRow& line : equipmentLinesOf(db, bookingId)) add(line.typeName);
  for (const MediaLineRow& line : mediaLinesOf(db, bookingId)) add(line.title);
  return text;
}

/// The names around a booking.
void readPlaces(Connection& db, std::int64_t bookingId, MailValues& values) {
  Query query(db,
              "select l.name, y.name, coalesce(r.name, k.name, t.name, '') from bookings b "
              "join locations l on l.id = b.location_id join libraries y on y.id = l.library_id "
              "left join rooms r on r.id = b.room_id left join locations k on k.id = b.pickup_location_id "
              "left join room_types t on t.id = b.wanted_room_type_id where b.id = :id");
  query.bind("id", bookingId);
  fetchOne(query, values["desk"], values["library"], values["place"]);
}

std::string mailName(const std::string& first, const std::string& last) {
  return first.empty() ? last : first + ' ' + last;
}

}  // namespace

Moment pastAt(Moment startsAt, Moment endsAt) {
  return endsAt > startsAt ? endsAt : startOfDay(endsAt) + day;
}

std::optional<BookingFacts> findBookingFacts(Connection& db, std::int64_t bookingId) {
  const std::optional<BookingHead> head = findBookingHead(db, bookingId);
  if (!head) return std::nullopt;
  BookingFacts facts{.patronId = head->administrative ? 0 : head->patronId,
                     .status = head->status,
                     .endsAt = pastAt(head->startsAt, head->endsAt),
                     .values = {}};
  facts.values["number"] = confirmationNumber(bookingId);
  facts.values["start"] = minuteText(head->startsAt);
  facts.values["end"] = minuteText(head->endsAt);
  facts.values["things"] = thingsText(db, bookingId);
  readPlaces(db, bookingId, facts.values);
  return facts;
}

std::string keptValues(const MailValues& values) {
  return nlohmann::json(values).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

MailValues valuesKept(const std::string& text) {
  MailValues values;
  const nlohmann::json kept = nlohmann::json::parse(text);
  for (const auto& [name, value] : kept.items()) values[name] = value.get<std::string>();
  return values;
}

std::optional<MailRecipient> findRecipient(Connection& db, std::int64_t patronId) {
  MailRecipient recipient;
  std::string first;
  std::string last;
  Query query(
      db, "select first_name, last_name, email from patrons where id = :id and withheld = 0 and email <> ''");
  query.bind("id", patronId);
  if (!fetchOne(query, first, last, recipient.address)) return std::nullopt;
  recipient.name = mailName(first, last);
  return recipient;
}

}  // namespace vantry::server

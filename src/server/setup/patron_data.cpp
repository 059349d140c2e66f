#include "server/setup/patron_data.h"

#include <array>
#include <set>
#include <vector>

#include <nlohmann/json.hpp>

#include "server/access/audit.h"
#include "server/access/audit_list.h"
#include "server/base/user_error.h"
#include "server/desk/booking_store.h"
#include "server/desk/forgotten_bookings.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

using Json = nlohmann::ordered_json;

/// The columns of a patron, with what they are called when they are told.
struct Told {
  const char* column;
  const char* name;
};
constexpr std::array texts{
    Told{"last_name", "last name"},
    Told{"first_name", "first name"},
    Told{"middle_name", "middle name"},
    Told{"social_number", "social security number"},
    Told{"institution_id", "institution id"},
    Told{"address1", "address 1"},
    Told{"address2", "address 2"},
    Told{"address3", "address 3"},
    Told{"address4", "address 4"},
    Told{"address5", "address 5"},
    Told{"city", "city"},
    Told{"province", "province"},
    Told{"postal_code", "postal code"},
    Told{"telephone", "telephone"},
    Told{"email", "e-mail"},
};
constexpr std::array numbers{
    Told{"hold_mail", "mail is held"},
    Told{"withheld", "asked not to be remembered"},
    Told{"late_returns", "late returns"},
    Told{"historical_bookings", "historical bookings"},
    Told{"cancelled_bookings", "canceled bookings"},
    Told{"unclaimed_bookings", "unclaimed bookings"},
    Told{"fees", "fees in hundredths"},
    Told{"coalesce((select 1 + active from staff where patron_id = patrons.id), 0)",
         "on the staff list (1 not active, 2 active)"},
};

std::int64_t requirePatron(Connection& db, std::string_view card) {
  std::int64_t patron = 0;
  std::int64_t count = 0;
  Query query(
      db,
      "select coalesce(min(patron_id), 0), count(distinct patron_id) from patron_barcodes where barcode = "
      ":card");
  query.bind("card", card);
  fetchOne(query, patron, count);
  if (count == 0) throw UserError("There is no card \"" + std::string(card) + "\".");
  if (count > 1)
    throw UserError("The card \"" + std::string(card) + "\" belongs to several patrons. Name another card.");
  return patron;
}

Json patronJson(Connection& db, std::int64_t patron) {
  std::string columns;
  for (const Told& each : texts) columns += std::string(each.column) + ", ";
  for (const Told& each : numbers) columns += std::string(each.column) + ", ";
  std::vector<std::string> values(texts.size());
  std::vector<std::int64_t> counts(numbers.size());
  Moment expires = 0;
  Query query(db, "select " + columns + "coalesce(expires_at, 0) from patrons where id = :id");
  query.bind("id", patron);
  for (std::string& each : values) query.into(each);
  for (std::int64_t& each : counts) query.into(each);
  fetchOne(query, expires);
  Json json;
  for (std::size_t each = 0; each < texts.size(); ++each) json[texts[each].name] = values[each];
  for (std::size_t each = 0; each < numbers.size(); ++each) json[numbers[each].name] = counts[each];
  json["expires"] = expires == 0 ? "" : momentText(expires);
  return json;
}

Json cardsJson(Connection& db, std::int64_t patron) {
  Json cards = Json::array();
  std::string barcode;
  std::string status;
  std::string group;
  Query query(
      db,
      "select c.barcode, s.name, g.name from patron_barcodes c join barcode_statuses s on s.id = "
      "c.status_id join patron_groups g on g.id = c.patron_group_id where c.patron_id = :id order by c.id");
  query.bind("id", patron).into(barcode, status, group);
  while (query.next()) cards.push_back({{"card", barcode}, {"status", status}, {"group", group}});
  return cards;
}

Json thingsJson(Connection& db, std::int64_t booking) {
  Json things = Json::array();
  std::string name;
  Query query(
      db,
      "select t.name from booking_equipment l join equipment_types t on t.id = l.equipment_type_id where "
      "l.booking_id = :equipment_of and l.in_room = 0 union all select t.title from booking_items l join "
      "titles t on t.id = l.title_id where l.booking_id = :media_of");
  query.bind("equipment_of", booking).bind("media_of", booking).into(name);
  while (query.next()) things.push_back(name);
  return things;
}

Json bookingsJson(Connection& db, std::int64_t patron) {
  Json bookings = Json::array();
  std::int64_t id = 0;
  int isRequester = 0;
  int status = 0;
  Moment from = 0;
  Moment until = 0;
  std::string desk;
  std::string note;
  Query query(
      db,
      "select b.id, case when b.patron_id = :patron then 1 else 0 end, b.status, b.starts_at, b.ends_at, "
      "l.name, b.note from bookings b join locations l on l.id = b.location_id where b.patron_id = :patron "
      "or b.pickup_patron_id = :patron or b.setup_staff_id = :patron or b.cleanup_staff_id = :patron "
      "order by b.id");
  query.bind("patron", patron).into(id, isRequester, status, from, until, desk, note);
  while (query.next()) {
    bookings.push_back({{"number", confirmationNumber(id)},
                        {"role", isRequester != 0 ? "requester" : "fetches it, or staff"},
                        {"status", status},
                        {"from", momentText(from)},
                        {"until", momentText(until)},
                        {"desk", desk},
                        // That of another requester is theirs.
                        {"note", isRequester != 0 ? note : std::string()}});
  }
  for (Json& each : bookings) each["things"] = thingsJson(db, std::stoll(each["number"].get<std::string>()));
  return bookings;
}

Json mailsJson(Connection& db, std::int64_t patron) {
  Json mails = Json::array();
  std::int64_t booking = 0;
  int state = 0;
  Moment at = 0;
  Query query(db, "select booking_id, state, queued_at from outbox where patron_id = :id order by id");
  query.bind("id", patron).into(booking, state, at);
  constexpr std::array states{"waits", "sent", "given up"};
  while (query.next())
    mails.push_back({{"booking", confirmationNumber(booking)},
                     {"state", states.at(static_cast<std::size_t>(state))},
                     {"at", momentText(at)}});
  return mails;
}

AuditedPatron auditedPatron(Connection& db, std::int64_t patron) {
  AuditedPatron audited{.patronId = patron, .bookings = {}};
  std::int64_t id = 0;
  Query query(
      db,
      "select id from bookings where patron_id = :patron or pickup_patron_id = :patron or setup_staff_id = "
      ":patron or cleanup_staff_id = :patron");
  query.bind("patron", patron).into(id);
  while (query.next()) audited.bookings.insert(confirmationNumber(id));
  return audited;
}

Json auditJson(Connection& db, std::int64_t patron) {
  Json rows = Json::array();
  const AuditTraces traces = findTraces(db, auditedPatron(db, patron), 0);
  Moment at = 0;
  std::string action;
  std::string subject;
  std::string detail;
  Query query(db, "select at, action, subject, detail from audit where id in (" + keysIn(db, "rows") +
                      ") order by id");
  query.bind("rows", keysText(traces.rows)).into(at, action, subject, detail);
  while (query.next())
    rows.push_back({{"at", momentText(at)}, {"action", action}, {"subject", subject}, {"detail", detail}});
  return rows;
}

void requireErasable(Connection& db, std::int64_t patron) {
  if (const std::int64_t open = countBookingsNotOver(db, patron); open > 0)
    throw UserError("Nothing was erased: the patron has " + std::to_string(open) +
                    " bookings that are pending or out. Cancel them or take them back first.");
  std::int64_t isStaff = 0;
  Query query(db, "select count(*) from staff where patron_id = :id");
  query.bind("id", patron);
  fetchOne(query, isStaff);
  if (isStaff > 0)
    throw UserError("Nothing was erased: the patron is on the staff list. Take them off the list first.");
}

void removeFrom(Connection& db, const char* sql, std::int64_t patron) {
  Query query(db, sql);
  query.bind("id", patron).run();
}

constexpr std::string_view writesSetting = "patron_writes";

}  // namespace

std::string tellPatron(Database& database, std::string_view card) {
  Json told;
  database.read([&](Connection& db) {
    const std::int64_t patron = requirePatron(db, card);
    told = Json();
    told["patron"] = patronJson(db, patron);
    told["cards"] = cardsJson(db, patron);
    told["bookings"] = bookingsJson(db, patron);
    told["mails"] = mailsJson(db, patron);
    told["audit"] = auditJson(db, patron);
  });
  return told.dump(2, ' ', false, Json::error_handler_t::replace);
}

std::int64_t patronWrites(Connection& db) {
  std::int64_t count = 0;
  Query query(db, "select cast(value as bigint) from settings where name = :name");
  query.bind("name", writesSetting);
  fetchOne(query, count);
  return count;
}

std::int64_t notePatronWrite(Connection& db) {
  std::int64_t count = 0;
  Query query(db,
              "insert into settings (name, value) values (:name, '1') on conflict (name) do update set value "
              "= cast(cast(settings.value as bigint) + 1 as text) returning cast(value as bigint)");
  query.bind("name", writesSetting);
  fetchOne(query, count);
  return count - 1;
}

ErasedPatron erasePatron(Database& database, std::string_view card, Moment now) {
  // The audit is read before the desks have to wait; what is added meanwhile is looked at afterwards.
  // Whatever tells of patrons is written one after another, so that it lies behind what was read, and nothing
  // of it can be under way beside the second look.
  AuditTraces early;
  database.read([&](Connection& db) {
    const std::int64_t patron = requirePatron(db, card);
    requireErasable(db, patron);
    early = findTraces(db, auditedPatron(db, patron), 0);
  });
  ErasedPatron erased;
  database.write([&](Connection& db) {
    const std::int64_t patron = requirePatron(db, card);
    requireErasable(db, patron);
    notePatronWrite(db);
    const AuditTraces late = findTraces(db, auditedPatron(db, patron), early.last);
    std::set<std::int64_t> rows(early.rows.begin(), early.rows.end());
    rows.insert(late.rows.begin(), late.rows.end());
    blankAuditRows(db, std::vector(rows.begin(), rows.end()));
    erased.auditRows = rows.size();
    erased.bookings = forgetPatronInBookings(db, patron, now).size();
    removeFrom(db, "delete from outbox where patron_id = :id", patron);
    removeFrom(db, "delete from patron_barcodes where patron_id = :id", patron);
    removeFrom(db, "delete from patrons where id = :id", patron);
    auditCommand(db, now, "patron erased", std::to_string(patron),
                 std::to_string(erased.bookings) + " bookings made anonymous");
  });
  return erased;
}

}  // namespace vantry::server

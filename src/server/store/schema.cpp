// What came after the first tables, and all steps in their order. A released step never changes: what comes
// later is a step of its own.

#include <array>
#include <utility>
#include <vector>

#include "server/base/catalogue_text.h"
#include "server/store/migrations.h"
#include "server/store/query.h"
#include "server/store/schema_search.h"
#include "server/store/schema_tables.h"

namespace vantry::server {

namespace {

constexpr std::string_view sealing = R"(
create table sealing_keys (
  id smallint primary key,
  open_key text not null,
  secret_key text not null
);
)";

constexpr std::string_view catalogue = R"(
alter table titles add column control_number text not null default '';
alter table titles add column published text not null default '';
alter table titles add column is_indexed smallint not null default 0;
create index titles_control_number on titles (control_number);
create index titles_unindexed on titles (id) where is_indexed = 0;
alter table holdings add column control_number text not null default '';
create table marc_records (
  id $KEY,
  title_id bigint not null references titles on delete cascade,
  holding_id bigint references holdings on delete cascade,
  record text not null
);
create unique index marc_records_of_titles on marc_records (title_id) where holding_id is null;
create unique index marc_records_of_holdings on marc_records (holding_id) where holding_id is not null;
create index marc_records_title on marc_records (title_id);
create table catalogue_keys (
  kind smallint not null,
@sqlite   word text not null,
@postgresql   word text collate "C" not null,
  title_id bigint not null references titles on delete cascade,
  primary key (kind, word, title_id)
@sqlite ) without rowid;
@postgresql );
create index catalogue_keys_title on catalogue_keys (title_id, kind, word);
)";

constexpr std::string_view repliesByOperator = R"(
create table replies_by_operator (
  operator_id bigint not null references operators,
  request_id text not null,
  code text not null,
  reply text not null,
  at bigint not null,
  primary key (operator_id, request_id)
);
insert into replies_by_operator (operator_id, request_id, code, reply, at)
  select s.operator_id, r.request_id, r.code, r.reply, r.at from replies r join sessions s on s.token = r.session
  where true on conflict do nothing;
drop table replies;
alter table replies_by_operator rename to replies;
create index replies_at on replies (at);
)";

// NULL differs from NULL, so that a desk could have two policies for administrative bookings.
constexpr std::string_view onePolicyEach = R"(
delete from policies where id not in
  (select max(id) from policies group by location_id, coalesce(patron_group_id, 0));
create unique index policies_of_desks on policies (location_id, coalesce(patron_group_id, 0));
)";

constexpr std::string_view singleRooms = R"(
create table policy_rooms (
  policy_id bigint not null references policies on delete cascade,
  room_id bigint not null references rooms on delete cascade,
  longest bigint not null,
  longest_unit text not null,
  primary key (policy_id, room_id)
);
create index policy_rooms_room on policy_rooms (room_id);
)";

// A save writes every index of what it adds, each on a page of its own: what nothing looks up by goes, and
// bookings without a room or a second patron stay out of their indexes.
constexpr std::string_view leanerSaves = R"(
drop index occupancy_family;
drop index bookings_pickup_patron;
create index bookings_pickup_patron on bookings (pickup_patron_id, starts_at) where pickup_patron_id is not null;
drop index bookings_room;
create index bookings_room on bookings (room_id, starts_at) where room_id is not null;
)";

// Nothing asks for the kind that a thing is of, but for the thing itself.
constexpr std::string_view namesWithoutMarks = R"(
alter table occupancy drop column family;
)";

/// Some of the patrons behind that key, with their last names.
std::vector<std::pair<std::int64_t, std::string>> namesBehind(Connection& db, std::int64_t key) {
  std::vector<std::pair<std::int64_t, std::string>> names;
  std::int64_t id = 0;
  std::string name;
  Query query(db, "select id, last_name from patrons where id > :key order by id limit 1000");
  query.bind("key", key).into(id, name);
  while (query.next()) names.emplace_back(id, name);
  return names;
}

/// Names are found without regard to accents, as titles are.
void foldNames(Connection& db) {
  for (auto names = namesBehind(db, 0); !names.empty(); names = namesBehind(db, names.back().first)) {
    for (const auto& [id, name] : names) {
      Query query(db, "update patrons set search_name = :search_name where id = :id");
      query.bind("search_name", catalogueKey(name)).bind("id", id).run();
    }
  }
}

// Clients know the status of a group that takes members by its key, 6. What the system sets by itself is no
// row.
constexpr std::string_view systemStatuses = R"(
insert into status_types (id, for_rooms, name, priority, effect)
  select 7, for_rooms, name, priority, effect from status_types where id = 6;
update equipment_statuses set status_id = 7 where status_id = 6;
delete from status_types where id = 6;
insert into status_types (id, for_rooms, name, priority, effect)
  select 9, 0, 'In Maintenance', 15, 3
  where not exists (select 1 from status_types where for_rooms = 0 and name = 'In Maintenance');
)";

// A room may have several details of one type.
constexpr std::string_view repeatedDetails = R"(
create table room_details_repeated (
  id $KEY,
  room_id bigint not null references rooms on delete cascade,
  room_detail_type_id bigint not null references room_detail_types,
  content text not null
);
insert into room_details_repeated (room_id, room_detail_type_id, content)
  select room_id, room_detail_type_id, content from room_details order by room_id, room_detail_type_id;
drop table room_details;
alter table room_details_repeated rename to room_details;
create index room_details_room on room_details (room_id);
create index equipment_current_room on equipment (current_room_id) where current_room_id is not null;
)";

// Pieces that can be added to a room or a group are counted by type, without a look at the pieces. Where a
// thing is now is known by its booking.
constexpr std::string_view looseEquipment = R"(
drop index equipment_current_room;
create index equipment_loose on equipment (equipment_type_id, group_id, room_id);
)";

// The item of a wish that was given one before the charge can be given up again. Pick-ups and overdue
// bookings are watched by location.
constexpr std::string_view monitor = R"(
alter table booking_items add column wished_holding_id bigint references holdings;
drop index bookings_pickup_open;
create index bookings_pickup_open on bookings (pickup_location_id, starts_at) where status in (0, 99, 999);
)";

// An id that comes back with other tags is told from the same request. What holds for the library as a whole,
// and is no table of its own.
constexpr std::string_view repliesByMessage = R"(
alter table replies add column digest text not null default '';
create table settings (
  name text primary key,
  value text not null
);
)";

constexpr std::string_view mailAddresses = R"(
alter table patrons add column email text not null default '';
)";

// The audit tells who works on the command line, and the code of a request. Live bookings are counted by
// their staff and found by the beginning of their number without a look at history. A booking that takes its
// room holds what it names in it.
constexpr std::string_view borders = R"(
alter table audit add column system_user text not null default '';
alter table audit add column code text not null default '';
create table housekeeping (
  id smallint primary key,
  last_at bigint not null
);
drop index bookings_setup_staff;
drop index bookings_cleanup_staff;
create index bookings_setup_staff on bookings (setup_staff_id, status) where setup_staff_id is not null;
create index bookings_cleanup_staff on bookings (cleanup_staff_id, status) where cleanup_staff_id is not null;
create index locations_library on locations (library_id);
create index bookings_live on bookings (status, id) where status in (0, 99, 999);
insert into occupancy (kind, thing, starts_at, ends_at, booking_id, line_id)
  select 1, e.id, o.starts_at, o.ends_at, o.booking_id, min(l.id) from occupancy o
  join booking_equipment l on l.booking_id = o.booking_id and l.in_room = 1 and l.returned_at is null
  join equipment e on e.id = l.equipment_id or e.group_id = l.equipment_id
  where o.kind = 3 and not exists (select 1 from occupancy x where x.kind = 1 and x.thing = e.id and
    x.starts_at < o.ends_at and x.ends_at > o.starts_at)
  group by e.id, o.starts_at, o.ends_at, o.booking_id on conflict do nothing;
insert into longest_occupancy (kind, seconds) select 1, seconds from longest_occupancy where kind = 3
  on conflict (kind) do update set seconds = excluded.seconds where longest_occupancy.seconds < excluded.seconds;
)";

// What a wish is given is read in the order in which people walk, and no further than needed; lists of a type
// are in order without being sorted.
constexpr std::string_view piecesInOrder = R"(
drop index equipment_type;
create index equipment_type on equipment (equipment_type_id, location_id, number, id);
create index equipment_type_number on equipment (equipment_type_id, number, id);
)";

// A number of the catalogue counts together with whose number it is, which the records tell. Titles without a
// number are known by a fingerprint, which the indexing gives those of old. A field of a stored record is a
// line of its tag, indicators and text.
constexpr std::string_view titleIdentity = R"(
alter table titles add column control_source text not null default '';
alter table titles add column fingerprint text not null default '';
create index titles_fingerprint on titles (fingerprint) where fingerprint <> '';
@sqlite update titles set control_source = v.source from (select title_id,
@sqlite   trim(substr(rest, 1, instr(rest, char(10)) - 1)) as source from (select title_id,
@sqlite   substr(record, instr(record, char(10, 48, 48, 51, 9, 9)) + 6) as rest from marc_records
@sqlite   where holding_id is null and instr(record, char(10, 48, 48, 51, 9, 9)) > 0)) v where titles.id = v.title_id;
@postgresql update titles set control_source = trim(split_part(split_part(r.record, E'\n003\t\t', 2), E'\n', 1))
@postgresql   from marc_records r where r.title_id = titles.id and r.holding_id is null;
update titles set is_indexed = 0 where control_number = '' and
  id in (select title_id from marc_records where holding_id is null);
)";

// A feed is of a desk, a room or a patron group; of its secret address the store only has a hash. Refusals
// are counted by day: what is refused writes nothing else.
constexpr std::string_view feedsAndRefusals = R"(
create table feeds (
  id $KEY,
  secret text not null unique,
  library_id bigint not null references libraries,
  location_id bigint references locations,
  room_id bigint references rooms on delete cascade,
  patron_group_id bigint references patron_groups,
  shows_names smallint not null default 0,
  days_back bigint not null,
  days_ahead bigint not null,
  created_at bigint not null
);
create index feeds_room on feeds (room_id) where room_id is not null;
create table refusals (
  on_day bigint not null,
  location_id bigint not null references locations,
  reason bigint not null,
  times bigint not null,
  primary key (on_day, location_id, reason)
);
)";

// Mails to be sent, without names: they are written when they are sent. Bookings that are over are made
// anonymous once; those that are not yet are found without a look at the others.
constexpr std::string_view mailAndRetention = R"(
create table outbox (
  id $KEY,
  kind smallint not null,
  booking_id bigint not null,
  patron_id bigint not null,
  about bigint not null default 0,
  state smallint not null default 0,
  revision bigint not null default 0,
  queued_at bigint not null,
  due_at bigint not null,
  leased_until bigint not null default 0,
  tries bigint not null default 0,
  sent_at bigint,
  kept text not null default '',
  told text not null default '',
  fault text not null default ''
);
create unique index outbox_news on outbox (booking_id, patron_id) where state = 0 and kind < 4;
create unique index outbox_reminders on outbox (booking_id, kind, about) where kind > 3;
create index outbox_waiting on outbox (due_at, id) where state = 0;
create index outbox_settled on outbox (queued_at) where state <> 0;
create index outbox_booking on outbox (booking_id, patron_id);
alter table bookings add column forgotten_at bigint;
create index bookings_remembered on bookings (ends_at) where status in (1, 2, 3, 4) and forgotten_at is null;
)";

// The password of an operator may be one of the house's directory.
constexpr std::string_view byDirectory = R"(
alter table operators add column by_directory smallint not null default 0;
)";

// Mails of one save, which share a letter: the first booking is the name of the save.
constexpr std::string_view mailsOfOneSave = R"(
alter table outbox add column save bigint not null default 0;
create index outbox_saves on outbox (save) where state = 0 and save > 0;
)";

// One range of an index leads from a type of equipment to the live bookings that ask for it. What only stands
// in the booked room, and what is no equipment, has no type here.
constexpr std::string_view typesOfTheTaken = R"(
alter table occupancy add column type_id bigint;
update occupancy set type_id = l.equipment_type_id from booking_equipment l
  where occupancy.kind in (1, 11) and l.id = occupancy.line_id and l.in_room = 0;
create index occupancy_type on occupancy (type_id, booking_id) where type_id is not null;
)";

// A search for what most pieces are counts all of them.
constexpr std::string_view countedPieces = R"(
create index equipment_pieces on equipment (id) where is_group = 0;
)";

const std::array steps{
    Migration{1, "accounts", accounts},
    Migration{2, "inventory", inventory},
    Migration{3, "patrons and media", patronsAndMedia},
    Migration{4, "policies and calendars", policies},
    Migration{5, "bookings", bookings},
    Migration{6, "fixed lists", fixedLists},
    Migration{7, "sealing keys", sealing},
    Migration{8, "catalogue", catalogue},
    Migration{9, "replies by operator", repliesByOperator},
    Migration{10, "one policy for each group", onePolicyEach},
    Migration{11, "longest use of single rooms", singleRooms},
    Migration{12, "leaner saves", leanerSaves},
    Migration{13, "names without marks", namesWithoutMarks, foldNames},
    Migration{14, "statuses of the system", systemStatuses},
    Migration{15, "repeated details of rooms", repeatedDetails},
    Migration{16, "search", searchTables, foldForSearch},
    Migration{17, "loose equipment", looseEquipment},
    Migration{18, "monitor", monitor},
    Migration{19, "replies by message, settings", repliesByMessage},
    Migration{20, "mail addresses", mailAddresses},
    Migration{21, "borders", borders},
    Migration{22, "pieces in order", piecesInOrder},
    Migration{23, "identity of titles", titleIdentity},
    Migration{24, "feeds, counted refusals", feedsAndRefusals},
    Migration{25, "mail and retention", mailAndRetention},
    Migration{26, "operators of the directory", byDirectory},
    Migration{27, "mails of one save", mailsOfOneSave},
    Migration{28, "types of what is taken", typesOfTheTaken},
    Migration{29, "counted pieces", countedPieces},
};

}  // namespace

std::span<const Migration> migrations() {
  return steps;
}

}  // namespace vantry::server

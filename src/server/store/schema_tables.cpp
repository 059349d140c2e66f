#include "server/store/schema_tables.h"

namespace vantry::server {

const std::string_view accounts = R"(
create table libraries (
  id $KEY,
  name text not null
);
create table locations (
  id $KEY,
  library_id bigint not null references libraries,
  name text not null unique
);
create table operators (
  id $KEY,
  login text not null unique,
  name text not null,
  password text not null,
  active smallint not null default 1
);
create table operator_locations (
  operator_id bigint not null references operators,
  location_id bigint not null references locations,
  primary key (operator_id, location_id)
);
create table operator_rights (
  operator_id bigint not null references operators,
  location_id bigint not null references locations,
  code text not null,
  primary key (operator_id, location_id, code)
);
create table sessions (
  token text primary key,
  operator_id bigint not null references operators,
  location_id bigint references locations,
  expires_at bigint not null
);
create index sessions_operator on sessions (operator_id);
create index sessions_expiry on sessions (expires_at);
create table login_failures (
  id $KEY,
  login text not null,
  address text not null,
  at bigint not null
);
create index login_failures_login on login_failures (login, at);
create index login_failures_address on login_failures (address, at);
create table replies (
  session text not null,
  request_id text not null,
  code text not null,
  reply text not null,
  at bigint not null,
  primary key (session, request_id)
);
create index replies_at on replies (at);
create table audit (
  id $KEY,
  at bigint not null,
  operator_id bigint,
  location_id bigint,
  action text not null,
  subject text not null,
  detail text not null
);
create index audit_at on audit (at);
)";

const std::string_view inventory = R"(
create table room_types (
  id $KEY,
  name text not null unique,
  storage smallint not null default 0
);
create table rooms (
  id $KEY,
  location_id bigint not null references locations,
  room_type_id bigint not null references room_types,
  number text not null,
  name text not null,
  capacity bigint not null default 0,
  created_at bigint not null, created_by bigint, created_location bigint,
  updated_at bigint, updated_by bigint, updated_location bigint
);
create index rooms_type on rooms (room_type_id);
create index rooms_location on rooms (location_id);
create table room_detail_types (
  id $KEY,
  name text not null unique
);
create table room_details (
  room_id bigint not null references rooms on delete cascade,
  room_detail_type_id bigint not null references room_detail_types,
  content text not null,
  primary key (room_id, room_detail_type_id)
);
create table equipment_types (
  id $KEY,
  name text not null,
  of_groups smallint not null default 0,
  setup_minutes bigint not null default 0,
  cleanup_minutes bigint not null default 0,
  unique (name, of_groups)
);
create table equipment (
  id $KEY,
  is_group smallint not null default 0,
  equipment_type_id bigint not null references equipment_types,
  group_id bigint references equipment,
  number text not null,
  name text not null default '',
  maker text not null default '',
  model text not null default '',
  serial text not null default '',
  format text not null default '',
  supplier text not null default '',
  purchase_value bigint not null default 0,
  replacement_value bigint not null default 0,
  acquired_on bigint,
  next_maintenance_on bigint,
  location_id bigint not null references locations,
  room_id bigint references rooms,
  current_room_id bigint references rooms,
  created_at bigint not null, created_by bigint, created_location bigint,
  updated_at bigint, updated_by bigint, updated_location bigint
);
create index equipment_type on equipment (equipment_type_id, location_id);
create index equipment_group on equipment (group_id);
create index equipment_room on equipment (room_id);
create index equipment_number on equipment (number);
@postgresql create index equipment_number_bytes on equipment (number collate "C");
create table barcode_statuses (
  id $KEY,
  name text not null,
  active smallint not null
);
create table equipment_barcodes (
  equipment_id bigint not null references equipment on delete cascade,
  barcode text not null,
  status_id bigint not null references barcode_statuses,
  primary key (equipment_id, barcode)
);
create index equipment_barcodes_code on equipment_barcodes (barcode);
@postgresql create index equipment_barcodes_code_bytes on equipment_barcodes (barcode collate "C");
create table status_types (
  id $KEY,
  for_rooms smallint not null,
  name text not null,
  priority bigint not null,
  effect smallint not null
);
create table equipment_statuses (
  equipment_id bigint not null references equipment on delete cascade,
  status_id bigint not null references status_types,
  applied_at bigint not null,
  note text not null default '',
  primary key (equipment_id, status_id)
);
create table room_statuses (
  room_id bigint not null references rooms on delete cascade,
  status_id bigint not null references status_types,
  applied_at bigint not null,
  note text not null default '',
  primary key (room_id, status_id)
);
create table note_types (
  id $KEY,
  for_rooms smallint not null,
  name text not null,
  popup_kind smallint not null
);
create table equipment_notes (
  equipment_id bigint not null references equipment on delete cascade,
  note_type_id bigint not null references note_types,
  content text not null,
  updated_at bigint not null,
  operator_id bigint,
  primary key (equipment_id, note_type_id)
);
create table room_notes (
  room_id bigint not null references rooms on delete cascade,
  note_type_id bigint not null references note_types,
  content text not null,
  updated_at bigint not null,
  operator_id bigint,
  primary key (room_id, note_type_id)
);
create table maintenance_types (
  id $KEY,
  name text not null unique
);
create table maintenance (
  id $KEY,
  equipment_id bigint not null references equipment on delete cascade,
  came_in_on bigint not null,
  went_out_on bigint,
  note text not null default '',
  created_at bigint not null, created_by bigint, created_location bigint,
  updated_at bigint, updated_by bigint, updated_location bigint
);
create index maintenance_month on maintenance (came_in_on);
create index maintenance_equipment on maintenance (equipment_id, came_in_on);
create table maintenance_lines (
  id $KEY,
  maintenance_id bigint not null references maintenance on delete cascade,
  maintenance_type_id bigint not null references maintenance_types,
  content text not null
);
create index maintenance_lines_record on maintenance_lines (maintenance_id);
)";

const std::string_view patronsAndMedia = R"(
create table patron_groups (
  id $KEY,
  name text not null unique
);
create table patrons (
  id $KEY,
  last_name text not null,
  first_name text not null default '',
  middle_name text not null default '',
  search_name text not null,
  social_number text not null default '',
  institution_id text not null default '',
  address1 text not null default '',
  address2 text not null default '',
  address3 text not null default '',
  address4 text not null default '',
  address5 text not null default '',
  city text not null default '',
  province text not null default '',
  postal_code text not null default '',
  telephone text not null default '',
  expires_at bigint,
  hold_mail smallint not null default 0,
  withheld smallint not null default 0,
  late_returns bigint not null default 0,
  historical_bookings bigint not null default 0,
  cancelled_bookings bigint not null default 0,
  unclaimed_bookings bigint not null default 0,
  fees bigint not null default 0,
  counters_set_by bigint,
  counters_set_at bigint
);
create index patrons_name on patrons (search_name);
@postgresql create index patrons_name_bytes on patrons (search_name collate "C");
create index patrons_institution on patrons (institution_id);
create table patron_barcodes (
  id $KEY,
  patron_id bigint not null references patrons on delete cascade,
  patron_group_id bigint not null references patron_groups,
  barcode text not null,
  status_id bigint not null references barcode_statuses
);
create index patron_barcodes_code on patron_barcodes (barcode);
@postgresql create index patron_barcodes_code_bytes on patron_barcodes (barcode collate "C");
create index patron_barcodes_patron on patron_barcodes (patron_id);
create table staff (
  patron_id bigint primary key references patrons,
  active smallint not null default 1
);
create table media_types (
  id $KEY,
  name text not null unique
);
create table media_type_equipment (
  media_type_id bigint not null references media_types,
  equipment_type_id bigint not null references equipment_types,
  primary key (media_type_id, equipment_type_id)
);
create table titles (
  id $KEY,
  title text not null,
  search_title text not null,
  author text not null default ''
);
create index titles_search on titles (search_title);
create table holdings (
  id $KEY,
  title_id bigint not null references titles on delete cascade,
  location_id bigint not null references locations,
  call_number text not null default '',
  search_call_number text not null default '',
  call_number_kind text not null default ''
);
create index holdings_title on holdings (title_id);
create index holdings_call_number on holdings (call_number_kind, search_call_number);
@postgresql create index holdings_call_number_bytes on holdings (call_number_kind, search_call_number collate "C");
create table items (
  id $KEY,
  holding_id bigint not null references holdings on delete cascade,
  title_id bigint not null references titles on delete cascade,
  location_id bigint not null references locations,
  media_type_id bigint references media_types,
  barcode text not null default '',
  item_type text not null default '',
  description text not null default '',
  enumeration text not null default '',
  chronology text not null default '',
  year text not null default '',
  copy bigint not null default 1,
  status text not null default ''
);
create index items_holding on items (holding_id);
create index items_title on items (title_id);
create index items_barcode on items (barcode);
@postgresql create index items_barcode_bytes on items (barcode collate "C");
)";

const std::string_view policies = R"(
create table calendars (
  id $KEY,
  location_id bigint not null references locations,
  kind smallint not null,
  description text not null,
  starts_on bigint not null,
  ends_on bigint not null
);
create index calendars_span on calendars (location_id, kind, starts_on);
create table calendar_days (
  calendar_id bigint not null references calendars on delete cascade,
  weekday smallint not null,
  is_open smallint not null,
  opens_at bigint not null default 0,
  closes_at bigint not null default 0,
  primary key (calendar_id, weekday)
);
create table calendar_exceptions (
  calendar_id bigint not null references calendars on delete cascade,
  on_date bigint not null,
  is_open smallint not null,
  opens_at bigint not null default 0,
  closes_at bigint not null default 0,
  primary key (calendar_id, on_date)
);
create table policies (
  id $KEY,
  location_id bigint not null references locations,
  patron_group_id bigint references patron_groups,
  most_bookings bigint not null default -1,
  most_items bigint not null default -1,
  most_equipment bigint not null default -1,
  most_late_returns bigint not null default -1,
  most_cancelled bigint not null default -1,
  most_unclaimed bigint not null default -1,
  most_fees bigint not null default -1,
  warning_minutes bigint not null default 0,
  early_charge_minutes bigint not null default 60,
  unique (location_id, patron_group_id)
);
create table policy_locations (
  policy_id bigint not null references policies on delete cascade,
  location_id bigint not null references locations,
  security smallint not null default 1,
  primary key (policy_id, location_id)
);
create table policy_equipment_types (
  policy_id bigint not null references policies on delete cascade,
  equipment_type_id bigint not null references equipment_types,
  may_book smallint not null,
  may_deliver smallint not null,
  may_pick_up smallint not null,
  longest bigint not null default 0,
  longest_unit text not null default 'U',
  primary key (policy_id, equipment_type_id)
);
create table policy_media_types (
  policy_id bigint not null references policies on delete cascade,
  media_type_id bigint not null references media_types,
  may_book smallint not null,
  may_deliver smallint not null,
  may_pick_up smallint not null,
  longest bigint not null default 0,
  longest_unit text not null default 'U',
  primary key (policy_id, media_type_id)
);
create table policy_room_types (
  policy_id bigint not null references policies on delete cascade,
  room_type_id bigint not null references room_types,
  may_deliver smallint not null,
  may_schedule smallint not null,
  longest bigint not null default 0,
  longest_unit text not null default 'U',
  primary key (policy_id, room_type_id)
);
)";

const std::string_view bookings = R"(
create table bookings (
  id $KEY,
  location_id bigint not null references locations,
  booking_type smallint not null,
  status smallint not null default 0,
  administrative smallint not null default 0,
  by_wizard smallint not null default 0,
  patron_id bigint references patrons,
  patron_group_id bigint references patron_groups,
  pickup_patron_id bigint references patrons,
  starts_at bigint not null,
  ends_at bigint not null,
  setup_minutes bigint not null default 0,
  cleanup_minutes bigint not null default 0,
  setup_staff_id bigint references patrons,
  cleanup_staff_id bigint references patrons,
  room_id bigint references rooms,
  pickup_location_id bigint references locations,
  wanted_room_type_id bigint references room_types,
  wanted_location_id bigint references locations,
  wanted_capacity bigint not null default 0,
  wanted_capacity_op smallint not null default 0,
  room_charged_at bigint,
  room_returned_at bigint,
  item_count bigint not null default 0,
  equipment_count bigint not null default 0,
  note text not null default '',
  charged_at bigint,
  returned_at bigint,
  created_at bigint not null, created_by bigint, created_location bigint,
  updated_at bigint not null, updated_by bigint, updated_location bigint
);
create index bookings_day on bookings (location_id, starts_at);
create index bookings_patron on bookings (patron_id, starts_at);
create index bookings_pickup_patron on bookings (pickup_patron_id, starts_at);
create index bookings_room on bookings (room_id, starts_at);
create index bookings_setup_staff on bookings (setup_staff_id) where setup_staff_id is not null;
create index bookings_cleanup_staff on bookings (cleanup_staff_id) where cleanup_staff_id is not null;
create index bookings_due on bookings (ends_at) where status in (0, 99);
create index bookings_current on bookings (patron_id) where status in (0, 99, 999);
create index bookings_room_out on bookings (room_id) where room_charged_at is not null and room_returned_at is null;
create table booking_items (
  id $KEY,
  booking_id bigint not null references bookings on delete cascade,
  place bigint not null,
  media_type_id bigint references media_types,
  title_id bigint not null references titles,
  holding_id bigint references holdings,
  item_id bigint references items,
  is_generic smallint not null default 0,
  charged_at bigint,
  returned_at bigint
);
create index booking_items_booking on booking_items (booking_id, place);
create index booking_items_item on booking_items (item_id);
create index booking_items_out on booking_items (item_id) where charged_at is not null and returned_at is null;
create table booking_equipment (
  id $KEY,
  booking_id bigint not null references bookings on delete cascade,
  place bigint not null,
  equipment_id bigint references equipment,
  equipment_type_id bigint not null references equipment_types,
  is_generic smallint not null default 0,
  inferred smallint not null default 0,
  in_room smallint not null default 0,
  charged_at bigint,
  returned_at bigint
);
create index booking_equipment_booking on booking_equipment (booking_id, place);
create index booking_equipment_piece on booking_equipment (equipment_id);
create index booking_equipment_out on booking_equipment (equipment_id) where charged_at is not null and returned_at is null;
create table occupancy (
  id $KEY,
  kind smallint not null,
  thing bigint not null,
  family bigint not null,
  starts_at bigint not null,
  ends_at bigint not null,
  booking_id bigint not null references bookings on delete cascade,
  line_id bigint
);
create index occupancy_thing on occupancy (kind, thing, starts_at, ends_at);
create index occupancy_family on occupancy (kind, family, starts_at, ends_at);
create index occupancy_booking on occupancy (booking_id);
@postgresql create extension if not exists btree_gist;
@postgresql alter table occupancy add constraint occupancy_single exclude using gist (kind with =, thing with =, int8range(starts_at, ends_at) with &&) where (kind < 10);
create table longest_occupancy (
  kind smallint primary key,
  seconds bigint not null
);
)";

// Lists whose entries have a meaning for the server. Their keys are fixed.
const std::string_view fixedLists = R"(
insert into barcode_statuses (id, name, active) values
  (1, 'Active', 1), (2, 'Inactive', 0), (3, 'Lost', 0), (4, 'Expired', 0);
insert into note_types (id, for_rooms, name, popup_kind) values
  (1, 0, 'General Note', 0), (2, 0, 'Booking Popup', 1), (3, 0, 'Charge Popup', 2), (4, 0, 'Discharge Popup', 3),
  (11, 1, 'General Note', 0), (12, 1, 'Booking Popup', 1), (13, 1, 'Charge Popup', 7),
  (14, 1, 'Discharge Popup', 8);
insert into status_types (id, for_rooms, name, priority, effect) values
  (1, 0, 'Missing', 10, 3), (2, 0, 'Out for Repair', 20, 3), (3, 0, 'Damaged', 30, 1),
  (4, 0, 'Incomplete', 40, 1), (5, 0, 'Cleaning Due', 50, 2), (6, 0, 'New', 60, 2),
  (11, 1, 'Closed', 10, 3), (12, 1, 'Under Renovation', 20, 3), (13, 1, 'Equipment Faulty', 30, 1),
  (14, 1, 'Reserved for Staff', 40, 1);
@postgresql alter table barcode_statuses alter column id restart with 101;
@postgresql alter table note_types alter column id restart with 101;
@postgresql alter table status_types alter column id restart with 101;
)";

}  // namespace vantry::server

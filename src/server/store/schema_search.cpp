#include "server/store/schema_search.h"

#include <array>
#include <utility>
#include <vector>

#include "server/base/catalogue_text.h"
#include "server/store/query.h"

namespace vantry::server {

// Those that are over and those that are not have indexes of their own, so that no search for the present
// reads history.
const std::string_view searchTables = R"(
alter table equipment add column search_number text not null default '';
alter table equipment add column search_maker text not null default '';
alter table equipment add column search_model text not null default '';
alter table equipment add column search_serial text not null default '';
alter table rooms add column search_number text not null default '';
alter table rooms add column search_name text not null default '';
alter table patrons add column search_first text not null default '';
alter table patrons add column search_middle text not null default '';
alter table patrons add column search_social text not null default '';
alter table patrons add column search_institution text not null default '';
@sqlite create index equipment_search_number on equipment (search_number);
@sqlite create index equipment_search_maker on equipment (search_maker);
@sqlite create index equipment_search_model on equipment (search_model);
@sqlite create index equipment_search_serial on equipment (search_serial);
@sqlite create index patrons_search_first on patrons (search_first);
@sqlite create index patrons_search_middle on patrons (search_middle);
@sqlite create index patrons_search_social on patrons (search_social);
@sqlite create index patrons_search_institution on patrons (search_institution);
@postgresql create index equipment_search_number on equipment (search_number collate "C");
@postgresql create index equipment_search_maker on equipment (search_maker collate "C");
@postgresql create index equipment_search_model on equipment (search_model collate "C");
@postgresql create index equipment_search_serial on equipment (search_serial collate "C");
@postgresql create index patrons_search_first on patrons (search_first collate "C");
@postgresql create index patrons_search_middle on patrons (search_middle collate "C");
@postgresql create index patrons_search_social on patrons (search_social collate "C");
@postgresql create index patrons_search_institution on patrons (search_institution collate "C");
create index equipment_location on equipment (location_id);
create index equipment_next_maintenance on equipment (next_maintenance_on) where next_maintenance_on is not null;
create index equipment_statuses_status on equipment_statuses (status_id);
create index maintenance_lines_type on maintenance_lines (maintenance_type_id, maintenance_id);
create index bookings_open on bookings (location_id, starts_at) where status in (0, 99, 999);
create index bookings_room_open on bookings (room_id) where status in (0, 99, 999);
create index bookings_over on bookings (ends_at) where status in (1, 2, 3, 4);
create index booking_items_title on booking_items (title_id);
create index booking_equipment_type on booking_equipment (equipment_type_id, booking_id);
)";

namespace {

struct FoldedColumn {
  std::string_view table;
  std::string_view source;
  std::string_view folded;
};
constexpr std::array foldedColumns{
    FoldedColumn{"equipment", "number", "search_number"},
    FoldedColumn{"equipment", "maker", "search_maker"},
    FoldedColumn{"equipment", "model", "search_model"},
    FoldedColumn{"equipment", "serial", "search_serial"},
    FoldedColumn{"rooms", "number", "search_number"},
    FoldedColumn{"rooms", "name", "search_name"},
    FoldedColumn{"patrons", "last_name", "search_name"},
    FoldedColumn{"patrons", "first_name", "search_first"},
    FoldedColumn{"patrons", "middle_name", "search_middle"},
    FoldedColumn{"patrons", "social_number", "search_social"},
    FoldedColumn{"patrons", "institution_id", "search_institution"},
};

using KeyedText = std::pair<std::int64_t, std::string>;

std::vector<KeyedText> textsBehind(Connection& db, const FoldedColumn& column, std::int64_t key) {
  std::vector<KeyedText> texts;
  KeyedText row;
  Query query(db, "select id, " + std::string(column.source) + " from " + std::string(column.table) +
                      " where id > :key order by id limit 1000");
  query.bind("key", key).into(row.first, row.second);
  while (query.next()) texts.push_back(row);
  return texts;
}

void fold(Connection& db, const FoldedColumn& column) {
  const std::string sql = "update " + std::string(column.table) + " set " + std::string(column.folded) +
                          " = :folded where id = :id";
  for (auto texts = textsBehind(db, column, 0); !texts.empty();
       texts = textsBehind(db, column, texts.back().first)) {
    for (const auto& [id, text] : texts) {
      if (text.empty()) continue;
      Query query(db, sql);
      query.bind("folded", catalogueKey(text)).bind("id", id).run();
    }
  }
}

}  // namespace

void foldForSearch(Connection& db) {
  for (const FoldedColumn& column : foldedColumns) fold(db, column);
  db.run("update titles set is_indexed = 0");
}

}  // namespace vantry::server

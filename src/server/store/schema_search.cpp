#include "server/store/schema_search.h"

#include <array>
#include <utility>
#include <vector>

#include "server/base/catalogue_text.h"
#include "server/store/query.h"
#include "server/store/query_help.h"
#include "words/json_text.h"

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
create index bookings_pickup_open on bookings (pickup_location_id) where status in (0, 99, 999);
create index bookings_wanted_open on bookings (wanted_location_id)
  where status in (0, 99, 999) and wanted_location_id is not null;
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
                      " where id > :key and " + std::string(column.source) + " <> '' order by id limit 1000");
  query.bind("key", key).into(row.first, row.second);
  while (query.next()) texts.push_back(row);
  return texts;
}

/// Rows of an array of [id, text], bound as ":rows".
std::string_view rowsOfArray(Connection& db) {
  if (db.dialect().kind == Dialect::Kind::Sqlite)
    return "select json_extract(value, '$[0]') as id, json_extract(value, '$[1]') as folded from "
           "json_each(:rows)";
  return "select cast(value->>0 as bigint) as id, value->>1 as folded from json_array_elements(cast(:rows as "
         "json))";
}

std::string foldedRows(const std::vector<KeyedText>& texts) {
  std::string rows;
  for (const auto& [id, text] : texts) {
    rows += (rows.empty() ? "[[" : ",[") + std::to_string(id) + ",";
    appendJsonText(rows, catalogueKey(text));
    rows += "]";
  }
  return rows + "]";
}

/// A thousand rows with one statement, since a large library has a million texts.
void fold(Connection& db, const FoldedColumn& column) {
  const std::string table(column.table);
  const std::string sql = "update " + table + " set " + std::string(column.folded) + " = v.folded from (" +
                          std::string(rowsOfArray(db)) + ") v where " + table + ".id = v.id";
  for (auto texts = textsBehind(db, column, 0); !texts.empty();
       texts = textsBehind(db, column, texts.back().first)) {
    Query query(db, sql);
    query.bind("rows", foldedRows(texts)).run();
  }
}

}  // namespace

void foldForSearch(Connection& db) {
  planForSearch(db);
  for (const FoldedColumn& column : foldedColumns) fold(db, column);
  planAsUsual(db);
  db.run("update titles set is_indexed = 0");
}

}  // namespace vantry::server

#include "server/desk/find_sql.h"

#include <array>

#include "server/desk/library_border.h"
#include "server/desk/remark_store.h"
#include "server/desk/status_sql.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

void replaceAll(std::string& text, std::string_view word, std::string_view by) {
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + by.size()))
    text.replace(at, word.size(), by);
}

/// A room that bookings can have, with no status that forbids use, that no booking takes and, once the time
/// has begun, that is not out.
constexpr std::string_view isFree =
    "(select k.storage from room_types k where k.id = r.room_type_id) = 0 and not exists (select 1 from "
    "room_statuses s join status_types y on y.id = s.status_id where s.room_id = r.id and y.effect = 3) and "
    "not exists (select 1 from occupancy o where o.kind = (select 3) and o.thing = r.id and o.starts_at < :b "
    "and "
    "o.starts_at >= :a - (select coalesce(max(v.seconds), 0) from longest_occupancy v where v.kind = 3) and "
    "o.ends_at > :a) and (cast(:a as bigint) > cast(:now as bigint) or not exists (select 1 from bookings x "
    "where "
    "x.room_id = r.id and x.room_charged_at is not null and x.room_returned_at is null))";

struct WordRow {
  std::string_view word;
  std::string text;
};

/// Joined, PostgreSQL would read all pieces: of what went out it cannot know how little is not back.
constexpr std::string_view thingsOut =
    "$LINESOUT union all select n.id from equipment n where n.group_id $AMONGOUT union all "
    "select n.group_id from equipment n where n.id $AMONGOUT and n.group_id is not null";
constexpr std::string_view linesOut =
    "select l.equipment_id as id from booking_equipment l where l.charged_at is not null and l.returned_at "
    "is null and l.in_room = 0 and l.equipment_id is not null";

/// A word that is the beginning of another comes behind it, and one that is in the text of another as well.
const std::array<WordRow, 6>& words() {
  static const std::array<WordRow, 6> rows{
      WordRow{"$LIBRARY", isOfLibrary("b.location_id")},
      WordRow{"$FREE", std::string(isFree)},
      WordRow{"$ROOMSTATUS", roomStatusKeySql()},
      WordRow{"$STATUS", equipmentStatusKeySql()},
      WordRow{"$OTHERSTATUS", "select s.equipment_id as id from equipment_statuses s union all $THINGSOUT"},
      WordRow{"$THINGSOUT", std::string(thingsOut)}};
  return rows;
}

void writeRanges(Connection& db, std::string& text) {
  constexpr std::string_view word = "$RANGE(";
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at)) {
    const std::size_t end = text.find(')', at);
    const std::string column = bytewise(db, text.substr(at + word.size(), end - at - word.size()));
    text.replace(at, end + 1 - at, column + " >= :a and " + column + " <= :b");
  }
}

bool isNamePart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// Names of one letter belong to the criterion.
void markPlaceholders(std::string& text, std::size_t mark) {
  const std::string figures = std::to_string(mark);
  for (std::size_t at = text.find(':'); at != std::string::npos; at = text.find(':', at + 1)) {
    const bool oneLetter = at + 1 < text.size() && isNamePart(text[at + 1]) &&
                           (at + 2 == text.size() || !isNamePart(text[at + 2]));
    if (oneLetter) text.insert(at + 2, figures);
  }
}

// "$THINGSOUT" selects what is out, with the members of a group that is out and the group of a member.
constexpr StatusSql charged{.test = "e.id in ($THINGSOUT)",
                            .ways = {"($THINGSOUT) o cross join equipment e where e.id = o.id"},
                            .others = {}};
// "$OTHERSTATUS" selects what has or shows a status, as one set: each of all pieces is looked for in it.
constexpr StatusSql notCharged{.test = "e.id not in ($OTHERSTATUS)", .ways = {}, .others = "$OTHERSTATUS"};
constexpr StatusSql applied{
    .test = "$STATUS = :a",
    .ways = {"equipment_statuses s cross join equipment e where s.status_id = :a and e.id = s.equipment_id"},
    .others = {}};

}  // namespace

std::string placeholder(std::size_t value, std::size_t criterion) {
  return std::string(1, static_cast<char>('a' + value)) + std::to_string(criterion);
}

bool hasPlaceholder(std::string_view sql, std::string_view name) {
  const std::string mark = ":" + std::string(name);
  for (std::size_t at = sql.find(mark); at != std::string_view::npos; at = sql.find(mark, at + 1)) {
    const std::size_t end = at + mark.size();
    if (end == sql.size() || !isNamePart(sql[end])) return true;
  }
  return false;
}

std::string writtenOut(Connection& db, std::string_view sql, std::size_t criterion) {
  std::string text(sql);
  for (const WordRow& each : words()) replaceAll(text, each.word, each.text);
  replaceAll(text, "$AMONGOUT", amongFew(db, linesOut));
  replaceAll(text, "$LINESOUT", linesOut);
  replaceAll(text, "$KEYS", keysIn(db, "a"));
  writeRanges(db, text);
  markPlaceholders(text, criterion);
  return text;
}

StatusSql sqlOfStatus(std::int64_t status) {
  if (status == systemStatus::charged) return charged;
  return status == systemStatus::notCharged ? notCharged : applied;
}

}  // namespace vantry::server

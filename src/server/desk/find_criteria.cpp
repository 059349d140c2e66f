#include "server/desk/find_criteria.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>

#include "server/base/catalogue_text.h"
#include "server/base/search_text.h"
#include "server/base/tag_refusal.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

using enum FindSubject;
using enum FindForm;

// Conditions on other tables are written as selections of one row: PostgreSQL may answer an "exists" by
// reading the whole table once. So is the kind of what takes a thing: a plain one is looked up in the index
// that forbids double bookings, which takes three times as long.
//
// What a piece of equipment is booked for is what the booking takes: what stands in its room anyway is not. A
// requester who asked not to be remembered is found by nothing once the booking is over.
constexpr std::string_view typeBooked =
    "(select 1 from booking_equipment l where l.booking_id = b.id and l.equipment_type_id = :a and l.in_room "
    "= 0 limit 1) = 1";
// PostgreSQL begins with a selection that has a limit. Without one it goes through all live bookings of a
// small library.
constexpr FindWays byType{
    "(select o.booking_id from occupancy o where o.type_id = :a limit 1000000000) k cross join bookings b "
    "where b.id = k.booking_id"};
constexpr FindWays byTypeInPast{
    "booking_equipment l cross join bookings b where l.equipment_type_id = :a and l.in_room = 0 and b.id = "
    "l.booking_id"};
// The history of a whole desk is most of all there is.
constexpr FindWays byReadingAll{"bookings b where true"};
constexpr std::string_view starts = "b.starts_at >= :a and b.starts_at < :b";
constexpr std::string_view nextMaintenance = "e.next_maintenance_on >= :a and e.next_maintenance_on < :b";
constexpr std::string_view hasBarcode =
    "e.id in (select c.equipment_id from equipment_barcodes c where $RANGE(c.barcode))";
constexpr FindWays byBarcode{
    "equipment_barcodes c cross join equipment e where $RANGE(c.barcode) and e.id = c.equipment_id"};
constexpr std::string_view keepsType =
    "(select 1 from equipment e where e.room_id = r.id and e.equipment_type_id = :a limit 1) = 1";
constexpr std::string_view cameIn = "m.came_in_on >= :a and m.came_in_on < :b";
constexpr std::string_view atLocation =
    "(b.location_id = :a or b.pickup_location_id = :a or b.wanted_location_id = :a or (select q.location_id "
    "from rooms q where q.id = b.room_id) = :a)";

constexpr std::array criteria{
    FindCriterion{Bookings, 1, Key, typeBooked, byType, byTypeInPast, true},
    FindCriterion{Bookings,
                  4,
                  Key,
                  atLocation,
                  {"bookings b where b.location_id = :a", "bookings b where b.pickup_location_id = :a",
                   "bookings b where b.wanted_location_id = :a",
                   "rooms q cross join bookings b where q.location_id = :a and b.room_id = q.id"},
                  byReadingAll},
    FindCriterion{Bookings, 7, Day, starts},
    FindCriterion{Bookings, 8, Span, starts},
    FindCriterion{Bookings,
                  11,
                  Confirmation,
                  "(b.id between :a and :b or b.id between :c and :d or b.id between :e and :f or b.id "
                  "between :g and :h)",
                  {"bookings b where b.id between :a and :b", "bookings b where b.id between :c and :d",
                   "bookings b where b.id between :e and :f", "bookings b where b.id between :g and :h"}},
    FindCriterion{Bookings, 12, Key, "b.room_id = :a", {"bookings b where b.room_id = :a"}},
    FindCriterion{Bookings, 13, Key, typeBooked, byType, byTypeInPast, true},
    FindCriterion{Bookings,
                  14,
                  Key,
                  "(b.setup_staff_id = :a or b.cleanup_staff_id = :a)",
                  {"bookings b where b.setup_staff_id = :a", "bookings b where b.cleanup_staff_id = :a"}},
    FindCriterion{
        Bookings,
        17,
        Code,
        "(select 1 from booking_equipment l where l.booking_id = b.id and l.equipment_id in (select "
        "c.equipment_id from equipment_barcodes c where $RANGE(c.barcode) union select g.group_id from "
        "equipment_barcodes c join equipment g on g.id = c.equipment_id where $RANGE(c.barcode)) limit 1) = "
        "1",
        {"equipment_barcodes c cross join booking_equipment l cross join bookings b where $RANGE(c.barcode) "
         "and l.equipment_id = c.equipment_id and b.id = l.booking_id",
         "equipment_barcodes c cross join equipment g cross join booking_equipment l cross join bookings b "
         "where $RANGE(c.barcode) and g.id = c.equipment_id and l.equipment_id = g.group_id and b.id = "
         "l.booking_id"}},
    FindCriterion{
        Bookings,
        22,
        Text,
        "(select 1 from patrons p where p.id = b.patron_id and $RANGE(p.search_name) and (p.withheld = 0 or "
        "b.status in (0, 99, 999)) limit 1) = 1",
        {"patrons p cross join bookings b where $RANGE(p.search_name) and b.patron_id = p.id"}},
    FindCriterion{Bookings,
                  23,
                  Text,
                  "(select 1 from patrons p where p.id = b.patron_id and $RANGE(p.search_middle) and "
                  "(p.withheld = 0 or b.status in (0, 99, 999)) limit 1) = 1",
                  {"patrons p cross join bookings b where $RANGE(p.search_middle) and b.patron_id = p.id"}},
    FindCriterion{Bookings,
                  24,
                  Text,
                  "(select 1 from patrons p where p.id = b.patron_id and $RANGE(p.search_first) and "
                  "(p.withheld = 0 or b.status in (0, 99, 999)) limit 1) = 1",
                  {"patrons p cross join bookings b where $RANGE(p.search_first) and b.patron_id = p.id"}},
    FindCriterion{Bookings,
                  26,
                  Code,
                  "(select 1 from booking_items l join items i on i.id = l.item_id where l.booking_id = b.id "
                  "and $RANGE(i.barcode) limit 1) = 1",
                  {"items i cross join booking_items l cross join bookings b where $RANGE(i.barcode) and "
                   "l.item_id = i.id and b.id = l.booking_id"}},
    FindCriterion{
        Bookings,
        27,
        Keys,
        "(select 1 from booking_items l where l.booking_id = b.id and l.title_id in ($KEYS) limit 1) = 1",
        {"($KEYS) k cross join booking_items l cross join bookings b where l.title_id = k.value and b.id = "
         "l.booking_id"}},
    FindCriterion{
        Bookings,
        29,
        Code,
        "(select 1 from patron_barcodes c join patrons p on p.id = c.patron_id where c.patron_id = "
        "b.patron_id and $RANGE(c.barcode) and (p.withheld = 0 or b.status in (0, 99, 999)) limit 1) = 1",
        {"patron_barcodes c cross join bookings b where $RANGE(c.barcode) and b.patron_id = c.patron_id"}},
    FindCriterion{
        Bookings,
        30,
        Keys,
        "(select 1 from booking_items l where l.booking_id = b.id and l.holding_id in ($KEYS) limit 1) = 1",
        {"($KEYS) k cross join holdings h cross join booking_items l cross join bookings b where h.id = "
         "k.value and l.title_id = h.title_id and l.holding_id = h.id and b.id = l.booking_id"}},
    FindCriterion{Equipment, 1, Key, "e.equipment_type_id = :a"},
    FindCriterion{Equipment, 2, Text, "$RANGE(e.search_number)"},
    FindCriterion{Equipment, 3, Text, "$RANGE(e.search_maker)"},
    FindCriterion{Equipment, 4, Key, "e.location_id = :a"},
    FindCriterion{Equipment, 5, Text, "$RANGE(e.search_model)"},
    FindCriterion{Equipment, 6, Status, {}},
    FindCriterion{Equipment, 7, Day, nextMaintenance},
    FindCriterion{Equipment, 8, Span, nextMaintenance},
    FindCriterion{Equipment, 12, Key, "e.room_id = :a"},
    FindCriterion{Equipment, 17, Code, hasBarcode, byBarcode},
    FindCriterion{Equipment, 28, Text, "$RANGE(e.search_serial)"},
    FindCriterion{
        Groups,
        1,
        Key,
        "(select 1 from equipment n where n.group_id = e.id and n.equipment_type_id = :a limit 1) = 1",
        {"equipment n cross join equipment e where n.equipment_type_id = :a and e.id = n.group_id"}},
    FindCriterion{Groups, 2, Text, "$RANGE(e.search_number)"},
    FindCriterion{Groups, 4, Key, "e.location_id = :a"},
    FindCriterion{Groups, 6, Status, {}},
    FindCriterion{Groups, 12, Key, "e.room_id = :a"},
    FindCriterion{Groups, 13, Key, "e.equipment_type_id = :a"},
    FindCriterion{Groups, 17, Code, hasBarcode, byBarcode},
    FindCriterion{Rooms, 1, Key, keepsType},
    FindCriterion{Rooms, 2, Text, "$RANGE(r.search_number)"},
    FindCriterion{Rooms, 4, Key, "r.location_id = :a"},
    FindCriterion{Rooms, 6, Key, "$ROOMSTATUS = :a"},
    FindCriterion{Rooms, 7, Day, "$FREE"},
    FindCriterion{Rooms, 13, Key, keepsType},
    FindCriterion{Rooms, 15, Capacity, "r.capacity >= :a and r.capacity <= :b"},
    FindCriterion{
        Rooms, 16, Key,
        "(select 1 from room_details d where d.room_id = r.id and d.room_detail_type_id = :a limit 1) = 1"},
    FindCriterion{Rooms, 18, Text, "$RANGE(r.search_name)"},
    FindCriterion{Rooms, 21, Key, "r.room_type_id = :a"},
    FindCriterion{Rooms, 25, Minute, "$FREE"},
    FindCriterion{
        Maintenance,
        1,
        Key,
        "(select e.equipment_type_id from equipment e where e.id = m.equipment_id) = :a",
        {"equipment e cross join maintenance m where e.equipment_type_id = :a and m.equipment_id = e.id"}},
    FindCriterion{
        Maintenance,
        2,
        Text,
        "(select 1 from equipment e where e.id = m.equipment_id and $RANGE(e.search_number) limit 1) = 1",
        {"equipment e cross join maintenance m where $RANGE(e.search_number) and m.equipment_id = e.id"}},
    FindCriterion{Maintenance, 7, Day, cameIn},
    FindCriterion{Maintenance, 8, Span, cameIn},
    FindCriterion{Maintenance,
                  16,
                  Key,
                  "(select 1 from maintenance_lines y where y.maintenance_id = m.id and "
                  "y.maintenance_type_id = :a limit 1) = 1",
                  {"maintenance_lines y cross join maintenance m where y.maintenance_type_id = :a and m.id = "
                   "y.maintenance_id"}},
    FindCriterion{Patrons,
                  17,
                  Code,
                  "p.id in (select c.patron_id from patron_barcodes c where $RANGE(c.barcode))",
                  {"patron_barcodes c cross join patrons p where $RANGE(c.barcode) and p.id = c.patron_id"}},
    FindCriterion{Patrons, 19, Text, "$RANGE(p.search_social)"},
    FindCriterion{Patrons, 20, Text, "$RANGE(p.search_institution)"},
    FindCriterion{Patrons, 22, Text, "$RANGE(p.search_name)"},
    FindCriterion{Patrons, 23, Text, "$RANGE(p.search_middle)"},
    FindCriterion{Patrons, 24, Text, "$RANGE(p.search_first)"},
};

constexpr std::size_t longestText = 1000;
constexpr std::size_t mostKeys = 5000;
constexpr int confirmationFigures = 7;
constexpr int confirmationRanges = 4;
constexpr std::int64_t noEnd = std::numeric_limits<std::int32_t>::max();

std::string_view trimmed(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

std::optional<std::int64_t> wholeNumber(std::string_view text) {
  text = trimmed(text);
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, fault] = std::from_chars(text.data(), end, number);
  if (fault != std::errc{} || rest != end || number < 0) return std::nullopt;
  return number;
}

std::int64_t keyOf(std::string_view text) {
  const std::optional<std::int64_t> key = wholeNumber(text);
  if (!key) refuseTag(tags::SRCHVAL);
  return *key;
}

std::string keyListOf(std::string_view text) {
  std::string list;
  std::size_t count = 0;
  while (!text.empty()) {
    const std::string_view part = text.substr(0, text.find(','));
    text.remove_prefix(std::min(part.size() + 1, text.size()));
    list += (list.empty() ? "[" : ",") + std::to_string(keyOf(part));
    if (++count > mostKeys) refuseTag(tags::SRCHVAL);
  }
  return list + "]";
}

std::vector<FindValue> valuesOf(const TextRange& range) {
  if (range.high.empty()) refuseTag(tags::SRCHVAL);
  return {range.low, range.high};
}

/// A mark alone would mean everything.
TextRange codeRange(std::string_view text) {
  return trimmed(text) == "?" ? TextRange{} : textRange(text);
}

std::vector<FindValue> confirmationValues(std::string_view text) {
  std::vector<NumberRange> ranges = numberRanges(text, confirmationFigures);
  if (ranges.empty()) refuseTag(tags::SRCHVAL);
  ranges.resize(confirmationRanges, {.low = 1, .high = 0});
  std::vector<FindValue> values;
  for (const NumberRange& each : ranges) values.insert(values.end(), {each.low, each.high});
  return values;
}

Moment momentOf(std::string_view text) {
  const auto at = parseMoment(text);
  if (!at) refuseTag(tags::SRCHVAL);
  return *at;
}

std::vector<FindValue> capacityValues(std::string_view text) {
  const std::optional<std::int64_t> number = wholeNumber(text.substr(std::min<std::size_t>(2, text.size())));
  if (number && text.starts_with(">=")) return {*number, noEnd};
  if (number && text.starts_with("<=")) return {std::int64_t{0}, *number};
  refuseTag(tags::SRCHVAL);
}

std::vector<FindValue> daysBetween(std::string_view first, std::string_view last) {
  const Moment from = first.empty() ? std::numeric_limits<std::int64_t>::min() : startOfDay(momentOf(first));
  const Moment until =
      last.empty() ? std::numeric_limits<std::int64_t>::max() : startOfDay(momentOf(last)) + day;
  if (until <= from) refuseTag(tags::SRCHVAL);
  return {from, until};
}

std::vector<FindValue> valuesIn(FindForm form, std::string_view text) {
  if (text.empty() || (form != Keys && text.size() > longestText)) refuseTag(tags::SRCHVAL);
  switch (form) {
    case Key:
    case Status:
      return {keyOf(text)};
    case Keys:
      return {keyListOf(text)};
    case Text:
      return valuesOf(catalogueRange(text));
    case Code:
      return valuesOf(codeRange(text));
    case Confirmation:
      return confirmationValues(text);
    case Day:
      return daysBetween(text, text);
    case Minute:
      return {momentOf(text), momentOf(text) + minute};
    case Capacity:
      return capacityValues(text);
    case Span:
      break;
  }
  refuseTag(tags::SRCHTAG);
}

/// A refusal of the value names the criterion.
template <class Read>
std::vector<FindValue> readFor(const FindCriterion& criterion, Read read) {
  try {
    return read();
  } catch (TagRefusal& refusal) {
    refusal.criterion = criterion.number;
    throw;
  }
}

}  // namespace

std::span<const FindCriterion> findCriteria() {
  return criteria;
}

const FindCriterion* findCriterion(FindSubject subject, int number) {
  const auto found = std::ranges::find_if(
      criteria, [&](const FindCriterion& each) { return each.subject == subject && each.number == number; });
  return found == criteria.end() ? nullptr : &*found;
}

std::vector<FindValue> valuesOf(const FindCriterion& criterion, std::string_view text) {
  return readFor(criterion, [&] { return valuesIn(criterion.form, text); });
}

std::vector<FindValue> valuesOfSpan(const FindCriterion& criterion, std::string_view first,
                                    std::string_view last) {
  return readFor(criterion, [&] { return daysBetween(first, last); });
}

}  // namespace vantry::server

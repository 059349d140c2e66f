// Two years of bookings around the day that the library is made for.

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>

#include "server/desk/occupancy.h"
#include "server/policy/booking_rules.h"
#include "server/setup/demo/world.h"
#include "server/store/query.h"

namespace vantry::server {

namespace {

constexpr const char* notes[] = {"Bring the long cable.",      "Room must be dark.",
                                 "Second floor, by the lift.", "Call before delivery.",
                                 "Same set-up as last time.",  "Needs a table for the laptop."};

/// One booking while it is being made up.
struct Draft {
  std::int64_t id = 0;
  std::int64_t locationId = 0;
  int type = 3;
  BookingStatus status = BookingStatus::Live;
  bool administrative = false;
  std::size_t patron = 0;
  Moment starts = 0;
  Moment ends = 0;
  int setup = 0;
  int cleanup = 0;
  std::int64_t roomId = 0;
  std::int64_t wantedRoomType = 0;
  int items = 0;
  int equipment = 0;

  [[nodiscard]] Moment from() const { return starts - setup * minute; }
  [[nodiscard]] Moment until() const { return ends + cleanup * minute; }
  [[nodiscard]] bool holdsThings() const { return status == BookingStatus::Live || isOut(status); }
  [[nodiscard]] std::optional<std::int64_t> chargedAt() const {
    const bool was = isOut(status) || status == BookingStatus::Complete;
    return was ? std::optional(starts) : std::nullopt;
  }
  [[nodiscard]] std::optional<std::int64_t> returnedAt() const {
    return status == BookingStatus::Complete ? std::optional(ends) : std::nullopt;
  }
};

/// Makes the bookings in the order of their start, so that it is enough to know until when each thing is
/// taken.
class BookingMaker {
 public:
  BookingMaker(Connection& db, World& world, Dice& dice)
      : db_(db),
        world_(world),
        dice_(dice),
        now_(world.today + 12 * hour),
        pieceTaken_(world.pieces.size(), 0),
        itemTaken_(world.items.size(), 0),
        roomTaken_(world.rooms.size(), 0) {}

  void makeDay(Moment date, int count, std::int64_t onlyAt) {
    std::vector<int> starts;
    const bool sunday = weekdayOf(date) == 0;
    for (int number = 0; number < count; ++number) {
      starts.push_back(sunday ? dice_.between(12 * 4, 17 * 4) : dice_.between(8 * 4, 19 * 4));
    }
    std::sort(starts.begin(), starts.end());
    for (const int quarter : starts) makeOne(date + quarter * 15 * minute, onlyAt);
  }

  void writeCounters() {
    for (const World::Patron& patron : world_.patrons) {
      Query query(
          db_,
          "update patrons set late_returns = :late, historical_bookings = :historical, cancelled_bookings = "
          ":cancelled, unclaimed_bookings = :unclaimed where id = :id");
      query.bind("late", patron.late)
          .bind("historical", patron.historical)
          .bind("cancelled", patron.cancelled);
      query.bind("unclaimed", patron.unclaimed).bind("id", patron.id).run();
    }
  }

 private:
  void makeOne(Moment starts, std::int64_t onlyAt) {
    Draft draft;
    draft.id = ++lastId_;
    draft.starts = starts;
    draft.locationId = onlyAt != 0 ? onlyAt : pickLocation();
    draft.administrative = dice_.percent(6);
    draft.patron = static_cast<std::size_t>(dice_.below(static_cast<int>(world_.patrons.size())));
    draft.type = dice_.percent(25) ? 1 : dice_.between(2, 3);
    draft.ends = starts + lengthOf(draft.type);
    if (draft.type != 3) {
      draft.setup = dice_.between(0, 2) * 15;
      draft.cleanup = dice_.between(0, 1) * 15;
    }
    draft.status = pickStatus(draft);
    pickRoom(draft);
    // The lines are chosen first, since the booking's row carries their counts and must stand before them.
    const std::vector<std::optional<std::size_t>> pieces = pickPieces(draft);
    const std::vector<std::size_t> items = pickItems(draft);
    draft.equipment = static_cast<int>(pieces.size());
    draft.items = static_cast<int>(items.size());
    writeBooking(draft);
    if (draft.roomId != 0 && draft.type == 1 && draft.holdsThings()) occupyRoom(draft);
    for (std::size_t place = 0; place < pieces.size(); ++place) writePiece(draft, pieces[place], place);
    for (std::size_t place = 0; place < items.size(); ++place) writeItem(draft, items[place], place);
    count(draft);
  }

  std::int64_t pickLocation() {
    int left = dice_.below(100);
    for (const World::Location& location : world_.locations) {
      if (left < location.share) return location.id;
      left -= location.share;
    }
    return world_.locations.front().id;
  }

  Moment lengthOf(int type) {
    if (type == 3 && dice_.percent(20)) return dice_.between(1, 3) * day;
    return dice_.between(2, 12) * 15 * minute;
  }

  BookingStatus pickStatus(const Draft& draft) {
    const int lot = dice_.below(100);
    if (lot < 6) return BookingStatus::OperatorCanceled;
    if (lot < 8) return BookingStatus::SystemCanceled;
    if (draft.starts > now_) return BookingStatus::Live;
    if (lot < 13) return draft.ends < now_ ? BookingStatus::Unclaimed : BookingStatus::Live;
    if (draft.ends > now_) return BookingStatus::Charged;
    const bool recent = draft.ends > now_ - 6 * day;
    return recent && lot < 18 ? BookingStatus::Overdue : BookingStatus::Complete;
  }

  void pickRoom(Draft& draft) {
    if (draft.type == 3) return;
    for (int attempt = 0; attempt < 8; ++attempt) {
      const auto place = static_cast<std::size_t>(dice_.below(static_cast<int>(world_.rooms.size())));
      const World::Room& room = world_.rooms[place];
      if (room.storage || room.locationId != draft.locationId) continue;
      if (draft.type == 1 && draft.holdsThings() && roomTaken_[place] > draft.from()) continue;
      if (draft.type == 1 && draft.holdsThings()) roomTaken_[place] = draft.until();
      draft.roomId = room.id;
      return;
    }
    draft.wantedRoomType = dice_.between(1, 5);
  }

  bool isFree(std::size_t piece, const Draft& draft) const {
    return world_.pieces[piece].bookable && world_.pieces[piece].locationId == draft.locationId &&
           pieceTaken_[piece] <= draft.from();
  }

  bool isWhollyFree(std::size_t piece, const Draft& draft) const {
    const std::vector<std::size_t>& members = world_.pieces[piece].members;
    return isFree(piece, draft) && std::all_of(members.begin(), members.end(),
                                               [&](std::size_t member) { return isFree(member, draft); });
  }

  void take(std::size_t piece, const Draft& draft) {
    pieceTaken_[piece] = draft.until();
    for (const std::size_t member : world_.pieces[piece].members) pieceTaken_[member] = draft.until();
  }

  /// Pieces and groups of the booking; nothing stands for a wish that is not filled yet.
  std::vector<std::optional<std::size_t>> pickPieces(const Draft& draft) {
    std::vector<std::optional<std::size_t>> picked;
    const int wanted = dice_.between(draft.type == 1 ? 0 : 1, 3);
    for (int attempt = 0; attempt < wanted * 3 && static_cast<int>(picked.size()) < wanted; ++attempt) {
      if (draft.status == BookingStatus::Live && dice_.percent(12)) {
        picked.emplace_back(std::nullopt);
        continue;
      }
      const auto piece = static_cast<std::size_t>(dice_.below(static_cast<int>(world_.pieces.size())));
      // Members go with their group only.
      if (world_.pieces[piece].groupId != 0 || !isWhollyFree(piece, draft)) continue;
      if (draft.holdsThings()) take(piece, draft);
      if (std::find(picked.begin(), picked.end(), std::optional(piece)) == picked.end())
        picked.emplace_back(piece);
    }
    return picked;
  }

  std::vector<std::size_t> pickItems(const Draft& draft) {
    std::vector<std::size_t> picked;
    const int wanted = dice_.percent(45) ? 0 : dice_.between(1, 2);
    for (int attempt = 0; attempt < wanted * 3 && static_cast<int>(picked.size()) < wanted; ++attempt) {
      const auto item = static_cast<std::size_t>(dice_.below(static_cast<int>(world_.items.size())));
      if (itemTaken_[item] > draft.from() || std::find(picked.begin(), picked.end(), item) != picked.end())
        continue;
      if (draft.holdsThings()) itemTaken_[item] = draft.until();
      picked.push_back(item);
    }
    return picked;
  }

  void writeBooking(const Draft& draft) {
    const World::Patron& patron = world_.patrons[draft.patron];
    const auto staff = [&]() -> std::optional<std::int64_t> {
      if (draft.type == 3 || !dice_.percent(40)) return std::nullopt;
      return dice_.of(std::span<const std::int64_t>(world_.staff));
    };
    const auto orNothing = [](std::int64_t id) { return id == 0 ? std::nullopt : std::optional(id); };
    const Moment made = std::min(draft.starts, now_) - dice_.between(1, 20) * day;
    Query query(
        db_,
        "insert into bookings (id, location_id, booking_type, status, administrative, by_wizard, patron_id, "
        "patron_group_id, starts_at, ends_at, setup_minutes, cleanup_minutes, setup_staff_id, "
        "cleanup_staff_id, room_id, pickup_location_id, wanted_room_type_id, wanted_location_id, item_count, "
        "equipment_count, note, charged_at, returned_at, created_at, created_by, created_location, "
        "updated_at) "
        "values (:id, :location_id, :type, :status, :administrative, :wizard, :patron_id, :group_id, "
        ":starts, "
        ":ends, :setup, :cleanup, :setup_staff, :cleanup_staff, :room_id, :pickup, :wanted_type, "
        ":wanted_location, :items, :equipment, :note, :charged_at, :returned_at, :created_at, :created_by, "
        ":created_location, :updated_at)");
    query.bind("id", draft.id).bind("location_id", draft.locationId).bind("type", draft.type);
    query.bind("status", static_cast<int>(draft.status)).bind("administrative", draft.administrative);
    query.bind("wizard", dice_.percent(10));
    query.bind("patron_id", draft.administrative ? std::nullopt : std::optional(patron.id));
    query.bind("group_id", draft.administrative ? std::nullopt : std::optional(patron.groupId));
    query.bind("starts", draft.starts).bind("ends", draft.ends).bind("setup", draft.setup);
    query.bind("cleanup", draft.cleanup).bind("setup_staff", staff()).bind("cleanup_staff", staff());
    query.bind("room_id", orNothing(draft.roomId));
    query.bind("pickup", draft.type == 3 ? std::optional(draft.locationId) : std::nullopt);
    query.bind("wanted_type", orNothing(draft.wantedRoomType));
    query.bind("wanted_location", draft.wantedRoomType == 0 ? std::nullopt : std::optional(draft.locationId));
    query.bind("items", draft.items).bind("equipment", draft.equipment);
    query.bind("note", dice_.percent(10) ? dice_.of(notes) : "").bind("charged_at", draft.chargedAt());
    query.bind("returned_at", draft.returnedAt()).bind("created_at", made);
    query.bind("created_by", dice_.of(std::span<const std::int64_t>(world_.operators)));
    query.bind("created_location", draft.locationId).bind("updated_at", made).run();
  }

  void occupyRoom(const Draft& draft) {
    occupy({.kind = ThingKind::Room, .thing = draft.roomId}, draft, std::nullopt);
  }

  void writePiece(const Draft& draft, std::optional<std::size_t> piece, std::size_t place) {
    const std::int64_t line = ++lastEquipmentLine_;
    const std::int64_t typeId = piece ? world_.pieces[*piece].typeId : world_.equipmentTypes[line % 15].id;
    Query query(
        db_,
        "insert into booking_equipment (id, booking_id, place, equipment_id, equipment_type_id, is_generic, "
        "charged_at, returned_at) values (:id, :booking_id, :place, :equipment_id, :type_id, :is_generic, "
        ":charged_at, :returned_at)");
    query.bind("id", line).bind("booking_id", draft.id).bind("place", static_cast<std::int64_t>(place) + 1);
    query.bind("equipment_id", piece ? std::optional(world_.pieces[*piece].id) : std::nullopt);
    query.bind("type_id", typeId)
        .bind("is_generic", !piece.has_value())
        .bind("charged_at", draft.chargedAt());
    query.bind("returned_at", draft.returnedAt()).run();
    if (!draft.holdsThings()) return;
    if (!piece) return occupy({.kind = ThingKind::EquipmentWish, .thing = typeId}, draft, line);
    occupyPiece(*piece, draft, line);
    for (const std::size_t member : world_.pieces[*piece].members) occupyPiece(member, draft, line);
  }

  void occupyPiece(std::size_t piece, const Draft& draft, std::int64_t line) {
    const World::Piece& row = world_.pieces[piece];
    occupy({.kind = ThingKind::Equipment, .thing = row.id}, draft, line);
  }

  void writeItem(const Draft& draft, std::size_t item, std::size_t place) {
    const World::Item& row = world_.items[item];
    const std::int64_t line = ++lastItemLine_;
    Query query(
        db_,
        "insert into booking_items (id, booking_id, place, media_type_id, title_id, holding_id, item_id, "
        "charged_at, returned_at) values (:id, :booking_id, :place, :media_type_id, :title_id, :holding_id, "
        ":item_id, :charged_at, :returned_at)");
    query.bind("id", line).bind("booking_id", draft.id).bind("place", static_cast<std::int64_t>(place) + 1);
    query.bind("media_type_id", row.mediaTypeId == 0 ? std::nullopt : std::optional(row.mediaTypeId));
    query.bind("title_id", row.titleId).bind("holding_id", row.holdingId).bind("item_id", row.id);
    query.bind("charged_at", draft.chargedAt()).bind("returned_at", draft.returnedAt()).run();
    if (draft.holdsThings()) occupy({.kind = ThingKind::Item, .thing = row.id}, draft, line);
  }

  void occupy(const Thing& thing, const Draft& draft, std::optional<std::int64_t> line) {
    addOccupancy(db_, thing,
                 {.bookingId = draft.id, .lineId = line, .startsAt = draft.from(), .endsAt = draft.until()});
  }

  void count(const Draft& draft) {
    if (draft.administrative) return;
    World::Patron& patron = world_.patrons[draft.patron];
    if (draft.status == BookingStatus::Complete) ++patron.historical;
    if (draft.status == BookingStatus::OperatorCanceled) ++patron.cancelled;
    if (draft.status == BookingStatus::Unclaimed) ++patron.unclaimed;
    if (draft.status == BookingStatus::Overdue) ++patron.late;
  }

  Connection& db_;
  World& world_;
  Dice& dice_;
  Moment now_;  ///< the library is made as if at noon
  std::vector<Moment> pieceTaken_;
  std::vector<Moment> itemTaken_;
  std::vector<Moment> roomTaken_;
  std::int64_t lastId_ = exampleBookings;
  std::int64_t lastEquipmentLine_ = 0;
  std::int64_t lastItemLine_ = 0;
};

}  // namespace

void makeBookings(Connection& db, World& world, Dice& dice, const DemoOptions& options) {
  std::optional<Moment> special;
  if (!options.bookingsOn.empty()) {
    special = parseMoment(options.bookingsOn);
    if (!special) throw std::runtime_error("\"" + options.bookingsOn + "\" is no date.");
  }
  BookingMaker maker(db, world, dice);
  for (int offset = -options.daysBack; offset <= options.daysAhead; ++offset) {
    const Moment date = world.today + offset * day;
    if (special == date) {
      maker.makeDay(date, options.bookingsOnCount, world.locations.front().id);
    } else if (!std::binary_search(world.closedDays.begin(), world.closedDays.end(), date)) {
      const int most = date == world.today ? 60 - exampleBookings : 60;
      maker.makeDay(date, std::min(dice.between(30, 60), most), 0);
    }
  }
  maker.writeCounters();
  // A day that was asked for has exactly as many as were asked for.
  if (special != world.today) makeExampleBookings(db, world);
}

}  // namespace vantry::server

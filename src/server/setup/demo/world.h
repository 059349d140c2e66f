#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "server/base/moment.h"
#include "server/setup/demo/demo.h"
#include "server/setup/demo/dice.h"
#include "server/store/database.h"

namespace vantry::server {

struct DemoOperator {
  std::string_view login;
  std::string_view name;
  std::string_view password;
};
inline constexpr std::array demoOperators{DemoOperator{"admin", "Avery Admin", "admin-demo"},
                                          DemoOperator{"desk", "Dana Desk", "desk-demo"},
                                          DemoOperator{"view", "Vivian View", "view-demo"}};

/// What the makers of the demo library share. Ids are counted up by the makers themselves, since
/// the database is empty.
struct World {
  struct Location {
    std::int64_t id;
    int share;  ///< of the bookings, in percent
  };
  struct Room {
    std::int64_t id;
    std::int64_t locationId;
    std::int64_t typeId;
    bool storage;
  };
  struct EquipmentType {
    std::int64_t id;
    bool ofGroups;
  };
  struct Piece {
    std::int64_t id;
    std::int64_t typeId;
    std::int64_t locationId;
    std::int64_t groupId;  ///< 0 outside groups
    bool group;
    bool bookable;                     ///< is in a storage room and no status forbids its use
    std::vector<std::size_t> members;  ///< of a group, as places in `pieces`
  };
  struct Item {
    std::int64_t id;
    std::int64_t holdingId;
    std::int64_t titleId;
    std::int64_t mediaTypeId;
    std::int64_t locationId;
  };
  struct Patron {
    std::int64_t id;
    std::int64_t groupId;
    int late = 0;
    int historical = 0;
    int cancelled = 0;
    int unclaimed = 0;
  };

  Moment today = 0;  ///< midnight of the day that the library is made for
  std::vector<Location> locations;
  std::vector<Room> rooms;
  std::vector<std::int64_t> roomTypes;
  std::vector<EquipmentType> equipmentTypes;
  std::vector<Piece> pieces;
  std::vector<std::int64_t> mediaTypes;
  std::vector<Item> items;
  std::vector<std::int64_t> patronGroups;
  std::vector<Patron> patrons;
  std::vector<std::int64_t> staff;
  std::vector<std::int64_t> operators;
  std::vector<Moment> closedDays;  ///< exceptions of the calendars, in order
};

// The makers, in the order in which they run.
void makePlaces(Connection& db, World& world);
void makeOperators(Connection& db, World& world);
void makeInventory(Connection& db, World& world, Dice& dice);
void makeMaintenance(Connection& db, const World& world, Dice& dice);
void makePeople(Connection& db, World& world, Dice& dice);
void makeCatalogue(Connection& db, World& world, Dice& dice);
void makePolicies(Connection& db, World& world, Dice& dice);
void makeBookings(Connection& db, World& world, Dice& dice, const DemoOptions& options);

/// A piece with every status, note and kind of barcode, one piece with each status alone, and details of
/// rooms.
void makeExampleInventory(Connection& db, const World& world);
/// Patrons who are just over one limit each, after all others and the bookings.
void makeExamplePatrons(Connection& db, const World& world);
/// Bookings of today with the keys 1 to `exampleBookings`, of which none can be charged.
void makeExampleBookings(Connection& db, const World& world);
inline constexpr int exampleBookings = 3;

/// A name from the demo's lists.
struct DemoName {
  std::string first;
  std::string middle;
  std::string last;
};
[[nodiscard]] DemoName makeName(Dice& dice);

/// "PREFIX0001" with so many figures.
[[nodiscard]] std::string numbered(std::string_view prefix, std::int64_t number, int figures);

}  // namespace vantry::server

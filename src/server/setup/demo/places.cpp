// Libraries, booking desks, and who works there.

#include "server/access/passwords.h"
#include "server/setup/administration.h"
#include "server/setup/demo/world.h"

namespace vantry::server {

namespace {

constexpr const char* cityLibrary = "Riverside City Library";
constexpr const char* collegeLibrary = "Harbour College Library";
constexpr const char* mainDesk = "Riverside Media Desk";
constexpr const char* branchDesk = "Northgate Branch Desk";
constexpr const char* collegeDesk = "College Media Desk";

const std::vector<std::string> deskRights{"EQV",   "RMV", "ITV",   "PAV",   "BKADD", "BKUPD",
                                          "BKCAN", "BKV", "BKVHI", "BKCHA", "BKDIS", "BKREN"};

std::vector<std::string> owned(const std::vector<std::string_view>& codes) {
  return {codes.begin(), codes.end()};
}

}  // namespace

void makePlaces(Connection& db, World& world) {
  addLibrary(db, cityLibrary);
  addLibrary(db, collegeLibrary);
  world.locations.push_back({addLocation(db, mainDesk, cityLibrary), 60});
  world.locations.push_back({addLocation(db, branchDesk, cityLibrary), 15});
  world.locations.push_back({addLocation(db, collegeDesk, collegeLibrary), 25});
}

void makeOperators(Connection& db, World& world) {
  // Everybody knows these passwords, so there is no use in making their hashes dear.
  const Moment now = world.today;
  for (const DemoOperator& each : demoOperators) {
    const std::string hash = hashPassword(each.password, HashCost::Quick);
    world.operators.push_back(
        addOperator(db, {.login = each.login, .name = each.name, .passwordHash = hash}, now));
  }
  for (const char* location : {mainDesk, branchDesk, collegeDesk}) {
    setRights(db, "admin", location, owned(allRights()), now);
  }
  setRights(db, "desk", mainDesk, deskRights, now);
  setRights(db, "view", mainDesk, owned(viewRights()), now);
  setRights(db, "view", collegeDesk, owned(viewRights()), now);
}

std::string numbered(std::string_view prefix, std::int64_t number, int figures) {
  std::string text = std::to_string(number);
  const auto wanted = static_cast<std::size_t>(figures);
  if (text.size() < wanted) text.insert(0, wanted - text.size(), '0');
  return std::string(prefix) + text;
}

}  // namespace vantry::server

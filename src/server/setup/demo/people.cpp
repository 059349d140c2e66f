// Patron groups, patrons and staff.

#include <array>

#include "server/base/catalogue_text.h"
#include "server/setup/demo/world.h"
#include "server/store/query.h"

namespace vantry::server {

namespace {

constexpr const char* groupNames[] = {
    "Undergraduate",  "Graduate",          "Faculty",          "Adjunct Faculty",
    "Administration", "Library Staff",     "Alumni",           "City Resident",
    "School Teacher", "Community Partner", "Visiting Scholar", "Student Club"};

constexpr const char* firstNames[] = {
    "Alma",  "Amir",   "Anita", "Arun",  "Beata",  "Boris", "Carla", "Cheng",  "Clara", "Daniel",
    "Dora",  "Edda",   "Elias", "Emeka", "Esther", "Fadi",  "Fiona", "Gerard", "Greta", "Hana",
    "Hugo",  "Imani",  "Ines",  "Ivo",   "Jana",   "Jonas", "Kaito", "Karin",  "Leila", "Leon",
    "Lucia", "Mara",   "Marek", "Mina",  "Nadia",  "Nils",  "Nora",  "Oluchi", "Oscar", "Paula",
    "Pedro", "Priya",  "Rahel", "Ravi",  "Rosa",   "Samir", "Selma", "Sven",   "Tessa", "Tomas",
    "Uma",   "Viktor", "Wanda", "Xenia", "Yusuf",  "Zora"};

constexpr const char* lastNames[] = {
    "Abara",    "Adler",   "Almeida", "Andersen", "Bakker",   "Baptiste",  "Becker",   "Bianchi",  "Brandt",
    "Castillo", "Chandra", "Cho",     "Dalgaard", "Delgado",  "Dubois",    "Ekström",  "Farrell",  "Fischer",
    "Fonseca",  "Garnier", "Gomez",   "Haddad",   "Hartmann", "Holm",      "Ito",      "Ivanova",  "Jansen",
    "Kaplan",   "Keller",  "Khan",    "Kovacs",   "Kruger",   "Lindqvist", "Lombardi", "Marchand", "Mendes",
    "Meyer",    "Moreau",  "Müller",  "Nakamura", "Novak",    "Okafor",    "Olsen",    "O'Neill",  "Ortega",
    "Park",     "Petrov",  "Quist",   "Ramos",    "Reyes",    "Rossi",     "Sandoval", "Schmid",   "Silva",
    "Sorensen", "Tanaka",  "Vasquez", "Weber",    "Wong",     "Zeller"};

constexpr const char* streets[] = {"Harbour Street", "Mill Lane", "Station Road", "Orchard Avenue",
                                   "Bridge Street"};
constexpr const char* cities[] = {"Riverside", "Northgate", "Harbourton", "Eastfield"};

/// Of the kind that is given to nobody.
std::string socialNumber(std::int64_t patronId) {
  return "9" + numbered("", patronId % 100, 2) + "-" + numbered("", patronId % 90 + 10, 2) + "-" +
         numbered("", patronId * 37 % 10'000, 4);
}

void addPatron(Connection& db, const World& world, World::Patron& patron, const DemoName& name, Dice& dice) {
  const std::int64_t id = patron.id;
  const int age = dice.between(0, 99);
  // A few cards have run out already, and some will before the year is over.
  const Moment expires =
      age < 4 ? world.today - dice.between(1, 200) * day : world.today + dice.between(20, 900) * day;
  Query query(
      db,
      "insert into patrons (id, last_name, first_name, middle_name, search_name, search_first, "
      "search_middle, search_social, search_institution, social_number, institution_id, address1, city, "
      "province, postal_code, telephone, expires_at, hold_mail, withheld, fees) values (:id, :last_name, "
      ":first_name, :middle_name, :search_name, :search_first, :search_middle, :search_social, "
      ":search_institution, :social_number, :institution_id, :address1, :city, 'RV', :postal_code, "
      ":telephone, :expires_at, :hold_mail, :withheld, :fees)");
  query.bind("id", id)
      .bind("last_name", name.last)
      .bind("first_name", name.first)
      .bind("middle_name", name.middle);
  const std::string social = id % 3 == 0 ? socialNumber(id) : std::string();
  const std::string institution = numbered("U", 20000 + id, 6);
  query.bind("search_name", catalogueKey(name.last)).bind("search_first", catalogueKey(name.first));
  query.bind("search_middle", catalogueKey(name.middle)).bind("search_social", catalogueKey(social));
  query.bind("search_institution", catalogueKey(institution)).bind("social_number", social);
  query.bind("institution_id", institution);
  query.bind("address1", std::to_string(dice.between(1, 180)) + " " + dice.of(streets))
      .bind("city", dice.of(cities));
  query.bind("postal_code", numbered("", dice.between(10000, 99999), 5));
  query.bind("telephone", "555-" + numbered("", dice.between(0, 9999), 4)).bind("expires_at", expires);
  query.bind("hold_mail", dice.percent(2)).bind("withheld", dice.percent(6));
  query.bind("fees", dice.percent(7) ? dice.between(1, 60) * 50 : 0).run();
}

void addCard(Connection& db, const World::Patron& patron, const std::string& barcode, int status) {
  Query query(db,
              "insert into patron_barcodes (patron_id, patron_group_id, barcode, status_id) "
              "values (:patron_id, :group_id, :barcode, :status_id)");
  query.bind("patron_id", patron.id).bind("group_id", patron.groupId).bind("barcode", barcode);
  query.bind("status_id", status).run();
}

}  // namespace

DemoName makeName(Dice& dice) {
  DemoName name;
  name.first = dice.of(firstNames);
  name.last = dice.of(lastNames);
  if (dice.percent(30)) name.middle = std::string(1, static_cast<char>('A' + dice.below(26))) + ".";
  return name;
}

void makePeople(Connection& db, World& world, Dice& dice) {
  constexpr int patrons = 1500;
  constexpr int staffMembers = 20;
  for (const char* name : groupNames) {
    const auto id = static_cast<std::int64_t>(world.patronGroups.size()) + 1;
    Query query(db, "insert into patron_groups (id, name) values (:id, :name)");
    query.bind("id", id).bind("name", name).run();
    world.patronGroups.push_back(id);
  }
  for (std::int64_t id = 1; id <= patrons; ++id) {
    const std::int64_t group =
        id <= staffMembers ? 6 : dice.of(std::span<const std::int64_t>(world.patronGroups));
    World::Patron patron{.id = id, .groupId = group};
    addPatron(db, world, patron, makeName(dice), dice);
    addCard(db, patron, numbered("2100", id, 6), dice.percent(3) ? 3 : 1);
    if (dice.percent(5)) addCard(db, patron, numbered("2101", id, 6), 2);
    world.patrons.push_back(patron);
  }
  for (std::int64_t id = 1; id <= staffMembers; ++id) {
    Query query(db, "insert into staff (patron_id, active) values (:patron_id, :active)");
    query.bind("patron_id", id).bind("active", id % 9 != 0).run();
    if (id % 9 != 0) world.staff.push_back(id);
  }
}

}  // namespace vantry::server

// The library's rules as a file.

#include <algorithm>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "server/setup/administration.h"
#include "server/setup/rules_file.h"
#include "server/store/migrations.h"
#include "server/store/query.h"
#include "support/server_case.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

using test::TempFolder;
using testing::HasSubstr;

constexpr Moment now = 1'795'000'000;

RulesReport takeText(Database& database, const std::string& text, RulesUse use = RulesUse::Take) {
  const TempFolder folder;
  std::ofstream(folder.file("rules.json")) << text;
  return takeRules(database, folder.file("rules.json"), use, now);
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "" : "\n") + line;
  return text;
}

std::string countsOf(const RulesReport& report) {
  std::vector<std::string> lines;
  for (const KindCounts& each : report.counts) lines.push_back(countsText(each));
  return joined(lines);
}

/// All rows of the rules with names in place of keys, whatever their order.
std::string rowsOf(Database& database) {
  constexpr const char* ofPolicy =
      " join policies p on p.id = x.policy_id join locations l on l.id = p.location_id "
      "left join patron_groups g on g.id = p.patron_group_id";
  constexpr const char* ofCalendar =
      " join calendars c on c.id = x.calendar_id join locations l on l.id = c.location_id";
  const std::string policy = "select l.name || coalesce(g.name, '-') || '/' || ";
  const std::string hours =
      " || '/' || is_open || '/' || case when is_open = 1 then opens_at * 10000 + closes_at else 0 end from ";
  const std::string uses =
      "t.name || may_book || may_deliver || may_pick_up || longest || longest_unit from ";
  std::vector<std::string> rows;
  for (const std::string& sql : std::vector<std::string>{
           "select name || storage from room_types",
           "select name || of_groups || '/' || setup_minutes || '/' || cleanup_minutes from equipment_types",
           "select m.name || '/' || t.name || of_groups from media_type_equipment x join media_types m on "
           "m.id = "
           "media_type_id join equipment_types t on t.id = equipment_type_id",
           "select name from room_detail_types", "select name from maintenance_types",
           "select name from media_types",
           "select name || for_rooms || '/' || priority || '/' || effect from status_types",
           "select name || for_rooms || '/' || popup_kind from note_types",
           "select l.name || kind || description || starts_on || '/' || ends_on from calendars "
           "join locations l on l.id = location_id",
           "select l.name || description || weekday" + hours + "calendar_days x" + ofCalendar,
           "select l.name || description || on_date" + hours + "calendar_exceptions x" + ofCalendar,
           policy +
               "most_bookings || '/' || most_items || '/' || most_equipment || '/' || most_late_returns || "
               "'/' "
               "|| most_cancelled || '/' || most_unclaimed || '/' || most_fees || '/' || warning_minutes "
               "|| '/' || early_charge_minutes from (select id as policy_id from policies) x" +
               ofPolicy,
           policy + "o.name || security from policy_locations x join locations o on o.id = x.location_id" +
               ofPolicy,
           policy + "of_groups || " + uses +
               "policy_equipment_types x join equipment_types t on t.id = equipment_type_id" + ofPolicy,
           policy + uses + "policy_media_types x join media_types t on t.id = media_type_id" + ofPolicy,
           policy +
               "t.name || may_deliver || may_schedule || longest || longest_unit from policy_room_types x "
               "join room_types t on t.id = room_type_id" +
               ofPolicy,
           policy +
               "r.number || '/' || o.name || '/' || longest || longest_unit from policy_rooms x "
               "join rooms r on r.id = room_id join locations o on o.id = r.location_id" +
               ofPolicy}) {
    std::string row;
    database.read([&](Connection& db) {
      Query query(db, sql);
      query.into(row);
      while (query.next()) rows.push_back(row);
    });
  }
  std::sort(rows.begin(), rows.end());
  return joined(rows);
}

class RulesFile : public OnEachDatabase {
 protected:
  RulesReport take(const std::string& text, RulesUse use = RulesUse::Take) {
    return takeText(library().database(), text, use);
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, RulesFile, eachDatabase, databaseName);

TEST_P(RulesFile, IsTakenBackWithoutAChangeAndMakesAnotherLibraryLikeIt) {
  const TestStore demoStore(GetParam());
  DemoOptions options;
  options.date = "2026-11-24";
  options.daysBack = options.daysAhead = 1;
  ASSERT_TRUE(createDemoDatabase(demoStore.url(), options));
  Database demo(demoStore.url());
  const std::string text = showRules(demo);
  const std::string rows = rowsOf(demo);
  const RulesReport again = takeText(demo, text);
  EXPECT_EQ(joined(again.faults.told()), "");
  EXPECT_EQ(again.counts.size(), 10U);
  for (const KindCounts& each : again.counts) {
    EXPECT_EQ(each.added + each.changed, 0) << each.kind;
    EXPECT_GT(each.same, 0) << each.kind;
  }
  EXPECT_EQ(rowsOf(demo), rows);

  const TestStore freshStore(GetParam());
  Database fresh(freshStore.url());
  migrate(fresh);
  fresh.write([&](Connection& db) { addLibrary(db, "Elsewhere"); });
  demo.read([&](Connection& db) {
    for (const LocationRow& row : allLocations(db)) {
      fresh.write([&](Connection& other) { addLocation(other, row.name, "Elsewhere"); });
    }
    for (const NamedRow& row : patronGroups(db)) {
      fresh.write([&](Connection& other) { addPatronGroup(other, row.name); });
    }
  });
  fresh.write([](Connection& db) {  // of a type that the file then changes
    db.run("insert into room_types (id, name, storage) values (901, 'Lecture Hall', 1)");
    db.run(
        "insert into rooms (location_id, room_type_id, number, name, created_at) "
        "select id, 901, '121', 'Hall', 0 from locations where name = 'Riverside Media Desk'");
  });
  EXPECT_EQ(joined(takeText(fresh, text).faults.told()), "");
  EXPECT_EQ(rowsOf(fresh), rows);
}

TEST_P(RulesFile, AddsChangesAndReplacesWhatItNamesAndLeavesTheRest) {
  const std::string file = R"({
    "equipment_types": [{"name": "Television", "setup_minutes": 12, "cleanup_minutes": 5}, {"name": "Globe"}],
    "group_types": [{"name": "Globe", "setup_minutes": 1}],
    "media_types": [{"name": "Film", "equipment_types": ["Globe", "Television"]}, {"name": "Atlas"}],
    "statuses": [{"for": "rooms", "name": "Equipment Faulty", "priority": 35, "effect": "passes"},
                 {"for": "equipment", "name": "On Loan", "priority": 35, "effect": "forbids"}],
    "note_types": [{"for": "rooms", "name": "General Note", "popup": "charge"}],
    "calendars": [{"location": "Main Desk", "for": "rooms", "name": "Spring", "from": "2026-01-01",
                   "until": "2026-07-31", "week": {"friday": "08:30-24:00"},
                   "exceptions": [{"date": "2026-07-04", "hours": "closed"}]}],
    "policies": [{"location": "Main Desk", "group": "Students", "limits": {"items": 7, "fees_in_cents": "none"},
                  "locations": ["Branch"], "withheld_locations": ["Museum"],
                  "group_types": [{"type": "Globe", "pick_up": false, "longest": "1 term"}],
                  "media_types": [{"type": "Atlas", "longest": "90 minutes"}],
                  "rooms": [{"location": "Main Desk", "number": "101", "longest": "unlimited"}]}]})";
  const std::string counts =
      "Equipment types: 1 added, 1 changed, 0 as they were\nGroup types: 1 added, 0 changed, 0 as they were\n"
      "Media types: 1 added, 1 changed, 0 as they were\nStatuses: 1 added, 1 changed, 0 as they were\n"
      "Note types: 0 added, 1 changed, 0 as they were\nCalendars: 0 added, 1 changed, 0 as they were\n"
      "Policies: 0 added, 1 changed, 0 as they were";
  if (GetParam() ==
      "postgresql") {  // the library's own rows came with keys, which the database did not count
    for (const char* table : {"equipment_types", "media_types"}) {
      execute(std::string("alter table ") + table + " alter column id restart with 101");
    }
  }
  const std::string before = rowsOf(library().database());
  EXPECT_EQ(countsOf(take(file, RulesUse::CheckOnly)), counts);
  EXPECT_EQ(rowsOf(library().database()), before) << "a check writes nothing";
  EXPECT_EQ(countsOf(take(file)), counts);

  const std::string after = rowsOf(library().database());
  for (const char* row :
       {"Television0/12/5", "Globe0/0/0", "Globe1/1/0", "Film/Globe0", "Equipment Faulty1/35/2",
        "On Loan0/35/3", "General Note1/7", "Main DeskSpring5/1/5101440", "Main DeskSpring1783123200/0/0",
        "Main DeskStudents/-1/7/-1/-1/-1/-1/-1/0/60", "Main DeskStudents/Branch1",
        "Main DeskStudents/Museum0", "Main DeskStudents/1Globe1101T", "Main DeskStudents/Atlas11190M",
        "Main DeskStudents/101/Main Desk/0U", "Video Set1/20/20", "Main Desk-/-1/-1/-1/-1/-1/-1/-1/0/60",
        "Main DeskSpring1773705600/0/0"}) {
    EXPECT_THAT("\n" + after + "\n", HasSubstr("\n" + std::string(row) + "\n"));
  }
  EXPECT_EQ(after.find("Film/Camera"), std::string::npos) << "it is needed no more";
  EXPECT_EQ(after.find("Main DeskStudents/Main Desk"), std::string::npos);
  EXPECT_EQ(after.find("Main DeskStudents/0Television"), std::string::npos);
  EXPECT_EQ(value("select id from policies where patron_group_id = 1"), "1") << "its key stays";
  EXPECT_EQ(value("select action || ': ' || subject || ': ' || substr(detail, 1, 51) from audit where at = " +
                  std::to_string(now)),
            "rules taken: rules.json: Equipment types: 1 added, 1 changed, 0 as they were");
  EXPECT_EQ(countsOf(take(file)).find("1 added"), std::string::npos);
  EXPECT_EQ(value("select count(*) from audit where action = 'rules taken'"), "1");

  execute("update policy_rooms set room_id = 2, longest = 6, longest_unit = 'H'");
  EXPECT_THAT(countsOf(take(file)), HasSubstr("Policies: 0 added, 1 changed"));
  EXPECT_EQ(rowsOf(library().database()), after);
}

struct FaultCase {
  std::string file;
  std::string faults;
};

/// A policy, a calendar with these members behind those that it needs.
std::string policyWith(const std::string& members) {
  return R"({"policies": [{"location": "Main Desk", "locations": [])" + members + "}]}";
}
std::string calendarWith(const std::string& members) {
  return R"({"calendars": [{"location": "Branch", "for": "pick-ups", "name": "Fall", )" + members + "}]}";
}

const std::vector<FaultCase>& faultCases() {
  const std::string badHours = ": must be \"closed\", or hours as \"08:00-21:00\".\n";
  const std::string badLength =
      ".longest: must be \"unlimited\", or a length as \"90 minutes\", \"8 hours\", \"7 days\", \"1 "
      "term\".\n";
  const std::string span = R"("from": "2026-09-01", "until": "2026-12-31", "week": {})";
  static const std::vector<FaultCase> cases{
      {"", "line 1: this is no JSON text, or one that is cut off."},
      {"{\n\"policies\": [\n{]}", "line 3: this is no JSON text, or one that is cut off."},
      {"{\"room_types\": [{\"name\": \"H\xf6rsaal\"}]}",
       "line 1: this is no JSON text, or one that is cut off."},
      {"[]", "the file: must be an object, {...}."},
      {std::string(100'000, '['),
       std::string("[0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0]: ") +
           "nothing here stands so deep inside other things."},
      {R"({"rooms": [], "policies": [{"lcation": 1}]})",
       "rooms: there is no such member here, but \"room_types\", \"equipment_types\", \"group_types\", "
       "\"media_types\", \"room_detail_types\", \"maintenance_types\", \"statuses\", \"note_types\", "
       "\"calendars\", \"policies\".\n"
       "policies[0].lcation: there is no such member here, but \"location\", \"group\", \"administrative\", "
       "\"limits\", \"warning_minutes\", \"early_charge_minutes\", \"locations\", \"withheld_locations\", "
       "\"equipment_types\", \"group_types\", \"media_types\", \"room_types\", \"rooms\".\n"
       "policies[0].location: is missing.\n"
       "policies[0].group: is missing, or \"administrative\": true in its place.\n"
       "policies[0].locations: is missing."},
      {R"({"media_types": [], "statuses": [{"name": "A", "name": "B"}], "media_types": []})",
       "statuses[0].name: stands twice in one object.\nmedia_types: stands twice in one object.\n"
       "statuses[0].for: is missing.\nstatuses[0].priority: is missing.\nstatuses[0].effect: is missing."},
      {R"({"room_types": ["Hall", {"name": ""}, {"name": " Hall"}, {"name": 7, "storage": "no"}]})",
       "room_types[0]: must be an object, {...}.\nroom_types[1].name: a name must not be empty.\n"
       "room_types[2].name: a name has no blanks around it.\nroom_types[3].name: must be a text in quotes.\n"
       "room_types[3].storage: must be true or false."},
      {R"({"equipment_types": [{"name": "Globe", "setup_minutes": -5, "cleanup_minutes": 2.5}, {"name": "Globe"},
           {"name": "Map", "setup_minutes": 99999999999999999999, "cleanup_minutes": 1000000001}]})",
       "equipment_types[0].setup_minutes: must be a whole number from 0 to 1000000000.\n"
       "equipment_types[0].cleanup_minutes: must be a whole number from 0 to 1000000000.\n"
       "equipment_types[2].setup_minutes: must be a whole number from 0 to 1000000000.\n"
       "equipment_types[2].cleanup_minutes: must be a whole number from 0 to 1000000000.\n"
       "equipment_types[1]: \"Globe\" stands there twice."},
      {R"({"media_types": [{"name": "Atlas", "equipment_types": ["Camera", "Video Set", "Camera"]}]})",
       "media_types[0].equipment_types[1]: there is no equipment type \"Video Set\".\n"
       "media_types[0].equipment_types[2]: \"Camera\" stands there twice."},
      {R"({"maintenance_types": {"name": "Repair"}, "room_detail_types": ["Light", "Light"]})",
       "maintenance_types: must be a list, [...].\nroom_detail_types[1]: \"Light\" stands there twice."},
      {R"({"statuses": [{"for": "rooms", "name": "Wet", "priority": 20, "effect": "warns"},
           {"for": "books", "name": "Dry", "priority": 1, "effect": "asks"}],
           "note_types": [{"for": "rooms", "name": "Key", "popup": "always"}]})",
       "statuses[0].effect: must be one of \"asks\", \"passes\", \"forbids\".\n"
       "statuses[1].for: must be one of \"equipment\", \"rooms\".\n"
       "note_types[0].popup: must be one of \"never\", \"booking\", \"charge\", \"discharge\".\n"
       "statuses[0].priority: \"Under Renovation\" has this priority."},
      {R"({"statuses": [{"for": "equipment", "name": "Wet", "priority": 5, "effect": "asks"},
           {"for": "equipment", "name": "Dry", "priority": 5, "effect": "asks"},
           {"for": "rooms", "name": "Dry", "priority": 5, "effect": "asks"}]})",
       "statuses[1].priority: \"Wet\" has this priority."},
      {calendarWith(R"("from": "2026-12-31", "until": "2026-09-01", "week": {"sunday": "21:00-08:00",
           "monday": "8-21", "tuesday": "08:00-24:01", "wednesday": "08:60-09:00", "thursday": "open",
           "friday": "09:00-09:00", "saturday": true, "Sunday": "closed"})"),
       "calendars[0].week.Sunday: there is no such member here, but \"sunday\", \"monday\", \"tuesday\", "
       "\"wednesday\", \"thursday\", \"friday\", \"saturday\".\n"
       "calendars[0].week.sunday: closes before it opens.\n"
       "calendars[0].week.monday" +
           badHours + "calendars[0].week.tuesday" + badHours + "calendars[0].week.wednesday" + badHours +
           "calendars[0].week.thursday" + badHours +
           "calendars[0].week.friday: closes before it opens.\n"
           "calendars[0].week.saturday: must be \"closed\", or hours as \"08:00-21:00\".\n"
           "calendars[0].until: lies before its start."},
      {calendarWith(R"("from": "2026-02-30", "until": "31.12.2026")"),
       "calendars[0].from: must be a date as \"2026-11-25\".\ncalendars[0].until: must be a date as "
       "\"2026-11-25\".\n"
       "calendars[0].week: is missing."},
      {calendarWith(span + R"(, "exceptions": [{"date": "2026-08-31", "hours": "closed"},
           {"date": "2026-12-24", "hours": "closed"}, {"date": "2026-12-24", "hours": "08:00-12:00"}])"),
       "calendars[0].exceptions[0].date: lies outside the calendar.\n"
       "calendars[0].exceptions[2]: \"2026-12-24\" stands there twice."},
      {R"({"calendars": [
           {"location": "Main Desk", "for": "rooms", "name": "Summer", "from": "2026-06-30", "until": "2026-08-31",
            "week": {}},
           {"location": "Branch", "for": "rooms", "name": "Summer", "from": "2026-06-30", "until": "2026-08-31",
            "week": {}},
           {"location": "Branch", "for": "rooms", "name": "Fall", "from": "2026-08-31", "until": "2026-12-31",
            "week": {}},
           {"location": "Branch", "for": "rooms", "name": "Fall", "from": "2027-01-01", "until": "2027-06-30",
            "week": {}},
           {"location": "Attic", "for": "rooms", "name": "Fall", "from": "2026-09-01", "until": "2026-12-31",
            "week": {}}]})",
       "calendars[3]: \"Fall\" stands there twice.\n"
       "calendars[0]: it overlaps \"Spring\", for the same at the same location.\n"
       "calendars[2]: it overlaps \"Summer\", for the same at the same location.\n"
       "calendars[4].location: there is no location \"Attic\"."},
      {R"({"policies": [{"location": "", "group": "", "locations": [""], "media_types": [{"type": " "}]}]})",
       "policies[0].location: a name must not be empty.\npolicies[0].group: a name must not be empty.\n"
       "policies[0].locations[0]: a name must not be empty.\n"
       "policies[0].media_types[0].type: a name must not be empty."},
      {policyWith(R"(, "group": "Alumni", "limits": {"bookings": -1, "items": "many", "fees_in_cents": 12.5},
           "warning_minutes": -30)"),
       "policies[0].limits.bookings: must be \"none\", or a whole number from 0 to 1000000000.\n"
       "policies[0].limits.items: must be \"none\", or a whole number from 0 to 1000000000.\n"
       "policies[0].limits.fees_in_cents: must be \"none\", or a whole number from 0 to 1000000000.\n"
       "policies[0].warning_minutes: must be a whole number from 0 to 1000000000.\n"
       "policies[0].group: there is no patron group \"Alumni\"."},
      {R"({"policies": [
           {"location": "Main Desk", "administrative": true, "group": "Students", "locations": []},
           {"location": "Main Desk", "administrative": true, "locations": ["Attic"],
            "withheld_locations": ["Branch", "Branch"]},
           {"location": "Branch", "group": "Students", "locations": ["Museum"], "withheld_locations": ["Museum"]},
           {"location": "Branch", "group": "Students", "locations": []}]})",
       "policies[0].group: an administrative policy has no group.\n"
       "policies[1].locations[0]: there is no location \"Attic\".\n"
       "policies[1].withheld_locations[1]: \"Branch\" stands there twice.\n"
       "policies[1]: it is for the same location and group as policies[0].\n"
       "policies[2].withheld_locations[0]: stands in \"locations\" as well.\n"
       "policies[3]: it is for the same location and group as policies[2]."},
      {policyWith(R"(, "group": "Students", "equipment_types": [{"type": "Camera", "longest": "2 weeks"},
           {"type": "Camera", "longest": "0 days"}, {"type": "Video Set", "longest": 7}],
           "room_types": [{"type": "Classroom", "pick_up": true, "longest": "-1 days"}])"),
       "policies[0].equipment_types[0]" + badLength + "policies[0].equipment_types[1]" + badLength +
           "policies[0].equipment_types[2]" + badLength +
           "policies[0].room_types[0].pick_up: there is no such member here, but \"type\", \"deliver\", "
           "\"schedule\", \"longest\".\npolicies[0].room_types[0]" +
           badLength +
           "policies[0].equipment_types[1].type: \"Camera\" stands there twice.\n"
           "policies[0].equipment_types[2].type: there is no equipment type \"Video Set\"."},
      {policyWith(
           R"(, "group": "Students", "rooms": [{"location": "Main Desk", "number": 101, "longest": "6 hours"},
           {"location": "Main Desk", "number": "101"}, {"location": "Main Desk", "number": "102", "longest": "1 day"},
           {"location": "Main Desk", "number": "101", "longest": "unlimited"},
           {"location": "Attic", "number": "101", "longest": "1 day"},
           {"location": "Branch", "number": "200", "longest": "1 day"},
           {"location": "Branch", "number": "101", "longest": "1 day"}])"),
       "policies[0].rooms[0].number: must be a text in quotes.\npolicies[0].rooms[1].longest: is missing.\n"
       "policies[0].rooms[2]: there is no room \"102\" at \"Main Desk\".\n"
       "policies[0].rooms[3]: room \"101\" at \"Main Desk\" stands there twice.\n"
       "policies[0].rooms[4].location: there is no location \"Attic\".\n"
       "policies[0].rooms[5]: there is more than one room \"200\" at \"Branch\".\n"
       "policies[0].rooms[6]: there is no room \"101\" at \"Branch\"."},
  };
  return cases;
}

TEST_P(RulesFile, TellsEveryFaultWithItsPlaceAndWritesNothing) {
  execute("update rooms set location_id = 2, number = '200' where id = 2");
  const std::string before = rowsOf(library().database());
  // Something that could be taken, in front of what cannot.
  const std::string sound = R"({"room_types": [{"name": "Sound"}], )";
  for (const FaultCase& each : faultCases()) {
    EXPECT_EQ(joined(take(each.file).faults.told()), each.faults) << each.file.substr(0, 400);
    if (!each.file.starts_with("{\"")) continue;
    EXPECT_GT(take(sound + each.file.substr(1)).faults.count(), 0U);
  }
  EXPECT_EQ(rowsOf(library().database()), before);
  EXPECT_EQ(value("select count(*) from audit where action = 'rules taken'"), "0");
}

TEST_P(RulesFile, TellsAHundredFaultsAndCountsAll) {
  std::string file = R"({"room_detail_types": [0)";
  for (int number = 1; number < 250; ++number) file += ", " + std::to_string(number);
  const RulesReport report = take(file + "]}");
  EXPECT_EQ(report.faults.count(), 250U);
  ASSERT_EQ(report.faults.told().size(), 100U);
  EXPECT_EQ(report.faults.told().back(), "room_detail_types[99]: must be a text in quotes.");
}

TEST_P(RulesFile, TakesNoNameThatTheDatabaseHasMoreThanOnce) {
  execute(
      "update calendars set kind = 0, starts_on = starts_on + id * 86400000, "
      "ends_on = ends_on + id * 86400000");
  const RulesReport report =
      take(R"({"calendars": [{"location": "Main Desk", "for": "deliveries", "name": "Spring",
      "from": "2026-01-01", "until": "2026-06-30", "week": {}}]})");
  EXPECT_EQ(joined(report.faults.told()),
            "calendars[0]: the database has \"Spring\" more than once, and only one may be named so.");
}

}  // namespace
}  // namespace vantry::server

#include "server/setup/library_setup.h"

#include <algorithm>

#include "server/access/audit.h"
#include "server/setup/rules_file_store.h"
#include "server/setup/starter_rules.h"
#include "server/store/library_clock.h"

namespace vantry::server {

namespace {

using Names = std::vector<std::string>;

bool holds(const Names& names, const std::string& name) {
  return std::ranges::find(names, name) != names.end();
}

/// Those of the wished names that are not there, each once and without the blanks around it.
Names newAmong(const Names& wished, const Names& standing) {
  Names fresh;
  for (const std::string& each : wished) {
    const std::string name(trimmed(each));
    if (!holds(standing, name) && !holds(fresh, name)) fresh.push_back(name);
  }
  return fresh;
}

Names together(Names some, const Names& others) {
  some.insert(some.end(), others.begin(), others.end());
  return some;
}

Names namesOf(const std::vector<NamedRow>& rows) {
  Names names;
  for (const NamedRow& row : rows) names.push_back(row.name);
  return names;
}

class LibrarySetup {
 public:
  LibrarySetup(Connection& db, const LibraryWish& wish, Moment now)
      : db_(db),
        wish_(wish),
        now_(now),
        state_(readLibraryState(db)),
        newDesks_(newAmong(wish.desks, state_.desks)),
        newGroups_(newAmong(wish.groups, state_.groups)),
        desks_(together(state_.desks, newDesks_)) {}

  std::vector<std::string> run() {
    setZone();
    const std::string library = nameLibrary();
    for (const std::string& desk : newDesks_) {
      addLocation(db_, desk, library);
      done("The booking desk " + inQuotes(desk) + " is added.");
    }
    for (const std::string& group : newGroups_) {
      addPatronGroup(db_, group);
      done("The patron group " + inQuotes(group) + " is added.");
    }
    addStarterRules();
    entrustNewDesks();
    if (wish_.firstOperator) addTheOperator(*wish_.firstOperator);
    leaveTrace(library);
    return done_;
  }

 private:
  void done(std::string sentence) { done_.push_back(std::move(sentence)); }

  void leaveTrace(const std::string& library) {
    std::string detail;
    for (const std::string& sentence : done_) detail += (detail.empty() ? "" : " ") + sentence;
    if (!detail.empty()) auditCommand(db_, now_, "library set up", library, detail);
  }

  void setZone() {
    if (wish_.timeZone.empty() || wish_.timeZone == state_.timeZone) return;
    storeTimeZone(db_, wish_.timeZone);
    done("The library's time zone is " + wish_.timeZone + ".");
  }

  /// The name that it has afterwards.
  std::string nameLibrary() {
    const std::string wished(trimmed(wish_.library));
    if (state_.libraries.size() > 1) {
      if (!wished.empty() || !newDesks_.empty()) {
        throw UserError(
            "The database holds several libraries: use \"library rename\" and \"location add\" for them.");
      }
      return {};
    }
    if (state_.libraries.empty()) {
      addLibrary(db_, wished);
      done("The library " + inQuotes(wished) + " is added.");
      return wished;
    }
    const std::string& standing = state_.libraries.front();
    if (wished.empty() || wished == standing) return standing;
    renameLibrary(db_, {.from = standing, .to = wished}, now_);
    done("The library " + inQuotes(standing) + " is now named " + inQuotes(wished) + ".");
    return wished;
  }

  void addStarterRules() {
    const Rules standing = readRules(db_);
    Rules fresh;
    const bool hasTypes = !standing.roomTypes.empty() || !standing.equipmentTypes.empty() ||
                          !standing.groupTypes.empty() || !standing.mediaTypes.empty();
    if (!hasTypes) {
      fresh = starterTypes();
      done("A few types of rooms, equipment and media are added to begin with.");
    }
    addCalendars(standing, fresh);
    addPolicies(standing, fresh);
    addRules(db_, fresh);
  }

  void addCalendars(const Rules& standing, Rules& fresh) {
    const Names& desks = standing.calendars.empty() ? desks_ : newDesks_;
    const int year = yearOf(now_);
    for (const std::string& desk : desks) {
      for (CalendarEntry& each : starterCalendars(desk, year)) fresh.calendars.push_back(std::move(each));
    }
    if (desks.empty()) return;
    done("Calendars for " + std::to_string(year) + " and " + std::to_string(year + 1) +
         " are added: open from Monday to Friday, 08:00 to 18:00.");
  }

  /// A library that has no policy yet gets all of them, one that has only those of new desks and groups.
  void addPolicies(const Rules& standing, Rules& fresh) {
    const bool isFirst = standing.policies.empty();
    for (const std::string& desk : desks_) {
      const bool isNew = isFirst || holds(newDesks_, desk);
      if (isNew) fresh.policies.push_back(starterPolicy(desk, {}, desks_));
      for (const std::string& group : together(state_.groups, newGroups_)) {
        if (isNew || holds(newGroups_, group)) fresh.policies.push_back(starterPolicy(desk, group, desks_));
      }
    }
    if (!fresh.policies.empty()) done("Policies without limits are added for them.");
  }

  static bool hasAllRights(const OperatorRow& row, const Names& desks) {
    const auto isFull = [](const OperatorPlace& place) { return place.rights.size() == allRights().size(); };
    return row.active && !desks.empty() && row.places.size() == desks.size() &&
           std::ranges::all_of(row.places, isFull);
  }

  void giveAllRights(const std::string& login, const Names& desks) {
    const std::vector<std::string_view> codes = allRights();
    for (const std::string& desk : desks) setRights(db_, login, desk, {codes.begin(), codes.end()}, now_);
  }

  void entrustNewDesks() {
    if (newDesks_.empty()) return;
    for (const OperatorRow& row : state_.operators) {
      if (!hasAllRights(row, state_.desks)) continue;
      giveAllRights(row.login, newDesks_);
      done("The operator " + inQuotes(row.login) + " has all rights at the new desks.");
    }
  }

  void addTheOperator(const FirstOperator& fresh) {
    addOperator(db_, {.login = fresh.login, .name = fresh.name, .passwordHash = fresh.passwordHash}, now_);
    giveAllRights(fresh.login, desks_);
    done("The operator " + inQuotes(fresh.login) + " is added, with all rights at all desks.");
  }

  Connection& db_;
  const LibraryWish& wish_;
  Moment now_;
  LibraryState state_;
  Names newDesks_;
  Names newGroups_;
  Names desks_;
  std::vector<std::string> done_;
};

}  // namespace

LibraryState readLibraryState(Connection& db) {
  LibraryState state{.timeZone = timeZoneOf(db),
                     .libraries = namesOf(libraries(db)),
                     .desks = {},
                     .groups = namesOf(patronGroups(db)),
                     .operators = operators(db)};
  for (const LocationRow& row : allLocations(db)) state.desks.push_back(row.name);
  return state;
}

std::vector<std::string> setUpLibrary(Connection& db, const LibraryWish& wish, Moment now) {
  return LibrarySetup(db, wish, now).run();
}

}  // namespace vantry::server

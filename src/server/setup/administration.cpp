#include "server/setup/administration.h"

#include <algorithm>

#include "server/access/audit.h"
#include "server/access/operators.h"
#include "server/access/sessions.h"
#include "server/access/tries.h"
#include "server/store/query.h"
#include "server/store/query_help.h"
#include "words/requests.h"

namespace vantry::server {

namespace {

std::int64_t findNamed(Connection& db, const char* sql, std::string_view name) {
  std::int64_t id = 0;
  Query query(db, sql);
  query.bind("name", name).into(id);
  while (query.next()) {
  }
  return id;
}

/// A kind of thing that is known by its name.
struct NamedKind {
  std::string_view noun;
  std::string_view nounAtStart;  ///< of a sentence, with its article
  const char* find;
  const char* rename;
  std::string_view renamed;  ///< in the audit
};

constexpr NamedKind libraryKind{"library", "A library", "select id from libraries where name = :name",
                                "update libraries set name = :name where id = :id", "library renamed"};
constexpr NamedKind locationKind{"location", "A location", "select id from locations where name = :name",
                                 "update locations set name = :name where id = :id", "location renamed"};
constexpr NamedKind groupKind{"patron group", "A patron group",
                              "select id from patron_groups where name = :name",
                              "update patron_groups set name = :name where id = :id", "patron group renamed"};

std::int64_t needNamed(Connection& db, const NamedKind& kind, std::string_view name) {
  const std::int64_t id = findNamed(db, kind.find, trimmed(name));
  if (id == 0) {
    throw UserError("There is no " + std::string(kind.noun) + " named \"" + std::string(name) + "\".");
  }
  return id;
}

OperatorAccount needOperator(Connection& db, std::string_view login) {
  std::optional<OperatorAccount> account = findOperator(db, trimmed(login));
  if (!account) throw UserError("There is no operator named \"" + std::string(login) + "\".");
  return *account;
}

/// The name without the blanks around it.
std::string_view needName(std::string_view given, std::string_view what) {
  const std::string_view name = trimmed(given);
  if (name.empty()) throw UserError(std::string(what) + " needs a name.");
  return name;
}

/// The name without the blanks around it, which no other thing of the kind has.
std::string_view needFreeName(Connection& db, const NamedKind& kind, std::string_view given) {
  const std::string_view name = needName(given, kind.nounAtStart);
  if (findNamed(db, kind.find, name) != 0) {
    throw UserError("There is already a " + std::string(kind.noun) + " of this name.");
  }
  return name;
}

void rename(Connection& db, const NamedKind& kind, const Renaming& wanted, Moment now) {
  const std::int64_t id = needNamed(db, kind, wanted.from);
  const std::string_view name = needFreeName(db, kind, wanted.to);
  Query query(db, kind.rename);
  query.bind("name", name).bind("id", id).run();
  auditCommand(db, now, kind.renamed, trimmed(wanted.from), name);
}

std::int64_t insertNamed(Connection& db, const char* sql, std::string_view name) {
  std::int64_t id = 0;
  Query query(db, sql);
  query.bind("name", name).into(id);
  while (query.next()) {
  }
  return id;
}

void dropRights(Connection& db, std::int64_t operatorId, std::int64_t locationId) {
  Query rights(db,
               "delete from operator_rights where operator_id = :operator_id and location_id = :location_id");
  rights.bind("operator_id", operatorId).bind("location_id", locationId).run();
  Query place(
      db, "delete from operator_locations where operator_id = :operator_id and location_id = :location_id");
  place.bind("operator_id", operatorId).bind("location_id", locationId).run();
}

void addRight(Connection& db, std::int64_t operatorId, std::int64_t locationId, std::string_view code) {
  Query query(db,
              "insert into operator_rights (operator_id, location_id, code) "
              "values (:operator_id, :location_id, :code) on conflict do nothing");
  query.bind("operator_id", operatorId).bind("location_id", locationId).bind("code", code).run();
}

/// With which password the operator logs on.
void setWay(Connection& db, const OperatorAccount& account, std::string_view passwordHash, bool byDirectory) {
  Query way(db, "update operators set password = :password, by_directory = :by_directory where id = :id");
  way.bind("password", passwordHash).bind("by_directory", byDirectory).bind("id", account.id).run();
  forgetFailures(db, account.login);
  closeSessionsOf(db, account.id, {});
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string inQuotes(std::string_view name) {
  return "\"" + std::string(trimmed(name)) + "\"";
}

std::int64_t addLibrary(Connection& db, std::string_view given) {
  return insertNamed(db, "insert into libraries (name) values (:name) returning id",
                     needFreeName(db, libraryKind, given));
}

std::int64_t addLocation(Connection& db, std::string_view given, std::string_view library) {
  const std::string_view name = needName(given, locationKind.nounAtStart);
  const std::int64_t owner = needNamed(db, libraryKind, library);
  (void)needFreeName(db, locationKind, name);
  std::int64_t id = 0;
  Query query(db, "insert into locations (library_id, name) values (:library_id, :name) returning id");
  query.bind("library_id", owner).bind("name", name).into(id);
  while (query.next()) {
  }
  return id;
}

std::int64_t addPatronGroup(Connection& db, std::string_view given) {
  return insertNamed(db, "insert into patron_groups (name) values (:name) returning id",
                     needFreeName(db, groupKind, given));
}

void renameLibrary(Connection& db, const Renaming& wanted, Moment now) {
  rename(db, libraryKind, wanted, now);
}

void renameLocation(Connection& db, const Renaming& wanted, Moment now) {
  rename(db, locationKind, wanted, now);
}

void renamePatronGroup(Connection& db, const Renaming& wanted, Moment now) {
  rename(db, groupKind, wanted, now);
}

std::vector<NamedRow> libraries(Connection& db) {
  Query query(db, "select id, name from libraries order by name");
  return namedRows(query);
}

std::vector<NamedRow> patronGroups(Connection& db) {
  Query query(db, "select id, name from patron_groups order by name");
  return namedRows(query);
}

void checkNewOperator(Connection& db, std::string_view login, std::string_view name) {
  needName(login, "An operator");
  needName(name, "An operator's record");
  if (findOperator(db, trimmed(login))) {
    throw UserError("There is already an operator of this name.");
  }
}

void checkOperator(Connection& db, std::string_view login) {
  (void)needOperator(db, login);
}

std::int64_t addOperator(Connection& db, const NewOperator& fresh, Moment now) {
  checkNewOperator(db, fresh.login, fresh.name);
  const std::string login = loginKey(trimmed(fresh.login));
  std::int64_t id = 0;
  Query query(db,
              "insert into operators (login, name, password, by_directory) "
              "values (:login, :name, :password, :by_directory) returning id");
  query.bind("login", login).bind("name", trimmed(fresh.name)).bind("password", fresh.passwordHash);
  query.bind("by_directory", fresh.byDirectory).into(id);
  while (query.next()) {
  }
  auditCommand(db, now, "operator added", login, fresh.byDirectory ? "by directory" : "");
  return id;
}

std::vector<std::string_view> allRights() {
  std::vector<std::string_view> codes;
  for (const std::string_view code : wordsOf(findRequest("SLL")->head)) {
    if (std::find(codes.begin(), codes.end(), code) == codes.end()) codes.push_back(code);
  }
  return codes;
}

std::vector<std::string_view> viewRights() {
  return {"EQV", "EQMV", "RMV", "ITV", "PAV", "BKV", "BKVHI"};
}

std::int64_t checkRights(Connection& db, std::string_view location, const std::vector<std::string>& codes) {
  const std::int64_t locationId = needNamed(db, locationKind, location);
  const std::vector<std::string_view> known = allRights();
  for (const std::string& code : codes) {
    if (std::find(known.begin(), known.end(), code) == known.end()) {
      throw UserError("There is no right \"" + code + "\".");
    }
  }
  return locationId;
}

void setRights(Connection& db, std::string_view login, std::string_view location,
               const std::vector<std::string>& codes, Moment now) {
  const OperatorAccount account = needOperator(db, login);
  const std::int64_t locationId = checkRights(db, location, codes);
  std::string list;
  for (const std::string& code : codes) list += (list.empty() ? "" : " ") + code;
  dropRights(db, account.id, locationId);
  if (!codes.empty()) {
    Query query(
        db, "insert into operator_locations (operator_id, location_id) values (:operator_id, :location_id)");
    query.bind("operator_id", account.id).bind("location_id", locationId).run();
  }
  for (const std::string& code : codes) addRight(db, account.id, locationId, code);
  auditCommand(db, now, "rights set", account.login + " at " + std::string(trimmed(location)), list);
}

void setOperatorPassword(Connection& db, std::string_view login, std::string_view passwordHash, Moment now) {
  setWay(db, needOperator(db, login), passwordHash, false);
  auditCommand(db, now, "password set", loginKey(trimmed(login)), {});
}

void setOperatorByDirectory(Connection& db, std::string_view login, Moment now) {
  setWay(db, needOperator(db, login), {}, true);
  auditCommand(db, now, "directory set", loginKey(trimmed(login)), {});
}

void setOperatorActive(Connection& db, std::string_view login, bool active, Moment now) {
  const OperatorAccount account = needOperator(db, login);
  Query query(db, "update operators set active = :active where id = :id");
  query.bind("active", active).bind("id", account.id).run();
  if (!active) closeSessionsOf(db, account.id, {});
  auditCommand(db, now, active ? "operator enabled" : "operator disabled", account.login, {});
}

std::string rightsText(const std::vector<std::string>& codes) {
  const auto holds = [&](std::string_view code) { return std::ranges::find(codes, code) != codes.end(); };
  const auto holdsExactly = [&](const std::vector<std::string_view>& wanted) {
    return codes.size() == wanted.size() && std::ranges::all_of(wanted, holds);
  };
  if (codes.empty()) return "none";
  if (holdsExactly(allRights())) return "all";
  if (holdsExactly(viewRights())) return "view";
  std::string text;
  for (const std::string_view code : allRights()) {
    if (holds(code)) text.append(text.empty() ? "" : ",").append(code);
  }
  return text;
}

std::vector<OperatorRow> operators(Connection& db) {
  std::vector<OperatorRow> rows;
  OperatorRow row;
  std::string location;
  std::string code;
  Query query(
      db,
      "select o.login, o.name, o.active, o.by_directory, l.name, r.code from operators o "
      "left join operator_locations a on a.operator_id = o.id left join locations l on l.id = a.location_id "
      "left join operator_rights r on r.operator_id = o.id and r.location_id = a.location_id "
      "order by o.login, l.name, r.code");
  query.into(row.login, row.name, row.active, row.byDirectory, location, code);
  while (query.next()) {
    if (rows.empty() || rows.back().login != row.login) rows.push_back(row);
    std::vector<OperatorPlace>& places = rows.back().places;
    if (location.empty()) continue;
    if (places.empty() || places.back().location != location) places.push_back({.location = location});
    if (!code.empty()) places.back().rights.push_back(code);
  }
  return rows;
}

}  // namespace vantry::server

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

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::int64_t findNamed(Connection& db, const char* sql, std::string_view name) {
  std::int64_t id = 0;
  Query query(db, sql);
  query.bind("name", name).into(id);
  while (query.next()) {
  }
  return id;
}

std::int64_t findLocation(Connection& db, std::string_view name) {
  const std::int64_t id = findNamed(db, "select id from locations where name = :name", trimmed(name));
  if (id == 0) throw UserError("There is no location named \"" + std::string(name) + "\".");
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

}  // namespace

std::int64_t addLibrary(Connection& db, std::string_view given) {
  const std::string_view name = needName(given, "A library");
  if (findNamed(db, "select id from libraries where name = :name", name) != 0) {
    throw UserError("There is already a library of this name.");
  }
  return insertNamed(db, "insert into libraries (name) values (:name) returning id", name);
}

std::int64_t addLocation(Connection& db, std::string_view given, std::string_view library) {
  const std::string_view name = needName(given, "A location");
  const std::int64_t owner = findNamed(db, "select id from libraries where name = :name", trimmed(library));
  if (owner == 0) throw UserError("There is no library named \"" + std::string(library) + "\".");
  if (findNamed(db, "select id from locations where name = :name", name) != 0) {
    throw UserError("There is already a location of this name.");
  }
  std::int64_t id = 0;
  Query query(db, "insert into locations (library_id, name) values (:library_id, :name) returning id");
  query.bind("library_id", owner).bind("name", name).into(id);
  while (query.next()) {
  }
  return id;
}

std::int64_t addPatronGroup(Connection& db, std::string_view given) {
  const std::string_view name = needName(given, "A patron group");
  if (findNamed(db, "select id from patron_groups where name = :name", name) != 0) {
    throw UserError("There is already a patron group of this name.");
  }
  return insertNamed(db, "insert into patron_groups (name) values (:name) returning id", name);
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
              "insert into operators (login, name, password) values (:login, :name, :password) returning id");
  query.bind("login", login).bind("name", trimmed(fresh.name)).bind("password", fresh.passwordHash).into(id);
  while (query.next()) {
  }
  auditCommand(db, now, "operator added", login, {});
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
  const std::int64_t locationId = findLocation(db, location);
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
  const OperatorAccount account = needOperator(db, login);
  setPassword(db, account.id, passwordHash);
  forgetFailures(db, account.login);
  closeSessionsOf(db, account.id, {});
  auditCommand(db, now, "password set", account.login, {});
}

void setOperatorActive(Connection& db, std::string_view login, bool active, Moment now) {
  const OperatorAccount account = needOperator(db, login);
  Query query(db, "update operators set active = :active where id = :id");
  query.bind("active", active).bind("id", account.id).run();
  if (!active) closeSessionsOf(db, account.id, {});
  auditCommand(db, now, active ? "operator enabled" : "operator disabled", account.login, {});
}

std::vector<OperatorRow> operators(Connection& db) {
  std::vector<OperatorRow> rows;
  OperatorRow row;
  std::string location;
  Query query(
      db,
      "select o.login, o.name, o.active, l.name from operators o "
      "left join operator_locations a on a.operator_id = o.id left join locations l on l.id = a.location_id "
      "order by o.login, l.name");
  query.into(row.login, row.name, row.active, location);
  while (query.next()) {
    if (rows.empty() || rows.back().login != row.login) rows.push_back(row);
    if (!location.empty()) rows.back().locations.push_back(location);
  }
  return rows;
}

}  // namespace vantry::server

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "server/base/moment.h"
#include "server/base/named_row.h"
#include "server/base/user_error.h"
#include "server/desk/list_store.h"
#include "server/store/database.h"

namespace vantry::server {

// Setting a library up: libraries, locations, patron groups, operators and their rights. Each of these runs
// inside the caller's writing transaction, throws UserError, and leaves a row in the audit where it
// changes who may do what. Names are taken without the blanks around them.

/// The text without the blanks around it.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The same in quotation marks, as sentences name things.
[[nodiscard]] std::string inQuotes(std::string_view name);

std::int64_t addLibrary(Connection& db, std::string_view name);
std::int64_t addLocation(Connection& db, std::string_view name, std::string_view library);
std::int64_t addPatronGroup(Connection& db, std::string_view name);

struct Renaming {
  std::string_view from;
  std::string_view to;
};
void renameLibrary(Connection& db, const Renaming& wanted, Moment now);
void renameLocation(Connection& db, const Renaming& wanted, Moment now);
void renamePatronGroup(Connection& db, const Renaming& wanted, Moment now);

[[nodiscard]] std::vector<NamedRow> libraries(Connection& db);
[[nodiscard]] std::vector<NamedRow> patronGroups(Connection& db);

struct NewOperator {
  std::string_view login;
  std::string_view name;
  std::string_view passwordHash = {};
  bool byDirectory = false;  ///< the house's directory judges their password
};
/// Throws what addOperator would throw for this login and this name.
void checkNewOperator(Connection& db, std::string_view login, std::string_view name);
/// Throws when there is no such operator.
void checkOperator(Connection& db, std::string_view login);
std::int64_t addOperator(Connection& db, const NewOperator& fresh, Moment now);

/// The codes of all rights, in the protocol's order, each once.
[[nodiscard]] std::vector<std::string_view> allRights();

/// The rights that let an operator look at everything and change nothing.
[[nodiscard]] std::vector<std::string_view> viewRights();

/// Throws what setRights would for the location and the codes; gives the location's id.
std::int64_t checkRights(Connection& db, std::string_view location, const std::vector<std::string>& codes);

/// Lets the operator work at the location with exactly these rights; with none, no longer at all.
void setRights(Connection& db, std::string_view login, std::string_view location,
               const std::vector<std::string>& codes, Moment now);

/// A password of their own, which counts from now on, also where the directory has judged before. Ends the
/// operator's sessions.
void setOperatorPassword(Connection& db, std::string_view login, std::string_view passwordHash, Moment now);

/// From now on the house's directory judges the operator's password; their own is forgotten. Ends the
/// operator's sessions.
void setOperatorByDirectory(Connection& db, std::string_view login, Moment now);

/// Disabling ends the operator's sessions at once.
void setOperatorActive(Connection& db, std::string_view login, bool active, Moment now);

/// Codes of rights as a person gives them: "all", "view", "none", or the codes parted by commas.
[[nodiscard]] std::string rightsText(const std::vector<std::string>& codes);

struct OperatorPlace {
  std::string location;
  std::vector<std::string> rights = {};
};
struct OperatorRow {
  std::string login;
  std::string name;
  bool active = false;
  bool byDirectory = false;  ///< the house's directory judges the password
  std::vector<OperatorPlace> places = {};
};
[[nodiscard]] std::vector<OperatorRow> operators(Connection& db);

}  // namespace vantry::server

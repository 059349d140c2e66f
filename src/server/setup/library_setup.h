#pragma once

#include <optional>
#include <string>
#include <vector>

#include "server/base/moment.h"
#include "server/setup/administration.h"
#include "server/store/database.h"

namespace vantry::server {

/// What the questions of a set-up are about, as the database has it.
struct LibraryState {
  std::string timeZone;
  std::vector<std::string> libraries;
  std::vector<std::string> desks;
  std::vector<std::string> groups;
  std::vector<OperatorRow> operators;
};
[[nodiscard]] LibraryState readLibraryState(Connection& db);

struct FirstOperator {
  std::string login;
  std::string name;
  std::string passwordHash;
};

/// What a library is to be. Names that are not there yet are added; nothing is deleted.
struct LibraryWish {
  std::string timeZone;  ///< empty: as it is
  std::string library;   ///< empty: as it is; another name than the library's renames it
  std::vector<std::string> desks;
  std::vector<std::string> groups;
  std::optional<FirstOperator> firstOperator;
};

/// Makes the library so, within the caller's transaction, and returns a sentence for each thing that was
/// done. A new desk gets calendars for this and the next year and policies without limits, a new group its
/// policies, a library without any types a few of them. Those who have all rights at all desks get them at a
/// new one, too. The new operator gets all rights everywhere. Throws UserError.
std::vector<std::string> setUpLibrary(Connection& db, const LibraryWish& wish, Moment now);

}  // namespace vantry::server

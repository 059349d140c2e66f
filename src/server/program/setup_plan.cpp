#include "server/program/setup_plan.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "server/access/operators.h"
#include "server/access/passwords.h"
#include "server/program/setup_asking.h"
#include "server/store/library_clock.h"
#include "server/store/migrations.h"
#include "server/store/store_sentence.h"

namespace vantry::server {

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

constexpr const char* serviceFolder = "/var/lib/vantry";

bool isFile(const std::string& database) {
  return dialectOf(database).kind == Dialect::Kind::Sqlite;
}

void needNewFile(const std::string& file) {
  const std::string folder = fs::path(file).parent_path().string();
  std::error_code unreadable;
  if (!fs::is_directory(folder, unreadable) ||
      faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
    throw StoreError(StoreError::Kind::Absent, "the folder is missing, or may not be written");
  }
}

/// What the database holds; nothing where it has no library yet, or a SQLite file is still to be made. Throws
/// when it cannot be used.
LibraryState readState(const std::string& database) {
  LibraryState state;
  tellingPlainly(database, [&] {
    std::error_code unreadable;
    if (isFile(database) && !fs::exists(database, unreadable)) return needNewFile(database);
    Database opened(database, {.connections = 1});
    if (schemaVersion(opened) == 0) return;
    requireSchema(opened);
    opened.read([&](Connection& db) { state = readLibraryState(db); });
  });
  return state;
}

std::string faultOfName(const std::string& name) {
  return name.empty() ? "A name is needed." : "";
}

std::string joined(const Names& names) {
  std::string text;
  for (const std::string& each : names) text += (text.empty() ? "" : ", ") + each;
  return text;
}

class PlanQuestions {
 public:
  PlanQuestions(const SetupDialog& dialog, const GivenAnswers& given, const std::vector<Setting>& standing,
                const ServiceUser& user)
      : asking_(dialog, given, standing, user) {}

  SetupPlan run() {
    askDatabase();
    askTimeZone();
    askPlaces();
    askOperator();
    askReach(asking_);
    plan_.directory = askDirectory(asking_);
    plan_.settings = asking_.changes();
    return plan_;
  }

 private:
  void askDatabase() {
    const std::string folder = asking_.user.group().empty() ? fs::current_path().string() : serviceFolder;
    const auto named = [](const std::string& answer) {
      return isFile(answer) ? absolutePath(answer) : answer;
    };
    const std::string suggested = asking_.standing("database", folder + "/library.sqlite");
    plan_.database = named(asking_.dialog.answer({.text = "Database: a file, or postgresql://...",
                                                  .suggestion = suggested,
                                                  .shown = std::string(plainDatabaseName(suggested)),
                                                  .fault =
                                                      [&](const std::string& answer) {
                                                        return asking_.faultAsService(
                                                            [&] { state_ = readState(named(answer)); });
                                                      }},
                                                 asking_.given.database));
    plan_.isNew = state_.libraries.empty();
    asking_.set("database", plan_.database);
  }

  void askTimeZone() {
    const std::string ofMachine = timeZoneOfMachine();
    const std::string suggested = state_.timeZone.empty() ? ofMachine : state_.timeZone;
    plan_.library.timeZone = asking_.dialog.answer(
        {.text = "Time zone",
         .suggestion = suggested.empty() ? "UTC" : suggested,
         .fault = [](const std::string& answer) { return faultOf([&] { checkTimeZone(answer); }); }},
        asking_.given.timeZone);
    plan_.movesZone = !state_.timeZone.empty() && plan_.library.timeZone != state_.timeZone;
  }

  /// `what` is asked for when there is none, and further ones otherwise.
  struct NameList {
    std::string what;
    std::string first;
  };
  [[nodiscard]] Names askNames(const NameList& list, const Names& standing, const Names& given) const {
    const bool isFirst = standing.empty();
    return asking_.dialog.answers(
        {.text = isFirst ? list.what + ", parted by commas"
                         : list.what + ": " + joined(standing) + ". Further ones, or nothing",
         .suggestion = isFirst ? list.first : std::string(),
         .fault = faultOfName},
        given);
  }

  /// Of several libraries, only a command can say which is meant.
  void askPlaces() {
    if (state_.libraries.size() > 1) {
      plan_.library.library = asking_.given.library;
      plan_.library.desks = asking_.given.desks;
    } else {
      plan_.library.library =
          asking_.dialog.answer({.text = "Name of the library",
                                 .suggestion = plan_.isNew ? "Library" : state_.libraries.front(),
                                 .fault = faultOfName},
                                asking_.given.library);
      plan_.library.desks =
          askNames({.what = "Booking desks", .first = "Main Desk"}, state_.desks, asking_.given.desks);
    }
    plan_.library.groups =
        askNames({.what = "Patron groups", .first = "Patrons"}, state_.groups, asking_.given.groups);
  }

  [[nodiscard]] std::string faultOfLogin(const std::string& login) const {
    if (login.empty() && !state_.operators.empty()) return {};
    if (login.empty() || !mayBeLogin(login, {})) return "A name to log on with has 1 to 64 characters.";
    const bool isTaken = std::ranges::any_of(
        state_.operators, [&](const OperatorRow& row) { return row.login == loginKey(login); });
    return isTaken ? "There is already an operator of this name." : "";
  }

  void askOperator() {
    Names standing;
    for (const OperatorRow& row : state_.operators) standing.push_back(row.login);
    const bool isFirst = standing.empty();
    FirstOperator fresh;
    fresh.login = asking_.dialog.answer(
        {.text = isFirst ? "Name to log on with, of the first operator"
                         : "Operators: " + joined(standing) + ". One more with all rights, or nothing",
         .suggestion = isFirst ? "admin" : "",
         .fault = [&](const std::string& answer) { return faultOfLogin(answer); }},
        asking_.given.login);
    if (fresh.login.empty()) return;
    fresh.name = asking_.dialog.answer(
        {.text = "Name that records show", .suggestion = fresh.login, .fault = faultOfName},
        asking_.given.name);
    fresh.passwordHash = hashPassword(asking_.dialog.password(asking_.given.passwordFile));
    plan_.library.firstOperator = std::move(fresh);
  }

  SetupAsking asking_;
  LibraryState state_;
  SetupPlan plan_;
};

}  // namespace

SetupPlan askForPlan(const SetupDialog& dialog, const GivenAnswers& given,
                     const std::vector<Setting>& standing, const ServiceUser& user) {
  return PlanQuestions(dialog, given, standing, user).run();
}

}  // namespace vantry::server

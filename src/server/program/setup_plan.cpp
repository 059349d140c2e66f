#include "server/program/setup_plan.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>
#include <filesystem>

#include "server/access/operators.h"
#include "server/access/passwords.h"
#include "server/directory/directory.h"
#include "server/http/certificate.h"
#include "server/http/clients.h"
#include "server/store/library_clock.h"
#include "server/store/migrations.h"
#include "server/store/store_sentence.h"

namespace vantry::server {

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

constexpr const char* serviceFolder = "/var/lib/vantry";
constexpr const char* none = "none";
constexpr const char* someNames = "uid={login},ou=people,dc=library,dc=example";
constexpr std::array reaches{"this-machine", "proxy", "certificate"};

/// What a check throws is what is wrong.
template <class Check>
std::string faultOf(const Check& check) {
  try {
    check();
    return {};
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

bool isFile(const std::string& database) {
  return dialectOf(database).kind == Dialect::Kind::Sqlite;
}

std::string absolutePath(const std::string& path) {
  return path.empty() ? path : fs::absolute(path).lexically_normal().string();
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

std::string faultOfAddress(const std::string& address) {
  std::array<unsigned char, sizeof(in6_addr)> bytes{};
  const bool isAddress = inet_pton(AF_INET, address.c_str(), bytes.data()) == 1 ||
                         inet_pton(AF_INET6, address.c_str(), bytes.data()) == 1;
  return isAddress ? "" : inQuotes(address) + " is no address such as 0.0.0.0, for all of this machine's.";
}

std::string faultOfPort(const std::string& text) {
  int port = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, port);
  const bool isPort = rest == end && error == std::errc{} && port >= 1024 && port <= 65535;
  return isPort ? "" : "A port is a number from 1024 to 65535.";
}

std::string joined(const Names& names) {
  std::string text;
  for (const std::string& each : names) text += (text.empty() ? "" : ", ") + each;
  return text;
}

class Asking {
 public:
  Asking(const SetupDialog& dialog, const GivenAnswers& given, const std::vector<Setting>& standing,
         const ServiceUser& user)
      : dialog_(dialog), given_(given), standing_(standing), user_(user) {}

  SetupPlan run() {
    askDatabase();
    askTimeZone();
    askPlaces();
    askOperator();
    askReach();
    askDirectory();
    return plan_;
  }

 private:
  /// What the configuration says now, else another value.
  [[nodiscard]] std::string standing(const std::string& name, const std::string& otherwise) const {
    const auto found =
        std::ranges::find_if(standing_, [&](const Setting& each) { return each.name == name; });
    return found == standing_.end() || found->values.empty() ? otherwise : found->values.front();
  }

  /// What is as it was is left as it is written.
  void set(const std::string& name, const std::string& value) {
    if (standing(name, {}) == value) return;
    plan_.settings.push_back({.name = name, .values = value.empty() ? Names{} : Names{value}});
  }

  /// What a check that runs as the user of the service throws.
  template <class Check>
  [[nodiscard]] std::string faultAsService(const Check& check) const {
    return faultOf([&] {
      const ServiceUser::Acting acting(user_);
      check();
    });
  }

  void askDatabase() {
    const std::string folder = user_.group().empty() ? fs::current_path().string() : serviceFolder;
    const auto named = [](const std::string& answer) {
      return isFile(answer) ? absolutePath(answer) : answer;
    };
    const std::string suggested = standing("database", folder + "/library.sqlite");
    plan_.database =
        named(dialog_.answer({.text = "Database: a file, or postgresql://...",
                              .suggestion = suggested,
                              .shown = std::string(plainDatabaseName(suggested)),
                              .fault =
                                  [&](const std::string& answer) {
                                    return faultAsService([&] { state_ = readState(named(answer)); });
                                  }},
                             given_.database));
    plan_.isNew = state_.libraries.empty();
    set("database", plan_.database);
  }

  void askTimeZone() {
    const std::string ofMachine = timeZoneOfMachine();
    const std::string suggested = state_.timeZone.empty() ? ofMachine : state_.timeZone;
    plan_.library.timeZone = dialog_.answer(
        {.text = "Time zone",
         .suggestion = suggested.empty() ? "UTC" : suggested,
         .fault = [](const std::string& answer) { return faultOf([&] { checkTimeZone(answer); }); }},
        given_.timeZone);
    plan_.movesZone = !state_.timeZone.empty() && plan_.library.timeZone != state_.timeZone;
  }

  /// `what` is asked for when there is none, and further ones otherwise.
  struct NameList {
    std::string what;
    std::string first;
  };
  [[nodiscard]] Names askNames(const NameList& list, const Names& standing, const Names& given) const {
    const bool isFirst = standing.empty();
    return dialog_.answers(
        {.text = isFirst ? list.what + ", parted by commas"
                         : list.what + ": " + joined(standing) + ". Further ones, or nothing",
         .suggestion = isFirst ? list.first : std::string(),
         .fault = faultOfName},
        given);
  }

  /// Of several libraries, only a command can say which is meant.
  void askPlaces() {
    if (state_.libraries.size() > 1) {
      plan_.library.library = given_.library;
      plan_.library.desks = given_.desks;
    } else {
      plan_.library.library =
          dialog_.answer({.text = "Name of the library",
                          .suggestion = plan_.isNew ? "Library" : state_.libraries.front(),
                          .fault = faultOfName},
                         given_.library);
      plan_.library.desks =
          askNames({.what = "Booking desks", .first = "Main Desk"}, state_.desks, given_.desks);
    }
    plan_.library.groups =
        askNames({.what = "Patron groups", .first = "Patrons"}, state_.groups, given_.groups);
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
    fresh.login = dialog_.answer(
        {.text = isFirst ? "Name to log on with, of the first operator"
                         : "Operators: " + joined(standing) + ". One more with all rights, or nothing",
         .suggestion = isFirst ? "admin" : "",
         .fault = [&](const std::string& answer) { return faultOfLogin(answer); }},
        given_.login);
    if (fresh.login.empty()) return;
    fresh.name = dialog_.answer(
        {.text = "Name that records show", .suggestion = fresh.login, .fault = faultOfName}, given_.name);
    fresh.passwordHash = hashPassword(dialog_.password(given_.passwordFile));
    plan_.library.firstOperator = std::move(fresh);
  }

  [[nodiscard]] bool isSwitchedOn(const std::string& name) const {
    constexpr std::array<std::string_view, 5> yes{"true", "yes", "on", "y", "1"};
    return std::ranges::find(yes, standing(name, "")) != yes.end();
  }

  [[nodiscard]] std::string standingReach() const {
    if (!standing("serve.certificate", "").empty()) return "certificate";
    return isSwitchedOn("serve.behind-proxy") ? "proxy" : "this-machine";
  }

  void askReach() {
    const std::string reach = dialog_.answer(
        {.text = "Who reaches the server (this-machine; proxy, which speaks TLS in front of it; "
                 "certificate, to speak TLS itself)",
         .suggestion = standingReach(),
         .fault =
             [](const std::string& answer) {
               const bool isKnown = std::ranges::find(reaches, answer) != reaches.end();
               return isKnown ? "" : "The answer is this-machine, proxy or certificate.";
             }},
        given_.reach);
    askAddress(reach);
    askProxy(reach == "proxy");
    askCertificate(reach == "certificate");
  }

  void askAddress(const std::string& reach) {
    const std::string loopback = "127.0.0.1";
    const std::string address = standing("serve.address", loopback);
    const bool isOpen = reach == "certificate";
    std::string chosen = loopback;
    if (reach != "this-machine") {
      chosen = dialog_.answer({.text = "Address to listen on",
                               .suggestion = isOpen && address == loopback ? "0.0.0.0" : address,
                               .fault = faultOfAddress},
                              given_.address);
    }
    set("serve.address", chosen);
    set("serve.port",
        dialog_.answer(
            {.text = "Port to listen on", .suggestion = standing("serve.port", "8750"), .fault = faultOfPort},
            given_.port));
  }

  void askProxy(bool isProxy) {
    set("serve.behind-proxy", isProxy ? "true" : "");
    if (!isProxy) return set("serve.trusted-proxy", "");
    const std::string proxy = dialog_.answer(
        {.text = "Address of the proxy",
         .suggestion = standing("serve.trusted-proxy", "127.0.0.1"),
         .fault = [](const std::string& answer) { return faultOf([&] { const Clients check({answer}); }); }},
        given_.proxy);
    set("serve.trusted-proxy", proxy);
  }

  void askCertificate(bool isOwn) {
    CertificateFiles files;
    if (isOwn) {
      files.certificate = absolutePath(
          dialog_.answer({.text = "File of the certificate (PEM)",
                          .suggestion = standing("serve.certificate", "/etc/vantry/certificate.pem"),
                          .fault =
                              [&](const std::string& answer) {
                                return faultAsService([&] { needValid(absolutePath(answer)); });
                              }},
                         given_.certificate));
      files.key = absolutePath(dialog_.answer({.text = "File of its key (PEM)",
                                               .suggestion = standing("serve.key", "/etc/vantry/key.pem"),
                                               .fault =
                                                   [&](const std::string& answer) {
                                                     return faultAsService([&] {
                                                       checkCertificate({.certificate = files.certificate,
                                                                         .key = absolutePath(answer)});
                                                     });
                                                   }},
                                              given_.key));
    }
    set("serve.certificate", files.certificate);
    set("serve.key", files.key);
  }

  /// What is wrong with the directory, once it is changed so.
  template <class Change>
  [[nodiscard]] std::string faultOfDirectory(const Change& change) const {
    DirectorySettings tried = plan_.directory;
    change(tried);
    return faultOf([&] { checkDirectory(tried); });
  }

  [[nodiscard]] std::string faultOfFile(const std::string& file) const {
    return faultAsService([&] {
      if (faccessat(AT_FDCWD, file.c_str(), R_OK, AT_EACCESS) != 0)
        throw UserError("The file " + inQuotes(file) + " cannot be read.");
    });
  }

  void askDirectory() {
    plan_.directory.plain = isSwitchedOn("directory-plain");
    const std::string address =
        dialog_.answer({.text = "Directory with passwords of operators (ldap://host, ldaps://host, or none)",
                        .suggestion = standing("directory", none),
                        .fault =
                            [&](const std::string& answer) {
                              if (answer == none) return std::string();
                              return faultOfDirectory([&](DirectorySettings& tried) {
                                tried.address = answer;
                                tried.name = someNames;
                              });
                            }},
                       given_.directory);
    set("directory", address == none ? "" : address);
    if (address == none) return;
    plan_.directory.address = address;
    askAuthority();
    askNamesThere();
  }

  void askAuthority() {
    const std::string file = dialog_.answer(
        {.text = "File of who vouches for its certificate (PEM; system: whom this machine trusts)",
         .suggestion = standing("directory-authority", "system"),
         .fault =
             [&](const std::string& answer) {
               return answer == "system" ? std::string() : faultOfFile(absolutePath(answer));
             }},
        given_.directoryAuthority);
    plan_.directory.authority = file == "system" ? std::string() : absolutePath(file);
    set("directory-authority", plan_.directory.authority);
  }

  void takeNamesThere(DirectorySettings& directory, const std::string& answer) const {
    const bool isPattern = answer.find(loginMark) != std::string::npos || answer == given_.directoryName;
    directory.name = isPattern ? answer : std::string();
    directory.base = isPattern ? std::string() : answer;
  }

  void askNamesThere() {
    if (!given_.directoryName.empty() && !given_.directoryBase.empty())
      throw UserError("A directory needs either --directory-name or --directory-base.");
    DirectorySettings& directory = plan_.directory;
    takeNamesThere(
        directory,
        dialog_.answer({.text = "The operators' names there, such as " + std::string(someNames) +
                                ", or the base of a search for them",
                        .suggestion = standing("directory-name", standing("directory-base", {})),
                        .fault =
                            [&](const std::string& answer) {
                              return faultOfDirectory(
                                  [&](DirectorySettings& tried) { takeNamesThere(tried, answer); });
                            }},
                       given_.directoryName.empty() ? given_.directoryBase : given_.directoryName));
    set("directory-name", directory.name);
    set("directory-base", directory.base);
    if (!directory.base.empty()) askSearch();
  }

  void askSearch() {
    DirectorySettings& directory = plan_.directory;
    directory.filter = dialog_.answer(
        {.text = "What the one entry of an operator fits",
         .suggestion = standing("directory-filter", directory.filter),
         .fault =
             [&](const std::string& answer) {
               return faultOfDirectory([&](DirectorySettings& tried) { tried.filter = answer; });
             }},
        given_.directoryFilter);
    set("directory-filter", directory.filter);
    const std::string account =
        dialog_.answer({.text = "Name of the entry that may search (none: anybody may)",
                        .suggestion = standing("directory-account", none),
                        .fault =
                            [&](const std::string& answer) {
                              return faultOfDirectory([&](DirectorySettings& tried) {
                                tried.account = answer == none ? std::string() : answer;
                                tried.passwordFile = answer;
                              });
                            }},
                       given_.directoryAccount);
    directory.account = account == none ? std::string() : account;
    set("directory-account", directory.account);
    if (!directory.account.empty()) {
      directory.passwordFile = absolutePath(dialog_.answer(
          {.text = "File whose first line is its password",
           .suggestion = standing("directory-password-file", "/etc/vantry/directory.password"),
           .fault = [&](const std::string& answer) { return faultOfFile(absolutePath(answer)); }},
          given_.directoryPasswordFile));
    }
    set("directory-password-file", directory.passwordFile);
  }

  static void needValid(const std::string& certificate) {
    if (endOfCertificate(certificate) < std::time(nullptr))
      throw UserError("The certificate " + inQuotes(certificate) + " has ended.");
  }

  const SetupDialog& dialog_;
  const GivenAnswers& given_;
  const std::vector<Setting>& standing_;
  const ServiceUser& user_;
  LibraryState state_;
  SetupPlan plan_;
};

}  // namespace

SetupPlan askForPlan(const SetupDialog& dialog, const GivenAnswers& given,
                     const std::vector<Setting>& standing, const ServiceUser& user) {
  return Asking(dialog, given, standing, user).run();
}

}  // namespace vantry::server

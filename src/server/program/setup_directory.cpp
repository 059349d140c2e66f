#include "server/program/setup_asking.h"

#include <fcntl.h>
#include <unistd.h>

#include "server/base/user_error.h"
#include "server/directory/directory.h"

namespace vantry::server {

namespace {

constexpr const char* none = "none";
constexpr const char* someNames = "uid={login},ou=people,dc=library,dc=example";

class DirectoryQuestions {
 public:
  explicit DirectoryQuestions(SetupAsking& asking) : asking_(asking) {}

  DirectorySettings run() {
    directory_.plain = asking_.isSwitchedOn("directory-plain");
    const std::string address = asking_.dialog.answer(
        {.text =
             "Directory with passwords of operators (ldap://host, ldaps://host, several parted by blanks, or "
             "none)",
         .suggestion = asking_.standing("directory", none),
         .fault =
             [&](const std::string& answer) {
               if (answer == none) return std::string();
               return faultOfDirectory([&](DirectorySettings& tried) {
                 tried.address = answer;
                 tried.name = someNames;
               });
             }},
        asking_.given.directory);
    asking_.set("directory", address == none ? "" : address);
    if (address == none) return directory_;
    directory_.address = address;
    askAuthority();
    askNamesThere();
    return directory_;
  }

 private:
  /// What is wrong with the directory, once it is changed so.
  template <class Change>
  [[nodiscard]] std::string faultOfDirectory(const Change& change) const {
    DirectorySettings tried = directory_;
    change(tried);
    return faultOf([&] { checkDirectory(tried); });
  }

  [[nodiscard]] std::string faultOfFile(const std::string& file) const {
    return asking_.faultAsService([&] {
      if (faccessat(AT_FDCWD, file.c_str(), R_OK, AT_EACCESS) != 0)
        throw UserError("The file " + inQuotes(file) + " cannot be read.");
    });
  }

  void askAuthority() {
    const std::string file = asking_.dialog.answer(
        {.text = "File of who vouches for its certificate (PEM; system: whom this machine trusts)",
         .suggestion = asking_.standing("directory-authority", "system"),
         .fault =
             [&](const std::string& answer) {
               return answer == "system" ? std::string() : faultOfFile(absolutePath(answer));
             }},
        asking_.given.directoryAuthority);
    directory_.authority = file == "system" ? std::string() : absolutePath(file);
    asking_.set("directory-authority", directory_.authority);
  }

  void takeNamesThere(DirectorySettings& directory, const std::string& answer) const {
    const bool isPattern =
        answer.find(loginMark) != std::string::npos || answer == asking_.given.directoryName;
    directory.name = isPattern ? answer : std::string();
    directory.base = isPattern ? std::string() : answer;
  }

  void askNamesThere() {
    if (!asking_.given.directoryName.empty() && !asking_.given.directoryBase.empty())
      throw UserError("A directory needs either --directory-name or --directory-base.");
    takeNamesThere(
        directory_,
        asking_.dialog.answer(
            {.text = "The operators' names there, such as " + std::string(someNames) +
                     ", or the base of a search for them",
             .suggestion = asking_.standing("directory-name", asking_.standing("directory-base", {})),
             .fault =
                 [&](const std::string& answer) {
                   return faultOfDirectory([&](DirectorySettings& tried) { takeNamesThere(tried, answer); });
                 }},
            asking_.given.directoryName.empty() ? asking_.given.directoryBase : asking_.given.directoryName));
    asking_.set("directory-name", directory_.name);
    asking_.set("directory-base", directory_.base);
    if (!directory_.base.empty()) askSearch();
  }

  void askSearch() {
    directory_.filter = asking_.dialog.answer(
        {.text = "What the one entry of an operator fits",
         .suggestion = asking_.standing("directory-filter", directory_.filter),
         .fault =
             [&](const std::string& answer) {
               return faultOfDirectory([&](DirectorySettings& tried) { tried.filter = answer; });
             }},
        asking_.given.directoryFilter);
    asking_.set("directory-filter", directory_.filter);
    const std::string account =
        asking_.dialog.answer({.text = "Name of the entry that may search (none: anybody may)",
                               .suggestion = asking_.standing("directory-account", none),
                               .fault =
                                   [&](const std::string& answer) {
                                     return faultOfDirectory([&](DirectorySettings& tried) {
                                       tried.account = answer == none ? std::string() : answer;
                                       tried.passwordFile = answer;
                                     });
                                   }},
                              asking_.given.directoryAccount);
    directory_.account = account == none ? std::string() : account;
    asking_.set("directory-account", directory_.account);
    if (!directory_.account.empty()) {
      directory_.passwordFile = absolutePath(asking_.dialog.answer(
          {.text = "File whose first line is its password",
           .suggestion = asking_.standing("directory-password-file", "/etc/vantry/directory.password"),
           .fault = [&](const std::string& answer) { return faultOfFile(absolutePath(answer)); }},
          asking_.given.directoryPasswordFile));
    }
    asking_.set("directory-password-file", directory_.passwordFile);
  }

  SetupAsking& asking_;
  DirectorySettings directory_;
};

}  // namespace

DirectorySettings askDirectory(SetupAsking& asking) {
  return DirectoryQuestions(asking).run();
}

}  // namespace vantry::server

#include "server/directory/directory.h"

#include <algorithm>
#include <csignal>
#include <optional>
#include <utility>

#include <spdlog/spdlog.h>

#include "server/base/first_line.h"
#include "server/base/this_machine.h"
#include "server/base/user_error.h"
#include "server/directory/ldap_line.h"

namespace vantry::server {

namespace {

constexpr std::string_view open = "ldap://";
constexpr std::string_view sealed = "ldaps://";
constexpr std::string_view partings = " ,";  // of several addresses
constexpr const char* anybody = "anybody";   // some login, to try a pattern by

std::vector<std::string> addressesIn(std::string_view text) {
  std::vector<std::string> addresses;
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(partings), text.size()));
    if (text.empty()) return addresses;
    addresses.emplace_back(text.substr(0, text.find_first_of(partings)));
    text.remove_prefix(addresses.back().size());
  }
}

/// Without the port.
std::string_view hostOf(std::string_view address) {
  const std::string_view rest = address.substr(address.find("//") + 2);
  const std::size_t end = rest.starts_with('[') ? rest.find(']') + 1 : rest.find_first_of(":/");
  return rest.substr(0, end);
}

bool hasMark(std::string_view pattern) {
  return pattern.find(loginMark) != std::string_view::npos;
}

/// Read at each use, so that a password that was changed counts at once.
std::string passwordIn(const std::string& file) {
  const std::string password = firstLineOf(file).value_or("");
  if (password.empty()) throw DirectoryFault("the password of the account cannot be read from " + file);
  return password;
}

std::optional<std::string> findEntry(LdapLine& line, const DirectorySettings& settings,
                                     std::string_view login) {
  if (!settings.account.empty() && !line.isLetIn(settings.account, passwordIn(settings.passwordFile)))
    throw DirectoryFault("it refuses the account " + settings.account + " that is to search");
  return line.find(settings.base, filterFor(settings.filter, login));
}

bool isRight(LdapLine& line, const DirectorySettings& settings, std::string_view login,
             std::string_view password) {
  if (!settings.name.empty()) return line.isLetIn(nameFor(settings.name, login), password);
  const std::optional<std::string> entry = findEntry(line, settings, login);
  return entry && line.isLetIn(*entry, password);
}

void checkAddress(const std::string& address, bool isPlain) {
  const bool isSealed = address.starts_with(sealed);
  if ((!isSealed && !address.starts_with(open)) || hostOf(address).empty())
    throw UserError("A directory has an address such as ldap://host or ldaps://host, and not \"" + address +
                    "\".");
  if (isPlain && (isSealed || !isThisMachine(hostOf(address))))
    throw UserError("Passwords travel to a directory on this machine without TLS, but to no other one.");
}

std::string sentenceOf(const std::string& address, std::string_view reason) {
  return "The directory " + address + " cannot be asked: " + std::string(reason) + ".";
}

}  // namespace

void checkDirectory(const DirectorySettings& settings) {
  const std::vector<std::string> addresses = addressesIn(settings.address);
  if (addresses.empty()) throw UserError("A directory needs an address such as ldap://host or ldaps://host.");
  for (const std::string& each : addresses) checkAddress(each, settings.plain);
  if (settings.name.empty() == settings.base.empty())
    throw UserError(
        "A directory needs either the pattern of the operators' names in it, or the base of a search for "
        "them.");
  if (!settings.name.empty() && (!hasMark(settings.name) || !isEntryName(nameFor(settings.name, anybody))))
    throw UserError("The pattern \"" + settings.name +
                    "\" is none of names such as uid={login},ou=people,dc=library,dc=example.");
  if (settings.name.empty() && (!hasMark(settings.filter) || !settings.filter.starts_with('(')))
    throw UserError("The filter \"" + settings.filter + "\" is none such as (uid={login}).");
  for (const std::string& name : {settings.base, settings.account}) {
    if (!name.empty() && !isEntryName(name))
      throw UserError("\"" + name + "\" is no name of an entry in a directory.");
  }
  if (!settings.account.empty() && settings.passwordFile.empty())
    throw UserError("An account that searches in the directory needs a file with its password.");
}

Directory::Directory(DirectorySettings settings) : settings_(std::move(settings)) {
  checkDirectory(settings_);
  for (std::string& each : addressesIn(settings_.address)) places_.emplace_back(std::move(each));
  prepareLdap();
  std::signal(SIGPIPE, SIG_IGN);
}

/// The library takes several addresses as well, but asks no other one when StartTLS fails, and gives a silent
/// one all of the time; here the addresses that are left share the time that is left. One that was found
/// silent a moment ago is not asked: a crowd would wait one after another.
Directory::Verdict Directory::judge(std::string_view login, std::string_view password) {
  // A directory lets anybody in who brings no password.
  if (password.empty()) return Verdict::Wrong;
  std::vector<Place*> left;
  for (Place& each : places_) {
    if (!each.rests()) left.push_back(&each);
  }
  const std::chrono::milliseconds limit = std::chrono::seconds(settings_.limit);
  const Clock::time_point end = Clock::now() + limit;
  for (auto count = static_cast<std::ptrdiff_t>(left.size()); Place* const each : left) {
    const Clock::time_point begun = Clock::now();
    if (begun >= end) break;  // finding a host by its name has no limit of ours
    try {
      LdapLine line(settings_, each->address, begun + (end - begun) / count--);
      return isRight(line, settings_, login, password) ? Verdict::Right : Verdict::Wrong;
    } catch (const DirectoryFault& fault) {
      spdlog::error("{} {}: {}", login, count > 0 ? "is looked up elsewhere" : "cannot log on now",
                    sentenceOf(each->address, fault.what()));
    }
    const Clock::time_point now = Clock::now();
    const auto fairShare = limit / static_cast<std::ptrdiff_t>(left.size());
    if (now - begun > fairShare / 2) each->restsUntil = (now + limit).time_since_epoch().count();
  }
  return Verdict::Away;
}

std::vector<std::string> Directory::faults() const {
  std::vector<std::string> faults;
  for (const Place& each : places_) {
    try {
      LdapLine line(settings_, each.address, Clock::now() + std::chrono::seconds(settings_.limit));
      if (settings_.name.empty()) {
        static_cast<void>(findEntry(line, settings_, anybody));
      } else {
        line.greet();
      }
    } catch (const DirectoryFault& fault) {
      faults.push_back(sentenceOf(each.address, fault.what()));
    }
  }
  return faults;
}

}  // namespace vantry::server

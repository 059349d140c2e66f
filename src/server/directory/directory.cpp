#include "server/directory/directory.h"

#include <csignal>
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
constexpr const char* anybody = "anybody";  // some login, to try a pattern by

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

bool isRight(const DirectorySettings& settings, std::string_view login, std::string_view password) {
  LdapLine line(settings);
  if (!settings.name.empty()) return line.isLetIn(nameFor(settings.name, login), password);
  const std::optional<std::string> entry = findEntry(line, settings, login);
  return entry && line.isLetIn(*entry, password);
}

}  // namespace

void checkDirectory(const DirectorySettings& settings) {
  const std::string& address = settings.address;
  const bool isSealed = address.starts_with(sealed);
  if ((!isSealed && !address.starts_with(open)) || address.find_first_of(" ,") != std::string::npos ||
      hostOf(address).empty())
    throw UserError("A directory has an address such as ldap://host or ldaps://host, and not \"" + address +
                    "\".");
  if (settings.plain && (isSealed || !isThisMachine(hostOf(address))))
    throw UserError("Passwords travel to a directory on this machine without TLS, but to no other one.");
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

Directory::Directory(DirectorySettings settings)
    : settings_(std::move(settings)), restsUntil_(Clock::time_point::min().time_since_epoch().count()) {
  checkDirectory(settings_);
  prepareLdap();
  std::signal(SIGPIPE, SIG_IGN);
}

/// Whoever comes while the directory was found silent a moment ago is told so at once: a crowd would wait one
/// after another.
Directory::Verdict Directory::judge(std::string_view login, std::string_view password) {
  // A directory lets anybody in who brings no password.
  if (password.empty()) return Verdict::Wrong;
  const Clock::time_point begun = Clock::now();
  if (begun.time_since_epoch().count() < restsUntil_) return Verdict::Away;
  try {
    return isRight(settings_, login, password) ? Verdict::Right : Verdict::Wrong;
  } catch (const DirectoryFault& fault) {
    spdlog::error("{} cannot log on now: {}", login, sentenceOf(fault.what()));
  }
  const std::chrono::milliseconds limit = std::chrono::seconds(settings_.limit);
  const Clock::time_point now = Clock::now();
  if (now - begun > limit / 2) restsUntil_ = (now + limit).time_since_epoch().count();
  return Verdict::Away;
}

std::string Directory::fault() const {
  try {
    LdapLine line(settings_);
    if (settings_.name.empty()) {
      static_cast<void>(findEntry(line, settings_, anybody));
    } else {
      line.greet();
    }
    return {};
  } catch (const DirectoryFault& fault) {
    return sentenceOf(fault.what());
  }
}

std::string Directory::sentenceOf(std::string_view reason) const {
  return "The directory " + settings_.address + " cannot be asked: " + std::string(reason) + ".";
}

}  // namespace vantry::server

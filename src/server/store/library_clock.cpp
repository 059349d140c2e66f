#include "server/store/library_clock.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <stdexcept>

#include "server/store/query.h"
#include "server/store/query_help.h"
#include "server/store/settings.h"

namespace vantry::server {

namespace {

constexpr std::string_view zoneSetting = "time_zone";
constexpr std::string_view zoneFolder = "/usr/share/zoneinfo/";
constexpr std::int64_t mostSkew = 60;

void checkZone(const std::string& zone) {
  const bool isName = !zone.empty() && zone.front() != '/' && zone.find("..") == std::string::npos;
  if (!isName || !std::filesystem::is_regular_file(std::string(zoneFolder) + zone))
    throw std::runtime_error("There is no time zone \"" + zone + "\" on this machine.");
}

std::string zoneOfMachine() {
  if (const char* given = std::getenv("TZ"); given != nullptr && *given != '\0')
    return given[0] == ':' ? given + 1 : given;
  std::error_code none;  // a machine without one runs on UTC
  const std::string link = std::filesystem::canonical("/etc/localtime", none).string();
  return link.starts_with(zoneFolder) ? link.substr(zoneFolder.size()) : "UTC";
}

}  // namespace

void setTimeZone(Database& database, const std::string& zone) {
  checkZone(zone);
  database.writeApart({}, [&](Connection& db) { setSetting(db, zoneSetting, zone); });
}

void takeTimeZone(Database& database) {
  std::string zone;
  database.read([&](Connection& db) { zone = settingOf(db, zoneSetting); });
  if (zone.empty()) {
    zone = zoneOfMachine();
    setTimeZone(database, zone);
  }
  checkZone(zone);
  setenv("TZ", zone.c_str(), 1);
  tzset();
}

void checkClock(Database& database, std::int64_t now) {
  if (database.dialect().kind == Dialect::Kind::Sqlite) return;
  std::int64_t theirs = 0;
  database.readOnce([&](Connection& db) {
    Query query(db, "select cast(extract(epoch from clock_timestamp()) as bigint)");
    fetchOne(query, theirs);
  });
  if (std::abs(now - theirs) > mostSkew)
    throw std::runtime_error(
        "The clocks of this machine and of the database's are more than a minute apart.");
}

}  // namespace vantry::server

#include "server/store/library_clock.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <stdexcept>

#include <spdlog/spdlog.h>

#include "server/store/query.h"
#include "server/store/query_help.h"
#include "server/store/settings.h"

namespace vantry::server {

namespace {

constexpr std::string_view zoneSetting = "time_zone";
constexpr std::string_view zoneFolder = "/usr/share/zoneinfo/";
constexpr std::int64_t mostSkew = 60;

bool isZone(const std::string& zone) {
  const bool isName = !zone.empty() && zone.front() != '/' && zone.find("..") == std::string::npos;
  std::error_code none;
  return isName && std::filesystem::is_regular_file(std::string(zoneFolder) + zone, none);
}

}  // namespace

void checkTimeZone(const std::string& zone) {
  if (!isZone(zone)) throw std::runtime_error("There is no time zone \"" + zone + "\" on this machine.");
}

std::string timeZoneOfMachine() {
  std::string zone;
  if (const char* given = std::getenv("TZ"); given != nullptr && *given != '\0') {
    zone = given[0] == ':' ? given + 1 : given;
  } else {
    std::error_code none;
    if (!std::filesystem::exists("/etc/localtime", none)) return "UTC";
    const std::string link = std::filesystem::canonical("/etc/localtime", none).string();
    if (link.starts_with(zoneFolder)) zone = link.substr(zoneFolder.size());
  }
  return isZone(zone) ? zone : std::string();
}

std::string timeZoneOf(Connection& db) {
  return settingOf(db, zoneSetting);
}

void storeTimeZone(Connection& db, const std::string& zone) {
  checkTimeZone(zone);
  setSetting(db, zoneSetting, zone);
}

void setTimeZone(Database& database, const std::string& zone) {
  checkTimeZone(zone);
  database.writeApart({}, [&](Connection& db) { storeTimeZone(db, zone); });
}

void workInTimeZone(const std::string& zone) {
  checkTimeZone(zone);
  setenv("TZ", zone.c_str(), 1);
  tzset();
}

void takeTimeZone(Database& database) {
  std::string zone;
  database.read([&](Connection& db) { zone = timeZoneOf(db); });
  if (zone.empty()) {
    zone = timeZoneOfMachine();
    if (zone.empty()) {
      spdlog::warn(
          "The time zone of this machine has no name, and is used as it is. Give the library one: init "
          "--time-zone.");
      return;
    }
    setTimeZone(database, zone);
  }
  workInTimeZone(zone);
}

std::int64_t clockSkew(Database& database, std::int64_t now) {
  if (database.dialect().kind == Dialect::Kind::Sqlite) return 0;
  std::int64_t theirs = 0;
  database.readOnce([&](Connection& db) {
    Query query(db, "select cast(extract(epoch from clock_timestamp()) as bigint)");
    fetchOne(query, theirs);
  });
  return now - theirs;
}

void checkClock(Database& database, std::int64_t now) {
  if (std::abs(clockSkew(database, now)) > mostSkew)
    throw std::runtime_error(
        "The clocks of this machine and of the database's are more than a minute apart.");
}

}  // namespace vantry::server

#pragma once

#include <cstdint>
#include <string>

namespace vantry {

/// What a demo library is made from. The same values give the same library.
struct DemoOptions {
  std::uint32_t seed = 1;
  std::string date;        ///< "YYYY-MM-DD", the day it is made for; empty: today
  int daysBack = 365;      ///< bookings reach so far into the past
  int daysAhead = 365;     ///< and into the future
  std::string bookingsOn;  ///< a day that gets exactly `bookingsOnCount` bookings; empty: none
  int bookingsOnCount = 0;
};

/// Writes a small believable library into the database if the database is new (the file is missing or holds
/// no library); false when it already holds one, which then stays as it is. Operators and passwords:
/// docs/demo.md. Throws std::runtime_error.
bool createDemoDatabase(const std::string& database, const DemoOptions& options = {});

/// Whether one of the demo library's operators can still log on with the password that everybody knows.
[[nodiscard]] bool hasDemoPasswords(const std::string& database);

}  // namespace vantry

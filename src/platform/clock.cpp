#include "platform/clock.h"

#include <chrono>
#include <ctime>

namespace vantry {

DateTime SystemClock::now() const {
  const std::time_t seconds = std::time(nullptr);
  std::tm parts{};
  localtime_r(&seconds, &parts);
  return {{parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday},
          {parts.tm_hour, parts.tm_min, parts.tm_sec}};
}

std::int64_t SystemClock::ticks() const {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace vantry

#include "server/jobs/housekeeping.h"

#include <future>
#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>

#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

TEST(HousekeeperTest, AFailureOfAnyKindDoesNotEndTheProgram) {
  DeskLibrary library("sqlite");
  RefusalCounts refusals;
  std::promise<void> asked;
  bool isFirst = true;
  Housekeeper housekeeper(
      library.database(), refusals,
      [&]() -> Moment {
        if (std::exchange(isFirst, false)) asked.set_value();
        throw std::logic_error("no clock");
      },
      true);
  housekeeper.start();
  asked.get_future().wait();
  housekeeper.stop();
}

}  // namespace
}  // namespace vantry::server

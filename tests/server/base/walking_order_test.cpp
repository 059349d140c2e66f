#include "server/base/walking_order.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace vantry::server {
namespace {

void expectOrder(std::vector<std::string> right, std::string (*key)(std::string_view)) {
  std::vector<std::string> sorted = right;
  std::ranges::reverse(sorted);
  std::ranges::stable_sort(sorted, {}, key);
  EXPECT_THAT(sorted, testing::ElementsAreArray(right));
}

TEST(WalkingOrder, CallNumbersFollowTheShelf) {
  expectOrder(
      {"", "791.43 B", "791.5", "DVD Alien 3", "DVD Zorro", "Pop music", "QA 76.9 .D3", "QE 6", "qe52",
       "QE 521 .A23", "QE 521 .A3", "QE521.B1", "QE 521.5 .A1", "QE 1234", "VIDEO 9", "Vidéo 10"},
      shelfKey);
}

TEST(WalkingOrder, NumbersCountByTheirValue) {
  expectOrder({"", "Room 2", "room 10", "TV 2 b3", "TV 2 b12", "TV 99999999999999999999"}, naturalKey);
}

}  // namespace
}  // namespace vantry::server

#pragma once

#include <array>
#include <functional>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "support/server_desk_library.h"

namespace vantry::server {

/// A request of a desk. "$1" and "$2" in its tags are the bookings that were made for the round.
struct DeskMessage {
  std::string code;
  std::string tags;
  std::string login = "desk";
  std::string id = {};  ///< of the request; a fresh one when it is empty
};

/// A path by which two desks can want one thing.
struct Contest {
  std::string name;
  std::vector<DeskMessage> before;    ///< is sent in order before each round
  std::array<DeskMessage, 2> sent;    ///< at the same moment
  std::set<std::string> outcomes;     ///< the return codes that there may be, in their order: "0 149"
  std::vector<std::string> sql = {};  ///< is run before each round, and before those messages
};
[[nodiscard]] std::span<const Contest> contests();

/// Sends both at the same moment; the return codes.
using SendBoth = std::function<std::array<int, 2>(const std::array<DeskMessage, 2>&)>;

struct Played {
  std::map<std::string, int> outcomes;  ///< and how many rounds ended so
  std::vector<std::string> faults;      ///< what must never be; the first of them
};
/// Plays rounds of the contest in a library that holds no booking otherwise.
[[nodiscard]] Played play(DeskLibrary& library, const Contest& contest, int rounds, const SendBoth& sendBoth);

}  // namespace vantry::server

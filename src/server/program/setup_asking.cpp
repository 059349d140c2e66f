#include "server/program/setup_asking.h"

#include <algorithm>
#include <array>

namespace vantry::server {

std::string SetupAsking::standing(const std::string& name, const std::string& otherwise) const {
  const auto found = std::ranges::find_if(standing_, [&](const Setting& each) { return each.name == name; });
  return found == standing_.end() || found->values.empty() ? otherwise : found->values.front();
}

bool SetupAsking::isSwitchedOn(const std::string& name) const {
  constexpr std::array<std::string_view, 5> yes{"true", "yes", "on", "y", "1"};
  return std::ranges::find(yes, standing(name, "")) != yes.end();
}

void SetupAsking::set(const std::string& name, const std::string& value) {
  if (standing(name, {}) == value) return;
  changes_.push_back({.name = name, .values = {}});
  if (!value.empty()) changes_.back().values.push_back(value);
}

}  // namespace vantry::server

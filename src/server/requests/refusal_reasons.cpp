#include "server/requests/refusal_reasons.h"

#include <algorithm>
#include <array>

namespace vantry::server {

namespace {

/// Those that ask whether a booking may be made, and those that make it or hand it out.
constexpr std::array<std::string_view, 17> counted{
    "NEWBK", "UPDBK",   "CBK",     "CDELTM",  "CRMTM",    "CPUPTM", "VALDLO", "VALPLO", "VIUL",
    "VEUL",  "VALIAVL", "VALEAVL", "VITMUSG", "VALRMAVL", "VEQUSG", "VES",    "VALRP"};

/// Codes whose records tell more than the code.
constexpr std::array toldByRecords{rc::equipment, rc::media, rc::roomPolicy, rc::notCharged};

bool contains(const auto& list, const auto& value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

}  // namespace

std::vector<int> refusalReasons(std::string_view code, const Reply& reply) {
  if (reply.rc() <= 0 || !contains(counted, code)) return {};
  if (reply.rc() == rc::satisfiedByRoom || reply.rc() == rc::notFound) return {};
  if (!contains(toldByRecords, reply.rc())) return {reply.rc()};
  std::vector<int> reasons(reply.reasons().begin(), reply.reasons().end());
  std::erase(reasons, refusal::nearAnother);
  std::ranges::sort(reasons);
  const auto [from, to] = std::ranges::unique(reasons);
  reasons.erase(from, to);
  return reasons;
}

}  // namespace vantry::server

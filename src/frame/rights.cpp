#include "frame/rights.h"

namespace vantry {

void Rights::set(const std::array<std::string, kRights>& values) {
  for (std::size_t i = 0; i < values.size(); ++i) flags_[i] = values[i] == "Y";
}

SubjectRights rightsOf(Subject subject) {
  static constexpr std::array<SubjectRights, 4> table = {{
      {Right::EQV, Right::EQADD, Right::EQUPD, Right::EQDEL},
      {Right::EQMV, Right::EQMADD, Right::EQMUPD, Right::EQMDEL},
      {Right::RMV, Right::RMADD, Right::RMUPD, Right::RMDEL},
      {Right::BKV, Right::BKADD, Right::BKUPD, Right::BKCAN},
  }};
  return table[static_cast<std::size_t>(subject)];
}

bool viewOnly(const Rights& rights, Subject subject) {
  const auto [view, add, update, remove] = rightsOf(subject);
  return ViewOnly(rights.has(view), rights.has(add), rights.has(update), rights.has(remove));
}

bool mayReach(const Rights& rights, Subject subject) {
  const auto [view, add, update, remove] = rightsOf(subject);
  return rights.has(view) || rights.has(add) || rights.has(update) || rights.has(remove);
}

}  // namespace vantry

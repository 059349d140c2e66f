#include "frame/operator_context.h"

#include <algorithm>

namespace vantry {

std::string OperatorContext::staffName(std::string_view id) const {
  if (id.empty() || id == "0") return {};
  const auto found = std::ranges::find(staff, id, &StaffMember::id);
  return found != staff.end() ? found->name : "Staff member " + std::string(id);
}

}  // namespace vantry

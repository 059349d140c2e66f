#include "server/base/person_name.h"

namespace vantry::server {

std::string personName(std::string_view last, std::string_view first, std::string_view middle) {
  std::string name(last);
  if (!name.empty() && !first.empty()) name += ", ";
  name += first;
  if (!name.empty() && !middle.empty()) name += ' ';
  name += middle;
  return name;
}

}  // namespace vantry::server

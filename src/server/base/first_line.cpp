#include "server/base/first_line.h"

#include <fstream>

namespace vantry::server {

std::optional<std::string> firstLineOf(const std::string& file) {
  std::ifstream in(file);
  std::string line;
  if (!std::getline(in, line)) return std::nullopt;
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

}  // namespace vantry::server

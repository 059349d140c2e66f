#include "server/setup/file_text.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "server/base/user_error.h"

namespace vantry::server {

std::string wholeFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  if (file.peek() != std::ifstream::traits_type::eof()) text << file.rdbuf();
  if (!file.is_open() || file.bad() || std::filesystem::is_directory(path)) {
    throw UserError("The file \"" + path + "\" cannot be read.");
  }
  return text.str();
}

}  // namespace vantry::server

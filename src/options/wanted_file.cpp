#include "options/wanted_file.h"

#include <filesystem>

namespace vantry {

bool exists(const std::string& file) {
  std::error_code unreadable;
  return std::filesystem::is_regular_file(file, unreadable);
}

bool isUsable(Desktop& desktop, const std::string& file, const WantedFile& wanted) {
  if (exists(file) && (desktop.*wanted.isUsable)(file)) return true;
  warningBox(desktop, exists(file) ? wanted.refusal : "File does not exist!");
  return false;
}

}  // namespace vantry

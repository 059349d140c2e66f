#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vantry::server {

/// What is wrong with a file, each fault as "place: sentence". All are counted, and the first hundred told.
class FileFaults {
 public:
  void add(std::string_view place, std::string_view sentence);
  [[nodiscard]] const std::vector<std::string>& told() const { return told_; }
  [[nodiscard]] std::size_t count() const { return count_; }

 private:
  std::vector<std::string> told_;
  std::size_t count_ = 0;
};

}  // namespace vantry::server

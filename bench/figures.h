#pragma once

#include <cstdio>
#include <string>
#include <string_view>

/// Tells figures in the one form that tools/performance reads, beside what is printed for people: a line
/// "figure", table, row, column and value, parted by tabs. Values have three significant figures.
class Figures {
 public:
  explicit Figures(std::string table) : table_(std::move(table)) {}

  void tell(std::string_view row, std::string_view column, double value) const {
    char text[32];
    std::snprintf(text, sizeof text, value >= 100 ? "%.0f" : value >= 10 ? "%.1f" : "%.3g", value);
    tell(row, column, std::string_view(text));
  }

  void tell(std::string_view row, std::string_view column, std::string_view value) const {
    std::printf("figure\t%s\t%s\t%s\t%s\n", table_.c_str(), std::string(row).c_str(),
                std::string(column).c_str(), std::string(value).c_str());
  }

 private:
  std::string table_;
};

#include "frame/booking_shared.h"

#include <algorithm>

namespace vantry {

static constexpr std::string_view kMarked = "-1";
static constexpr std::string_view kUnmarked = "0";

void WarningList::InitWarningList() {
  rows_.assign(1, Row{});  // the table starts with one empty row, which no key finds
}

WarningList::Row* WarningList::find(std::string_view key) {
  const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) { return row.key == key; });
  return found == rows_.end() ? nullptr : &*found;
}

void WarningList::AddWarningKey(std::string_view key) {
  Row* row = find(key);
  if (!row) row = &rows_.emplace_back(Row{std::string(key), {}});
  row->mark = kUnmarked;
}

void WarningList::MarkWarningShown(std::string_view key) {
  if (Row* row = find(key)) row->mark = kMarked;
}

void WarningList::ClearWarningMarks() {
  for (Row& row : rows_) row.mark = kUnmarked;
}

bool WarningList::IsWarningMarked(std::string_view key) const {
  return std::any_of(rows_.begin(), rows_.end(),
                     [&](const Row& row) { return row.key == key && row.mark == kMarked; });
}

}  // namespace vantry

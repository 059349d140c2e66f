#include "inventory/maintenance_view.h"

#include "inventory/month_names.h"
#include "words/tags.h"

namespace vantry {

/// In place of a piece's id: the records of all pieces.
static constexpr std::string_view kAllPieces = "0";

/// The key of a month begins with its first day, by which its list is asked.
static std::string monthKey(const std::string& year, std::size_t month) {
  return year + (month < 10 ? "-0" : "-") + std::to_string(month) + "-01|" + year;
}

void MaintenanceView::fillTree() {
  for (const std::string& year : app().context.categories.years) {
    const std::string key = "YEAR|" + year;
    if (!tvwDB.Add({}, key, year)) continue;
    for (std::size_t month = 1; month <= kMonthNames.size(); ++month)
      static_cast<void>(tvwDB.Add(key, monthKey(year, month), std::string(kMonthNames[month - 1])));
  }
}

bool MaintenanceView::askFor(std::string_view month, const std::function<void()>& read) {
  return ask()("GETMITM", {{tags::MSD, month}, {tags::EID, kAllPieces}}, read);
}

std::string MaintenanceView::heading(const TreeNode& node) const {
  return node.text + ' ' + node.parent->text + " Maintenance List";
}

}  // namespace vantry

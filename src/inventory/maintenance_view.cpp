#include "inventory/maintenance_view.h"

#include "inventory/month_names.h"
#include "words/tags.h"

namespace vantry {

/// In place of a piece's id: the records of all pieces.
static constexpr std::string_view kAllPieces = "0";

void MaintenanceView::fillTree() {
  for (const std::string& year : app().context.categories.years) {
    const std::string key = "YEAR|" + year;
    if (!tvwDB.Add({}, key, year)) continue;
    for (int month = 1; const std::string_view name : kMonthNames)
      static_cast<void>(tvwDB.Add(key, monthCategory(year, month++) + '|' + year, std::string(name)));
  }
}

bool MaintenanceView::askFor(std::string_view month, const std::function<void()>& read) {
  return ask()("GETMITM", {{tags::MSD, month}, {tags::EID, kAllPieces}}, read);
}

std::string MaintenanceView::heading(const TreeNode& node) const {
  return node.text + ' ' + node.parent->text + " Maintenance List";
}

}  // namespace vantry

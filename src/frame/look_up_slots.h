#pragma once

#include <string>
#include <vector>

namespace vantry {

/// One piece, group or member that a look-up found.
struct LookUpRow {
  std::string EID, ENO, BNO, STY, ETY, EIU, RID;
};

/// The slots of the look-up by barcode or number: the text that is sought, and what was found. The result is
/// row 0.
struct EquipmentLookUp {
  std::string text;
  std::string LookupStatus;  ///< empty for a result, "Not Found", or "CANCEL" where the operator chose none
  std::vector<LookUpRow> LookupRows;
  int barOrNumberMode = 0;  ///< 2 while the look-up runs
  bool byNumber = false;    ///< whether the text of the last look-up is a number, else a barcode
  int chosenRow = 0;        ///< set by the window in which the operator picks one of several hits
};

}  // namespace vantry

#pragma once

#include "frame/app.h"
#include "platform/controls.h"
#include "platform/number_fields.h"
#include "platform/tree.h"

namespace vantry {

class BookingParts;

/// The equipment of a booking: what is in the room, what was added, and the types that are wished for;
/// with the minutes of set-up and clean-up that all of it takes.
class EquipmentPanel {
 public:
  /// Makes the controls in `place`, as one of the parts, with the roots of both trees.
  EquipmentPanel(BookingParts& parts, Container& place);

  /// Equipment or minutes have changed.
  Event Changed;

  Label lblEquipNumOrBarcode;
  TextBox txtEquipBarcode;
  Button cmdAddEquipViaNumber, cmdAddEquipViaBarcode;
  Button cmdSpecific;
  Tree tvwOtherEquipment;
  Button cmdRemoveEquipment;
  Button cmdViewEquipment;
  Tree tvwEquipment;
  Button cmdAddType;
  Button cmdRemoveEquipmentType;
  Label lblSetupTime;
  NumberField txtSetupTime;  ///< 0 to 999 minutes, kept in the record as well
  Label lblCleanupTime;
  NumberField txtCleanupTime;
  Button cmdSuggestTimes;

  /// Shows the record's minutes.
  void showMinutes();
  /// Allows what the selected nodes allow.
  void enableCommands();
  /// The booking can only be read from now on.
  void disableEditing();

  void cmdAddEquipViaNumber_Click();
  void cmdAddEquipViaBarcode_Click();
  void cmdSpecific_Click();
  void cmdRemoveEquipment_Click();
  void cmdViewEquipment_Click();
  void cmdAddType_Click();
  void cmdRemoveEquipmentType_Click();
  void cmdSuggestTimes_Click();
  void tvwEquipment_Check();

 private:
  void connect();
  void arrange(Container& place);
  using Adding = void (&)(BookingParts&);
  /// Adds by the text; afterwards the field is ready for the next one.
  void addByText(Adding add);
  void tellIfChanged(int nodesBefore);
  int nodes() const { return tvwOtherEquipment.Count() + tvwEquipment.Count(); }
  void remove(Tree& tree, std::string_view root);

  BookingParts& parts_;
  App& app_;
  bool editable_ = true;
};

}  // namespace vantry

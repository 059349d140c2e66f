#pragma once

#include <optional>
#include <string>

#include "booking/booking_record.h"
#include "frame/app.h"
#include "platform/controls.h"
#include "platform/number_fields.h"

namespace vantry {

/// A generic room as the operator words it.
struct RoomWish {
  GenericRoom room;
  std::string text;                          ///< the room in words
  std::string equipmentType, equipmentName;  ///< what it should hold; empty for nothing
};

/// Asks what a room has to be like.
class frmRoomInfo : public Form {
 public:
  /// Shows what was asked for so far.
  frmRoomInfo(App& app, const GenericRoom& asked);
  void Form_Load() override;
  void Form_Activate() override;
  void cmdOK_Click();
  void cmdCancel_Click() { Hide(); }

  std::optional<RoomWish> answer;  ///< nothing when it was cancelled

  Label lblRoomType{*this, "lblRoomType", "Room &Type:"};
  ComboBox cboRoomType{*this, "cboRoomType"};
  Label lblRoomLocation{*this, "lblRoomLocation", "&Location:"};
  ComboBox cboRoomLocation{*this, "cboRoomLocation"};
  Label lblRoomEquip{*this, "lblRoomEquip", "&Equipment Type:"};
  ComboBox cboRoomEquip{*this, "cboRoomEquip"};
  Label lblCapacity{*this, "lblCapacity", "Ca&pacity:"};
  ComboBox cboCompare{*this, "cboCompare"};
  NumberField txtCapacity{*this, "txtCapacity", 0, 2147483647};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  void fillLists();
  void enableOK();

  App& app_;
  GenericRoom asked_;
};

}  // namespace vantry

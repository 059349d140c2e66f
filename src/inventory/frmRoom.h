#pragma once

#include "inventory/detail_lines.h"
#include "inventory/room_equipment.h"
#include "inventory/typed_window.h"
#include "platform/number_fields.h"

namespace vantry {

/// The window of one room. It has a list of typed details, the equipment that is kept in it, and a mark that
/// its type makes it a storage room.
class frmRoom : public TypedWindow {
 public:
  explicit frmRoom(App& app);
  void mnuFilePrint_Click();
  void cmdROOM_NO_Click() { showNumbers(); }
  /// Marks a storage room by the selected type.
  void CheckStorage();

  Label lblROOM_TYPE{fraDetails, "lblROOM_TYPE", "Room Type:"};
  ComboBox cboROOM_TYPE{fraDetails, "cboROOM_TYPE"};
  Label lblROOM_NO{fraDetails, "lblROOM_NO", "Number:"};
  TextBox txtROOM_NO{fraDetails, "txtROOM_NO"};
  Button cmdROOM_NO{fraDetails, "cmdROOM_NO", "..."};
  Label lblROOM_NAME{fraDetails, "lblROOM_NAME", "Room Name:"};
  TextBox txtROOM_NAME{fraDetails, "txtROOM_NAME"};  ///< its tag is the id of the room
  Label lblSTS_TYPE{fraDetails, "lblSTS_TYPE", "Status:"};
  TextBox txtSTS_TYPE{fraDetails, "txtSTS_TYPE"};
  Label lblROOM_CAPACITY{fraDetails, "lblROOM_CAPACITY", "Capacity:"};
  NumberField txtROOM_CAPACITY{fraDetails, "txtROOM_CAPACITY", 0, kMostPeople};
  Label lblLOC_NAME{fraDetails, "lblLOC_NAME", "Location:"};
  ComboBox cboLOC_NAME{fraDetails, "cboLOC_NAME"};
  Label lblSTORAGE{fraDetails, "lblSTORAGE", "Storage Room:"};
  CheckBox chkSTORAGE{fraDetails, "chkSTORAGE", ""};
  DetailLines details{app_, fraDetails, kRoomDetails};
  Button cmdSaveDetails{fraDetails, "cmdSaveDetails", "&Save"};

  Frame fraEquipment{*this, "fraTab(2)", "", 0};
  RoomEquipment equipment{app_, ask_, fraEquipment, *this};

 protected:
  [[nodiscard]] const RecordFields& fields() const override { return fields_; }
  void prepare() override;
  void showNew() override;
  void showRecord() override;
  void addOwnTags() override;
  void takeReply(bool created) override;
  void copyEnds() override;
  void DisableEditing() override;
  void SetFormSecurity() override;
  void DisableButtons() override;
  void merge(bool on) override;

 private:
  static constexpr int kMostPeople = 99999;

  std::vector<RecordField> fieldTable();
  void connect();
  void arrange();
  void showLocation(const std::string& id);

  RecordFields fields_;
};

}  // namespace vantry

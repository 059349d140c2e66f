#include "booking/frmRoomInfo.h"

#include <algorithm>

#include "platform/entry_check.h"
#include "platform/text.h"
#include "platform/wiring.h"

namespace vantry {

namespace {

constexpr const char* kNoEquipment = "(none)";

/// Selects what was asked before, if the list has it; without that the usual entry, else the first.
void select(ComboBox& list, int id, std::string_view usual = {}) {
  if (id == 0) {
    list.ListIndex = std::max(list.indexOfData(usual), list.ListCount() > 0 ? 0 : -1);
  } else {
    list.ListIndex = list.indexOfData(std::to_string(id));
  }
}

}  // namespace

frmRoomInfo::frmRoomInfo(App& app, const GenericRoom& asked)
    : Form(app.windows, "frmRoomInfo"), app_(app), asked_(asked) {
  Caption = "Additional Room Information";
  Resizable = false;
  cboCompare.AccessibleName = "At least or at most";
  txtCapacity.AccessibleName = "Capacity";
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  on(cboRoomType.Click, this, &frmRoomInfo::enableOK);
  on(cboRoomLocation.Click, this, &frmRoomInfo::enableOK);
  on(cmdOK.Click, this, &frmRoomInfo::cmdOK_Click);
  on(cmdCancel.Click, this, &frmRoomInfo::cmdCancel_Click);
  Layout = Column{Fields{lblRoomType, cboRoomType, lblRoomLocation, cboRoomLocation, lblRoomEquip,
                         cboRoomEquip, lblCapacity, Row{cboCompare, txtCapacity, Stretch{}}},
                  Gap{}, Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmRoomInfo::Form_Load() {
  app_.tools.PrepareForm(*this);
  fillLists();
  select(cboRoomType, asked_.GenericRoomTypeId);
  select(cboRoomLocation, asked_.GenericRoomLocationId, app_.context.locationId);
  cboRoomEquip.ListIndex = 0;
  cboCompare.ListIndex = asked_.GenericRoomCapacityOp == 0 ? 0 : 1;
  txtCapacity.Value = asked_.GenericRoomCapacity;
  enableOK();
}

void frmRoomInfo::Form_Activate() {
  cboRoomType.SetFocus();
}

void frmRoomInfo::fillLists() {
  for (const Category& type : app_.context.categories.rooms) {
    if (!type.storage) cboRoomType.AddItem(type.name, type.id);
  }
  for (const Location& location : app_.context.allLocations)
    cboRoomLocation.AddItem(location.name, location.id);
  cboRoomEquip.AddItem(kNoEquipment);
  for (const Category& type : app_.context.categories.equipment) cboRoomEquip.AddItem(type.name, type.id);
  cboCompare.AddItem(std::string(capacitySign(0)));
  cboCompare.AddItem(std::string(capacitySign(1)));
}

void frmRoomInfo::enableOK() {
  cmdOK.Enabled = cboRoomType.ListIndex >= 0 && cboRoomLocation.ListIndex >= 0;
}

void frmRoomInfo::cmdOK_Click() {
  if (!entriesAreReadable(*this)) return;
  RoomWish wish;
  wish.room.GenericRoomTypeId = intOf(cboRoomType.ItemData(cboRoomType.ListIndex));
  wish.room.GenericRoomLocationId = intOf(cboRoomLocation.ItemData(cboRoomLocation.ListIndex));
  wish.room.GenericRoomCapacity = txtCapacity.number();
  wish.room.GenericRoomCapacityOp = cboCompare.ListIndex;
  wish.text = genericRoomText(wish.room, cboRoomLocation.Text(), cboRoomType.Text());
  if (cboRoomEquip.ListIndex > 0) {
    wish.equipmentType = cboRoomEquip.ItemData(cboRoomEquip.ListIndex);
    wish.equipmentName = cboRoomEquip.Text();
  }
  answer = std::move(wish);
  Hide();
}

}  // namespace vantry

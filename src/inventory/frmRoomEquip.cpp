#include "inventory/frmRoomEquip.h"

#include "inventory/modRoom.h"
#include "inventory/record_refusals.h"
#include "messaging/return_codes.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

frmRoomEquip::frmRoomEquip(App& app, std::string id)
    : Form(app.windows, "frmRoomEquip"), app_(app), ask_(app.global, Name()), id_(std::move(id)) {
  Caption = "Move Equipment/Group";
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  on(cboLOC_NAME.Click, this, &frmRoomEquip::cboLOC_NAME_Click);
  on(cmdOK.Click, this, &frmRoomEquip::cmdOK_Click);
  on(cmdCancel.Click, this, &frmRoomEquip::cmdCancel_Click);
  Layout = Column{lblDescription, Fields{lblLOC_NAME, cboLOC_NAME, lblROOM_NAME, cboROOM_NAME}, Gap{},
                  Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmRoomEquip::Form_Load() {
  app_.tools.PrepareForm(*this);
  cmdOK.Enabled = false;
  FillLocations(app_, cboLOC_NAME);
  if (cboLOC_NAME.ListCount() > 0) cboLOC_NAME.ListIndex = 0;
}

void frmRoomEquip::Form_Activate() {
  cboLOC_NAME.SetFocus();
}

void frmRoomEquip::cboLOC_NAME_Click() {
  FillRoomsOfLocation(app_, ask_, cboROOM_NAME, cboLOC_NAME.ItemData(cboLOC_NAME.ListIndex));
  cmdOK.Enabled = cboROOM_NAME.ListCount() > 0;
}

void frmRoomEquip::cmdOK_Click() {
  const std::string& room = cboROOM_NAME.ItemData(cboROOM_NAME.ListIndex);
  if (room.empty()) return;
  const int rc = ask_.codeOf("ADDREQP", {{tags::EID, id_}, {tags::RID, room}});
  if (rc == codes::PendingBooking) {
    informationBox(app_.desktop,
                   "Room is used in an existing booking.  Equipment cannot be removed at this time.");
  } else {
    moved = recordSucceeded(ask_, rc, "ADDREQP");
  }
  Hide();
}

}  // namespace vantry

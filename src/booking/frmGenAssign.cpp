#include "booking/frmGenAssign.h"

#include "booking/media_columns.h"
#include "messaging/tagmessage.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {
namespace {

constexpr ReplyColumn kPieceColumns[] = {{"Equip ID", tags::EID},
                                         {"Equipment Type", tags::ETY},
                                         {"Equipment Number", tags::AENO},
                                         {"Group?", tags::EIU},
                                         {"Room", tags::RNM}};

}  // namespace

frmGenAssign::Counts assignedCounts(const TagMessage& message) {
  return {message.Count(tags::EID), message.Count(tags::IM), message.Count(tags::RID)};
}

frmGenAssign::frmGenAssign(App& app, Counts counts)
    : Form(app.windows, "frmGenAssign"), app_(app), counts_(counts) {
  Caption = "Generic Assignments";
  lblRoom.ReadOnlyField = true;
  faGenMedia.AccessibleName = "Assigned media items";
  faGenEquip.AccessibleName = "Assigned equipment";
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  on(cmdOK.Click, this, &frmGenAssign::cmdOK_Click);
  on(cmdPrint.Click, this, &frmGenAssign::cmdPrint_Click);
  Layout = Column{Row{lblRoomCaption, lblRoom},   lblGenItems, faGenMedia, lblGenEquip, faGenEquip, Gap{},
                  Row{Stretch{}, cmdPrint, cmdOK}};
}

void frmGenAssign::Form_Load() {
  app_.tools.PrepareForm(*this);
  fillRoom();
  media_.build(dialogLayout(kMediaColumns, tags::IM));
  media_.fill();
  pieces_.build(dialogLayout(kPieceColumns, tags::EID));
  pieces_.fill();
  showParts();
}

void frmGenAssign::showParts() {
  const struct {
    Control& label;
    Control& list;
    int count;
  } parts[] = {{lblRoomCaption, lblRoom, counts_.rooms},
               {lblGenItems, faGenMedia, counts_.items},
               {lblGenEquip, faGenEquip, counts_.equipment}};
  for (const auto& part : parts) {
    part.label.Visible = part.count > 0;
    part.list.Visible = part.count > 0;
  }
}

void frmGenAssign::Form_Activate() {
  cmdOK.SetFocus();
}

void frmGenAssign::fillRoom() {
  if (app_.message.NextRecord(tags::RID)) lblRoom.Caption = app_.message.Get(tags::RNM);
}

void frmGenAssign::cmdOK_Click() {
  Unload();
}

void frmGenAssign::cmdPrint_Click() {
  app_.reports().print(*this);
}

}  // namespace vantry

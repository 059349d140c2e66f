#include "booking/frmGenAssign.h"

#include "booking/modBooking_tags.h"
#include "messaging/tagmessage.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {
namespace {

/// A column of a grid and the tag that fills it.
struct TagColumn {
  int column;
  std::string_view tag;
};

constexpr TagColumn kItemCells[] = {
    {kMediaItem, tags::IM},       {kMediaTitle, tags::TITL}, {kMediaTypeName, tags::MDSC},
    {kMediaLocation, tags::LO},   {kMediaCopy, tags::CP},    {kMediaEnumeration, tags::EN},
    {kMediaChronology, tags::CH}, {kMediaYear, tags::YR},
};

constexpr std::string_view kEquipmentFormat = "<Equip ID|<Equipment Type|<Equipment Number|<Group?|<Room";
constexpr TagColumn kPieceCells[] = {
    {0, tags::EID}, {1, tags::ETY}, {2, tags::AENO}, {3, tags::EIU}, {4, tags::RNM}};

void addRow(Grid& grid, const TagMessage& message, std::span<const TagColumn> columns) {
  const int row = grid.Rows;
  grid.Rows = row + 1;
  for (const TagColumn& column : columns) grid.TextMatrix(row, column.column, message.Get(column.tag));
}

/// Fits the columns to their texts; those that are hidden stay so.
void fit(Grid& grid) {
  grid.AutoSize(0, grid.Cols - 1);
}

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
  BuildMediaGrid(faGenMedia);
  faGenEquip.Rows = 1;
  faGenEquip.FormatString = std::string(kEquipmentFormat);
  fillRoom();
  fillMedia();
  fillEquipment();
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

void frmGenAssign::fillMedia() {
  while (app_.message.NextRecord(tags::IM)) addRow(faGenMedia, app_.message, kItemCells);
  fit(faGenMedia);
}

void frmGenAssign::fillEquipment() {
  while (app_.message.NextRecord(tags::EID)) addRow(faGenEquip, app_.message, kPieceCells);
  fit(faGenEquip);
}

void frmGenAssign::cmdOK_Click() {
  Unload();
}

void frmGenAssign::cmdPrint_Click() {
  app_.reports().print(*this);
}

}  // namespace vantry

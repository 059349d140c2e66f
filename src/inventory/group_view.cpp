#include "inventory/group_view.h"

#include "platform/text.h"
#include "platform/wiring.h"
#include "records/records.h"
#include "words/tags.h"

namespace vantry {

static constexpr int kHasMembersColumn = 1;
static constexpr int kNumberColumn = 2;

/// What the column "Members?" shows.
static std::string hasMembers(int count) {
  return count > 0 ? "Y" : "N";
}

GroupView::GroupView(const MainParts& mainParts, Frame& frame, int kind, MenuItem& popup)
    : InventoryView(mainParts, frame, kind, popup),
      cmdMembers(frame, "cmdMembers", "&Members >>"),
      members(mainParts, frame) {
  const LayoutNode buttons =
      Row{cmdNewInv, cmdEditInv, cmdDeleteInv, Gap{}, cmdMembers, Stretch{}, cmdSearch, cmdPrintInv};
  frame.Layout = beside(Column{buttons, members.fraMembers});
  connect();
}

void GroupView::connect() {
  hooks().ownText = [this](const ReplyColumn& column) {
    return hasMembers(intOf(app().message.Get(column.tag)));
  };
  on(showMembers.Run, this, &GroupView::cmdMembers_Click);
  showMembers.link(cmdMembers);
  on(parts().menus.mnuPopupGroupMembers.Click, this, &GroupView::mnuPopupGroupMembers_Click);
  on(members.create.Run, this, &GroupView::mnuPopupMemberNew_Click);
  members.deleted = [this](std::string_view id, std::string_view type) {
    countMembers();
    if (pieceDeleted) pieceDeleted(id, type);
  };
  rowSelected();
}

void GroupView::secure(const Rights& rights) {
  InventoryView::secure(rights);
  members.secure(rights);
}

void GroupView::BuildInventoryFlexArray() {
  InventoryView::BuildInventoryFlexArray();
  members.BuildInventoryFlexArray();
}

/// The pane is for one group only: it closes when another is selected.
void GroupView::rowSelected() {
  closeMembers();
  showMembers.Enabled = hasSelectedRow();
  parts().menus.mnuPopupGroupMembers.Enabled =
      hasSelectedRow() && text(fa.Row, kHasMembersColumn) == hasMembers(1);
}

void GroupView::mnuPopupGroupMembers_Click() {
  members.isOpen() ? closeMembers() : openMembers();
}

void GroupView::closeMembers() {
  members.close();
  cmdMembers.Caption = "&Members >>";
}

void GroupView::openMembers() {
  if (!hasSelectedRow()) return;
  members.open(selectedId());
  if (!members.isOpen()) return;
  cmdMembers.Caption = "<< &Members";
  countMembers();
}

void GroupView::countMembers() {
  setText(fa.Row, kHasMembersColumn, hasMembers(members.count()));
}

void GroupView::refill(std::string_view category) {
  const std::string group = hasSelectedRow() ? selectedId() : std::string();
  const bool wasOpen = members.isOpen();
  InventoryView::refill(category);
  if (group.empty() || hasSelectedRow()) return;
  for (int row = fa.FixedRows; row < fa.Rows; ++row) {
    if (text(row, 0) != group) continue;
    fa.Row = row;
    fa_Click();
    if (wasOpen) openMembers();
    return;
  }
}

void GroupView::mnuPopupMemberNew_Click() {
  if (!hasSelectedRow()) return;
  app().slots.group = {selectedId(), text(fa.Row, kNumberColumn)};
  OpenRecordWindow(app(), {kGroupMember, "", kSourceGroupMembers});
}

}  // namespace vantry

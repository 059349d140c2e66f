#include "inventory/frmGroup.h"

#include "frame/app.h"
#include "inventory/status_names.h"
#include "lists/grids.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

static const PieceWindowKind kKind{
    .typed = {.window = {.window = {kGroup,
                                    "frmGroup",
                                    "group",
                                    "group",
                                    Subject::Equipment,
                                    {"Changes will be lost!  Do you wish to SAVE this record before exiting?",
                                     Box::Kind::Warning, false}},
                         .caption = "Group Inventory",
                         .read = "GETGDTL",
                         .create = "NEWGRPD",
                         .update = "UPDGRPD",
                         .idTag = tags::EID,
                         .refusalEndsSave = true,
                         .nextSource = kSourceNextGroup,
                         .search = kFindGroups,
                         .tabStrip = "tabGroup",
                         .tabStripOfNew = "tabGroupDetails",
                         .pages = {{"Details", "mnuViewDetails", "&Details"},
                                   {"Bookings", "mnuViewBookings", "&Bookings", "record-bookings"},
                                   {"Members", "mnuViewMembers", "&Members", "group-members"},
                                   {"Notes", "mnuViewNotes", "&Notes", "record-notes"},
                                   {"Properties", "mnuViewProperties", "&Properties", "record-properties"}}},
              .categories = &CategoryLists::groups,
              .typeIdTag = tags::ETI,
              .typeNameTag = tags::ETY,
              .numberTag = tags::ENO,
              .newStatus = kNotCharged,
              .bookings = kEquipmentBookings,
              .bookingsGrid = "fa(2)",
              .notes = kEquipmentNotes},
    .moveRefusal = "Booking exist for Pickup or Delivery.",
    .typeTip = "Select the appropriate Group...TV_VCRs",
    .numberTip = "Enter an equipment number...TV_VCR1",
    .statusTip = "Is this Available, Lost, Stolen, etc.",
    .roomTip = "The room where the equipment is regularly stored.",
    .locationTip = "Where the group is regularly stored.",
    .currentlyAtTip = "The room where the group is currently located."};

frmGroup::frmGroup(App& app) : PieceWindow(app, kKind), fields_(fieldTable()) {
  placePagesAround({"Members", fraMembers, [this] { firstVisit(members); }});
  connect();
  arrange();
}

std::vector<RecordField> frmGroup::fieldTable() {
  std::vector<RecordField> rows = sharedFields();
  rows.push_back({.control = txtEQUIP_VALUER,
                  .tag = tags::EQVR,
                  .use = FieldUse::Shown,
                  .tip = "How much $$$ will it cost to replace this group?"});
  rows.push_back({.control = cmdSaveDetails, .tip = "Save the information on this tab."});
  addPropertyFields(rows);
  return rows;
}

void frmGroup::connect() {
  on(commands.print.Run, this, &frmGroup::mnuFilePrint_Click);
  commands.save.link(cmdSaveDetails);
}

void frmGroup::arrange() {
  fraDetails.Layout = Column{
      Row{Fields{lblEQUIP_TYPE, cboEQUIP_TYPE, lblEQUIP_NO,
                 Row{LayoutNode(txtEQUIP_NO).share(1), cmdEQUIP_NO}, lblBARCODE_NO, txtBARCODE_NO,
                 lblSTS_TYPE, txtSTS_TYPE}
              .share(1),
          Gap{},
          Fields{lblEQUIP_VALUER, txtEQUIP_VALUER, place.lblLOC_NAME, place.cboLOC_NAME, place.lblROOM_NAME,
                 place.cboROOM_NAME, place.lblTEMP_ROOM_NAME, place.txtTEMP_ROOM_NAME}
              .share(1)},
      Stretch{}, Row{Stretch{}, cmdSaveDetails}};
  fraProperties.Layout = Column{propertyFields.layout({lblHIST_BKNGS, txtHIST_BKNGS}), Stretch{}};
  Layout = pagesLayout();
}

void frmGroup::merge(bool on) {
  mnuViewMergeCells.Checked = on;
  for (Grid* grid : {&bookings.fa, &members.faCandidates, &members.faMembers}) SetGridMerge(*grid, on);
}

/// A copy has neither members nor a history.
void frmGroup::showOwn() {
  fields_.load([this](std::string_view tag) { return messageValue(tag); });
  if (!isCopy()) return;
  takeMembersValue("");
  clearProperties();
}

void frmGroup::copyEnds() {
  PieceWindow::copyEnds();
  members.unlock();
}

void frmGroup::membersChanged() {
  app_.main().refillInventory(kGroup, category());
}

void frmGroup::mnuFilePrint_Click() {
  readPage(kThirdPage);
  readPage(kNotesPage);
  app_.reports().print(*this);
}

void frmGroup::SetFormSecurity() {
  PieceWindow::SetFormSecurity();
  members.secure(app_.context.rights);
}

}  // namespace vantry

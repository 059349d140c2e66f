#include "inventory/frmRoom.h"

#include <algorithm>

#include "frame/app.h"
#include "inventory/modRoom.h"
#include "inventory/status_names.h"
#include "lists/grids.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

static const TypedWindowKind kKind{
    .window = {.window = {kRoom,
                          "frmRoom",
                          "room",
                          "room",
                          Subject::Rooms,
                          {"Changes will be lost!  Do you wish to SAVE this record before exiting?",
                           Box::Kind::Warning, false}},
               .caption = "Room Inventory",
               .read = "GETRDTL",
               .create = "NEWROOMD",
               .update = "UPDROOMD",
               .idTag = tags::RID,
               .refusalEndsSave = false,
               .nextSource = kSourceNextRoom,
               .search = kFindRooms,
               .tabStrip = "tabRoom",
               .tabStripOfNew = "tabRoomDetails",
               .pages = {{"Details", "mnuViewDetails", "&Details"},
                         {"Bookings", "mnuViewBookings", "&Bookings", "record-bookings"},
                         {"Equipment", "mnuViewEquipment", "&Equipment", "room-equipment"},
                         {"Notes", "mnuViewNotes", "&Notes", "record-notes"},
                         {"Properties", "mnuViewProperties", "&Properties", "record-properties"}}},
    .categories = &CategoryLists::rooms,
    .typeIdTag = tags::RTI,
    .typeNameTag = tags::RTY,
    .numberTag = tags::RNO,
    .newStatus = kAvailable,
    .bookings = kRoomBookings,
    .bookingsGrid = "fa(2)",
    .notes = kRoomNotes};

frmRoom::frmRoom(App& app)
    : TypedWindow(app, kKind, {cboROOM_TYPE, txtROOM_NO, cmdROOM_NO, txtSTS_TYPE}), fields_(fieldTable()) {
  placePagesAround({"Equipment", fraEquipment, [this] { firstVisit(equipment); }});
  connectControls();
  connect();
  arrange();
}

/// The location is read by itself, since the operator's list may lack it.
std::vector<RecordField> frmRoom::fieldTable() {
  std::vector<RecordField> rows{
      {.control = cboROOM_TYPE, .required = "Room Type", .tip = "Select the appropriate Room Type."},
      {.control = txtROOM_NO, .required = "Number", .tip = "Enter a Room number...Seminar1"},
      {.control = txtROOM_NAME, .tag = tags::RNM, .tip = "The name of the Room."},
      {.control = txtSTS_TYPE,
       .tag = tags::STY,
       .use = FieldUse::Shown,
       .required = "Status",
       .tip = "Is this Available, In-Maintenance, etc"},
      {.control = cboLOC_NAME,
       .tag = tags::LOC,
       .required = "Location",
       .tip = "Where the Room is located?",
       .show = [this](const std::string& id) { showLocation(id); }},
      {.control = txtROOM_CAPACITY, .tag = tags::RCA, .tip = "How many people can fit in this room?"},
      {.control = chkSTORAGE, .tag = tags::RST, .use = FieldUse::Shown},
      {.control = equipment.cmdAdd, .tip = "Add Equipment to Room."},
      {.control = equipment.cmdRemove,
       .tip = "Remove Equipment from this room, but put it in another room."}};
  rows.push_back({.control = cmdSaveDetails, .tip = "Save the information on this tab."});
  addPropertyFields(rows);
  return rows;
}

void frmRoom::connect() {
  const Event changed = [this] { touch(); };
  fields_.tellChanges(changed);
  details.Changed = changed;
  cboROOM_TYPE.Click = [this] {
    CheckStorage();
    touch();
  };
  on(commands.print.Run, this, &frmRoom::mnuFilePrint_Click);
  commands.save.link(cmdSaveDetails);
}

void frmRoom::arrange() {
  fraDetails.Layout = Column{
      Row{Fields{lblROOM_TYPE, cboROOM_TYPE, lblROOM_NO, Row{LayoutNode(txtROOM_NO).share(1), cmdROOM_NO},
                 lblROOM_NAME, txtROOM_NAME, lblSTS_TYPE, txtSTS_TYPE}
              .share(1),
          Gap{},
          Fields{lblROOM_CAPACITY, txtROOM_CAPACITY, lblLOC_NAME, cboLOC_NAME, lblSTORAGE, chkSTORAGE}.share(
              1)},
      details.layout().share(1), Row{Stretch{}, cmdSaveDetails}};
  fraProperties.Layout = Column{propertyFields.layout({lblHIST_BKNGS, txtHIST_BKNGS}), Stretch{}};
  Layout = pagesLayout();
}

void frmRoom::merge(bool on) {
  mnuViewMergeCells.Checked = on;
  for (Grid* grid : {&bookings.fa, &equipment.faCandidates, &equipment.faMembers, &details.fa})
    SetGridMerge(*grid, on);
}

// Opening

void frmRoom::prepare() {
  TypedWindow::prepare();
  FillLocations(app_, cboLOC_NAME);
}

void frmRoom::showNew() {
  TypedWindow::showNew();
  cboLOC_NAME.ListIndex = cboLOC_NAME.ListCount() > 0 ? 0 : -1;
}

void frmRoom::showRecord() {
  if (!isCopy()) txtROOM_NAME.Tag = recordId();
  propertyFields.txtCR_LOC_NAME.Tag = messageValue(tags::CLI);  // its id, which nobody reads on the screen
  fields_.load([this](std::string_view tag) { return messageValue(tag); });
  if (isCopy()) clearProperties();
  details.fill();
}

void frmRoom::showLocation(const std::string& id) {
  cboLOC_NAME.ListIndex = EntryOfLocation(cboLOC_NAME, id, messageValue(tags::LNA));
}

void frmRoom::CheckStorage() {
  const auto& types = app_.context.categories.rooms;
  const auto type = std::find_if(types.begin(), types.end(),
                                 [this](const Category& each) { return each.name == cboROOM_TYPE.Text(); });
  chkSTORAGE.Value = type != types.end() && type->storage;
}

// Saving

void frmRoom::addOwnTags() {
  fields_.save([this](std::string_view tag, const std::string& value) { app_.message.Add(tag, value); });
  details.addTags();
}

void frmRoom::takeReply(bool created) {
  TypedWindow::takeReply(created);
  if (created) txtROOM_NAME.Tag = recordId();
}

void frmRoom::copyEnds() {
  TypedWindow::copyEnds();
  equipment.unlock();
}

void frmRoom::mnuFilePrint_Click() {
  readPage(kThirdPage);
  readPage(kNotesPage);
  app_.reports().print(*this);
}

void frmRoom::DisableButtons() {
  TypedWindow::DisableButtons();
  details.DisableButtons();
}

// Rights

void frmRoom::DisableEditing() {
  TypedWindow::DisableEditing();
  details.secure(false);
}

void frmRoom::SetFormSecurity() {
  details.secure(true);
  TypedWindow::SetFormSecurity();
  equipment.secure(app_.context.rights);
}

}  // namespace vantry

#include "inventory/frmEquipment.h"

#include "frame/app.h"
#include "inventory/record_refusals.h"
#include "inventory/status_names.h"
#include "lists/grids.h"
#include "messaging/return_codes.h"
#include "platform/wiring.h"
#include "records/records.h"
#include "words/tags.h"

namespace vantry {

static const PieceWindowKind kKind{
    .typed = {.window = {.window = {kEquipment,
                                    "frmEquipment",
                                    "equipment",
                                    "equipment",
                                    Subject::Equipment,
                                    {"Changes will be lost!  Do you wish to SAVE this record before exiting?",
                                     Box::Kind::Warning, false}},
                         .caption = "Equipment Inventory",
                         .read = "GETEDTL",
                         .create = "NEWEQIPD",
                         .update = "UPDEQIPD",
                         .idTag = tags::EID,
                         .refusalEndsSave = false,
                         .nextSource = kSourceNextEquipment,
                         .search = kFindEquipment,
                         .tabStrip = "tabEquipment",
                         .tabStripOfNew = "tabEquipmentDetails",
                         .pages = {{"Details", "mnuViewDetails", "&Details"},
                                   {"Bookings", "mnuViewBookings", "&Bookings", "record-bookings"},
                                   {"Maintenance", "mnuViewMaintenance", "&Maintenance", "maintenance"},
                                   {"Notes", "mnuViewNotes", "&Notes", "record-notes"},
                                   {"Properties", "mnuViewProperties", "&Properties", "record-properties"}}},
              .categories = &CategoryLists::equipment,
              .typeIdTag = tags::ETI,
              .typeNameTag = tags::ETY,
              .numberTag = tags::ENO,
              .newStatus = kNotCharged,
              .bookings = kEquipmentBookings,
              .bookingsGrid = "fa(0)",
              .notes = kEquipmentNotes},
    .moveRefusal = "Booking exist for Pickup and Delivery.",
    .typeTip = "Select from Television, VCR, Projector...",
    .numberTip = "Enter an equipment number...TV1",
    .statusTip = "Is this Available, Lost, Stolen...",
    .roomTip = "The room where the equipment is regularly stored.",
    .locationTip = "Where the equipment is regularly stored.",
    .currentlyAtTip = "The room where the equipment is currently located."};

static constexpr std::string_view kNone = "(none)";

frmEquipment::frmEquipment(App& app) : PieceWindow(app, kKind), fields_(fieldTable()) {
  txtGroup.Locked = true;
  placePagesAround({"Maintenance", fraMaintenance, [this] { firstMaintenance(); }});
  connect();
  arrange();
}

std::vector<RecordField> frmEquipment::fieldTable() {
  std::vector<RecordField> rows = sharedFields();
  const auto edited = [&rows](Control& control, std::string_view tag, std::string_view tip) {
    rows.push_back({.control = control, .tag = tag, .tip = tip});
  };
  edited(txtEQUIP_MANUF, tags::EMA, "The maker/builder of the equipment...Sony");
  edited(txtEQUIP_FORMAT, tags::EFO, "Enter 27 Inch, VHS, Beta, etc.");
  edited(txtEQUIP_MODEL, tags::EMO, "Enter equipment model number.");
  edited(txtEQUIP_SERIAL_NO, tags::ESN, "Enter equipment serial number.");
  edited(txtEQUIP_VALUEP, tags::EQVP, "Value of this piece of equipment?");
  edited(txtEQUIP_VALUER, tags::EQVR, "Cost to replace this?");
  edited(txtEQUIP_DEALER, tags::ESU, "Name the dealer where this equipment was purchased.");
  edited(dtEQUIP_DT_PUR, tags::EDP, "When the equipment was purchased.");
  edited(dtEQUIP_NXT_MAINT, tags::ENM, "Date when next maintenance is to be performed.");
  rows.push_back({.control = txtGroup, .tip = "View the group information for this piece of equipment."});
  rows.push_back({.control = cmdSaveDetails, .tip = "Save the information on this tab."});
  addPropertyFields(rows);
  rows.push_back({txtHIST_MAINT, tags::EHM, FieldUse::Shown});
  return rows;
}

void frmEquipment::connect() {
  fields_.tellChanges([this] { touch(); });
  on(commands.print.Run, this, &frmEquipment::mnuFilePrint_Click);
  on(txtGroup.DblClick, this, &frmEquipment::txtGroup_DblClick);
  on(maintenance.create, this, &frmEquipment::cmdNewMaint_Click);
  txtGroup.KeyDown = [this](std::string_view key) {
    if (key != "F4") return false;
    txtGroup_DblClick();
    return true;
  };
  commands.save.link(cmdSaveDetails);
}

void frmEquipment::arrange() {
  fraDetails.Layout = Column{
      Row{Fields{lblEQUIP_TYPE, cboEQUIP_TYPE, lblEQUIP_NO,
                 Row{LayoutNode(txtEQUIP_NO).share(1), cmdEQUIP_NO}, lblBARCODE_NO, txtBARCODE_NO,
                 lblEQUIP_MANUF, txtEQUIP_MANUF, lblEQUIP_FORMAT, txtEQUIP_FORMAT, lblEQUIP_MODEL,
                 txtEQUIP_MODEL, lblEQUIP_SERIAL_NO, txtEQUIP_SERIAL_NO, lblSTS_TYPE, txtSTS_TYPE}
              .share(1),
          Gap{},
          Fields{lblEQUIP_VALUEP, txtEQUIP_VALUEP, lblEQUIP_VALUER, txtEQUIP_VALUER, lblEQUIP_DEALER,
                 txtEQUIP_DEALER, lblEQUIP_DT_PUR, dtEQUIP_DT_PUR, lblEQUIP_NXT_MAINT, dtEQUIP_NXT_MAINT,
                 lblGroup, txtGroup, place.lblLOC_NAME, place.cboLOC_NAME, place.lblROOM_NAME,
                 place.cboROOM_NAME, place.lblTEMP_ROOM_NAME, place.txtTEMP_ROOM_NAME}
              .share(1)},
      Stretch{}, Row{Stretch{}, cmdSaveDetails}};
  fraProperties.Layout =
      Column{propertyFields.layout({lblHIST_BKNGS, txtHIST_BKNGS, lblHIST_MAINT, txtHIST_MAINT}), Stretch{}};
  Layout = pagesLayout();
}

void frmEquipment::merge(bool on) {
  mnuViewMergeCells.Checked = on;
  SetGridMerge(bookings.fa, on);
  SetGridMerge(maintenance.fa, on);
}

// Opening

void frmEquipment::showNew() {
  PieceWindow::showNew();
  caller_ = app_.slots.group;
  const bool fromGroup = CallerView == kSourceGroup || CallerView == kSourceGroupMembers;
  showGroup(fromGroup ? caller_ : GroupSlots{});
}

void frmEquipment::showOwn() {
  caller_ = app_.slots.group;
  fields_.load([this](std::string_view tag) { return messageValue(tag); });
  if (isCopy()) {
    clearProperties();
    txtHIST_MAINT.Text = "";
    return showGroup({});
  }
  showGroup({messageValue(tags::GRPID), messageValue(tags::GRPNO)});
}

void frmEquipment::showGroup(const GroupSlots& group) {
  txtGroup.Text = group.number.empty() ? std::string(kNone) : group.number;
  txtGroup.Tag = group.id;
}

void frmEquipment::firstMaintenance() {
  maintenance.BuildMaintenanceTab();
  if (isCopy()) maintenance.lock();
}

// Saving

/// A group's window shows afterwards what the group is worth.
void frmEquipment::addRecord(bool created) {
  PieceWindow::addRecord(created);
  if (created && CallerView == kSourceGroup) app_.message.Add(tags::GRPID, caller_.id);
}

void frmEquipment::takeReply(bool created) {
  PieceWindow::takeReply(created);
  const std::string value = messageValue(tags::MVL);
  // A piece of another group says nothing of the caller's value.
  if (CallerView != kSourceGroup || value.empty() || txtGroup.Tag != caller_.id) return;
  if (InventoryWindow* group = windowOf(kGroup, caller_.id)) group->takeMembersValue(value);
}

void frmEquipment::copyEnds() {
  PieceWindow::copyEnds();
  maintenance.unlock();
}

/// A new piece that was asked for among a group's members joins the group. One that was refused has no id
/// that a group could take.
bool frmEquipment::saveMore(bool created) {
  if (!created || CallerView != kSourceGroupMembers || recordId().empty()) return true;
  const int rc = ask_.codeOf(
      "NEWGITM",
      {{tags::EID, recordId()}, {tags::GRPID, txtGroup.Tag.get()}, {tags::ULI, place.locationId()}});
  const bool endsSave = rc == codes::GroupStatus;
  if (endsSave) warningBox(app_.desktop, "Equipment group status prohibits editing of this record.");
  if (endsSave || !joinSucceeded(app_, ask_, rc)) {
    showGroup({});
    return !endsSave;
  }
  const std::string value = messageValue(tags::MVL);
  place.showGroups();
  showGroupValue(value);
  return true;
}

void frmEquipment::takeNextMaintenance(const std::optional<Date>& date) {
  showQuietly([&] { dtEQUIP_NXT_MAINT.Value = date; });
}

/// The field shows what the group is worth now. The piece keeps its own value in later saves, unless the
/// operator enters another.
void frmEquipment::showGroupValue(const std::string& value) {
  ownValue_ = txtEQUIP_VALUER.plain();
  showQuietly([&] { txtEQUIP_VALUER.Text(value); });
  groupValue_ = txtEQUIP_VALUER.plain();
}

void frmEquipment::addValues() {
  fields_.save([this](std::string_view tag, const std::string& value) {
    const bool isGroups = tag == tags::EQVR && ownValue_ && value == groupValue_;
    app_.message.Add(tag, isGroups ? *ownValue_ : value);
  });
}

void frmEquipment::refreshLists() {
  if (CallerView == kSourceGroupMembers) {
    app_.main().mnuPopupGroupMembers_Click();
    app_.main().mnuPopupGroupMembers_Click();
  }
  PieceWindow::refreshLists();
}

// Commands

void frmEquipment::mnuFilePrint_Click() {
  readPage(kNotesPage);
  app_.reports().print(*this);
}

void frmEquipment::txtGroup_DblClick() {
  if (!txtGroup.Tag.get().empty()) OpenRecordWindow(app_, {kGroup, txtGroup.Tag, kSourceEquipment});
}

/// The new record is about this piece.
void frmEquipment::cmdNewMaint_Click() {
  LookUpRow piece;
  piece.EID = recordId();
  piece.ENO = txtEQUIP_NO.Text;
  piece.BNO = txtBARCODE_NO.Text;
  piece.ETY = cboEQUIP_TYPE.Text();
  app_.lookUp.LookupRows.assign(1, piece);
  OpenRecordWindow(app_, {kMaintenance, "", kSourceEquipment});
}

// Rights

void frmEquipment::SetFormSecurity() {
  PieceWindow::SetFormSecurity();
  maintenance.secure(app_.context.rights);
}

}  // namespace vantry

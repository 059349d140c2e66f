#include "booking/frmBooking.h"

#include <utility>

#include "booking/modBooking_rooms.h"
#include "frame/app.h"

namespace vantry {

namespace {

enum TabIndex { kSchedule, kMedia, kRoomTab, kEquipmentTab, kNotes, kStaffTab, kProperties };

}  // namespace

frmBooking::frmBooking(App& app)
    : Form(app.windows, "frmBooking"),
      app_(app),
      ask_(app.global, Name()),
      form_{app,    *this,      times, media.faMedia, equipment.tvwOtherEquipment, equipment.tvwEquipment,
            &media, &equipment, &place} {
  Icon = "booking";
  media.join(form_);
  equipment.join(form_);
  place.join(form_);
  for (TextBox* box : {&txtConfirmationNumber, &txtCreateOperator, &txtCreateLocation, &txtUpdateOperator,
                       &txtUpdateLocation})
    box->Locked = true;
  fpdCreateDate.Enabled = false;
  fpdUpdateDate.Enabled = false;
  txtBookingNote.MultiLine = true;
  buildToolBar();
  buildTabs();
  connect();
  arrange();
}

void frmBooking::Form_Activate() {
  if (!ActiveControl()) focusFirst();
}

/// The first field that can be edited; where none can, the tabs.
void frmBooking::focusFirst() {
  for (TextBox* text : {&requester.requester.text, &requester.onBehalfOf.text}) {
    if (text->usable() && !text->Locked) return text->SetFocus();
  }
  if (times.fpdNeedDate.usable()) return times.fpdNeedDate.SetFocus();
  tabBooking.SetFocus();
}

// What the events run.

void frmBooking::connect() {
  connectMenus();
  connectPanels();
  tabBooking.Click = [this] { showTab(); };
  barBooking.ToolClick = [this](const Tool& tool) {
    const struct {
      std::string_view name;
      void (frmBooking::*run)();
    } tools[] = {{"abSaveAndClose", &frmBooking::mnuFileSave_Click},
                 {"abSaveAndNew", &frmBooking::abSaveAndNew_Click},
                 {"abCopy", &frmBooking::mnuFileCopyBooking_Click},
                 {"abDelete", &frmBooking::mnuFileDeleteBooking_Click},
                 {"abCancel", &frmBooking::mnuBookingCancel_Click},
                 {"abCharge", &frmBooking::mnuBookingCharge_Click},
                 {"abDischarge", &frmBooking::mnuBookingDischarge_Click},
                 {"abPrint", &frmBooking::mnuFilePrint_Click}};
    for (const auto& row : tools) {
      if (row.name == tool.name) return (this->*row.run)();
    }
  };
}

void frmBooking::connectMenus() {
  const struct {
    MenuItem& entry;
    void (frmBooking::*run)();
    std::string_view keys;
  } entries[] = {{mnuFileSave, &frmBooking::mnuFileSave_Click, "Ctrl+S"},
                 {mnuFileCopyBooking, &frmBooking::mnuFileCopyBooking_Click, ""},
                 {mnuFileDeleteBooking, &frmBooking::mnuFileDeleteBooking_Click, ""},
                 {mnuFilePrint, &frmBooking::mnuFilePrint_Click, "Ctrl+P"},
                 {mnuFileClose, &frmBooking::mnuFileClose_Click, "Ctrl+F4"},
                 {mnuViewMergeCells, &frmBooking::mnuViewMergeCells_Click, ""},
                 {mnuBookingCharge, &frmBooking::mnuBookingCharge_Click, ""},
                 {mnuBookingDischarge, &frmBooking::mnuBookingDischarge_Click, ""},
                 {mnuBookingCancel, &frmBooking::mnuBookingCancel_Click, ""},
                 {mnuToolsFind, &frmBooking::mnuToolsFind_Click, "Ctrl+F"},
                 {mnuToolsOptions, &frmBooking::mnuToolsOptions_Click, ""},
                 {mnuHelpTopics, &frmBooking::mnuHelpTopics_Click, "F1"},
                 {mnuHelpAbout, &frmBooking::mnuHelpAbout_Click, ""}};
  for (const auto& row : entries) {
    row.entry.Click = [this, run = row.run] { (this->*run)(); };
    row.entry.Shortcut = std::string(row.keys);
  }
  MenuItem* const tabs[] = {&mnuViewTab1, &mnuViewTab2, &mnuViewTab3, &mnuViewTab4,
                            &mnuViewTab5, &mnuViewTab6, &mnuViewTab7};
  for (int tab = 0; MenuItem * entry : tabs) {
    entry->Shortcut = "Ctrl+" + std::to_string(tab + 1);
    entry->Click = [this, tab] { mnuViewTab_Click(tab); };
    ++tab;
  }
}

void frmBooking::connectPanels() {
  requester.Changed = [this] {
    times.showExpireDate();
    touch();
  };
  requester.GroupChanged = [this] { loadRooms(); };
  times.showTab = [this] { selectTab(kSchedule); };
  times.Changed = media.Changed = place.Changed = equipment.Changed = [this] { touch(); };
  txtBookingNote.Change = [this] { touch(); };
  cboSetupStaff.Click = cboCleanupStaff.Click = [this] { touch(); };
}

void frmBooking::touch() {
  if (loading_) return;
  Dirty = true;
  showSummary();
}

void frmBooking::mnuViewTab_Click(int tab) {
  tabBooking.choose(tab);
}

void frmBooking::showTab() {
  Frame* const pages[] = {&fraSchedule, &fraMedia, &fraPlace,     &fraEquipment,
                          &fraNotes,    &fraStaff, &fraProperties};
  for (int tab = kSchedule; Frame * page : pages) page->Visible = tab++ == tabBooking.SelectedTab;
}

// What it shows of its state.

void frmBooking::showSummary() {
  const std::string where = place.placeText();
  lblPlace.Caption = where;
  lblThings.Caption =
      std::to_string(record.ItemCount) + " media, " + std::to_string(record.EquipmentCount) + " equipment";
}

void frmBooking::setTitle(std::string title) {
  title_ = std::move(title);
  Caption = title_ + statusSuffix(record.BookingResult);
}

void frmBooking::setCommand(MenuItem& entry, std::string_view tool, bool on) {
  entry.Enabled = on;
  barBooking.tool(tool).Enabled = on;
}

/// The word of the booking's result, and what the result takes from the commands.
void frmBooking::showStatus() {
  setTitle(title_);
  const BookingStatusRow* status = bookingStatus(record.BookingResult);
  lblStatus.Caption = status ? std::string(status->word) : std::string();
  if (!status) return;
  DisableEditing();
  const auto apply = [this](Effect effect, Right right, MenuItem& entry, std::string_view tool) {
    if (effect == Effect::Leave) return;
    setCommand(entry, tool, effect == Effect::Enable && app_.context.rights.has(right));
  };
  apply(status->charge, Right::BKCHA, mnuBookingCharge, "abCharge");
  apply(status->discharge, Right::BKDIS, mnuBookingDischarge, "abDischarge");
  apply(status->cancel, Right::BKCAN, mnuBookingCancel, "abCancel");
}

void frmBooking::DisableEditing() {
  setCommand(mnuFileSave, "abSaveAndClose", false);
  barBooking.tool("abSaveAndNew").Enabled = false;
  requester.disableEditing();
  times.disableEditing();
  media.disableEditing();
  place.disableEditing();
  equipment.disableEditing();
  txtBookingNote.Locked = true;
  cboSetupStaff.Enabled = false;
  cboCleanupStaff.Enabled = false;
}

void frmBooking::SetFormSecurity() {
  const Rights& rights = app_.context.rights;
  if (viewOnly(rights, Subject::Bookings)) DisableEditing();
  const bool maySave = rights.has(record.BookingId == 0 ? Right::BKADD : Right::BKUPD);
  if (!maySave) setCommand(mnuFileSave, "abSaveAndClose", false);
  if (!maySave || !rights.has(Right::BKADD)) barBooking.tool("abSaveAndNew").Enabled = false;
}

/// The commands of a booking that is stored, by the operator's rights.
void frmBooking::allowSavedCommands() {
  const Rights& rights = app_.context.rights;
  mnuBooking.Enabled = true;
  setCommand(mnuFileCopyBooking, "abCopy", rights.has(Right::BKADD));
  setCommand(mnuBookingCharge, "abCharge", rights.has(Right::BKCHA));
  setCommand(mnuBookingCancel, "abCancel", rights.has(Right::BKCAN));
  setCommand(mnuFileDeleteBooking, "abDelete", rights.has(Right::BKCAN));
  setCommand(mnuFilePrint, "abPrint", true);
}

/// The requester's group decides the rooms; without one only an administrative booking has any.
void frmBooking::loadRooms() {
  const int group = record.PatronGroupId;
  if (group == 0 && !record.isAdministrative()) return EmptyRoomCombos(form_, record);
  const bool changed = !loading_ && !record.isAdministrative() && place.roomsOfGroup != group;
  const bool hadRoom = record.RoomId != 0;
  const bool hadGenericRoom = record.isGenericRoom();
  LoadRoomCombos(form_, record.AdminBooking, group);
  // Where the list is empty, a generic room is still there.
  const bool genericRoomIsLost = hadGenericRoom && !record.isGenericRoom();
  if (changed && (hadRoom || genericRoomIsLost))
    informationBox(app_.desktop, "Changing requester invalidates current booking room selection.");
}

}  // namespace vantry

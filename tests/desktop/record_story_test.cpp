// The record windows of the inventory, as whoever keeps it works with them.
#include <QCheckBox>
#include <QClipboard>
#include <QPlainTextEdit>
#include <QTextBrowser>
#include <set>

#include "desktop/inventory_story.h"
#include "inventory/frmEquipment.h"
#include "inventory/frmGroup.h"
#include "inventory/frmMaintenance.h"
#include "inventory/frmRoom.h"
#include "inventory/inventory_view.h"
#include "server/store/database.h"
#include "server/store/query.h"

namespace vantry::test {
namespace {

constexpr const char* kGone = "This record is not there any more.\n\nAnother desk has deleted it.";
constexpr const char* kDelete = "Are you sure you want to DELETE this record?";
constexpr const char* kChanges = "Changes will be lost!  Do you wish to SAVE this record before exiting?";

struct RecordStory : InventoryDesk {
  using InventoryDesk::InventoryDesk;

  frmEquipment& television(const QString& barcode) {
    openList(ViewId::Equipment, kEquipment, "Television");
    return openRecord<frmEquipment>(kEquipment, barcode);
  }
  /// The heading of the help that has opened, which is closed again.
  std::string helpPage() {
    for (QWidget* top : QApplication::topLevelWidgets()) {
      auto* pages = top->objectName() == "help" ? top->findChild<QTextBrowser*>() : nullptr;
      if (!pages || !top->isVisible()) continue;
      top->close();
      return pages->toPlainText().section('\n', 0, 0).toStdString();
    }
    return {};
  }
  /// What is booked is kept in a storage room.
  void keepInStorage(const Form& form) {
    const auto& rooms = find<QComboBox>(form, "cboROOM_NAME");
    choose(form, "cboROOM_NAME", rooms.itemText(rooms.findText("Storage", Qt::MatchContains)));
  }
  /// Books a thing for a week after all others, as the desk does for itself.
  std::string book(const std::string& id) {
    EXPECT_EQ(ask("GETARLOC", {{"LOC", app().context.locationId}}), 0);
    EXPECT_TRUE(app().message.NextRecord("RID"));
    std::vector<TagValue> tags =
        bookingTags("2027-01-12 10:00:00", "2027-01-12 11:00:00", {{"PID", "0"}, {"PGID", "0"}},
                    {{"RID", get("RID")}, {"BTID", "1"}, {"EID", id}});
    for (TagValue& each : tags) {
      if (each.tag == "ADBK") each.value = "Y";
    }
    EXPECT_EQ(ask("NEWBK", tags), 0) << get("CANTREAD");
    return get("BOOKID");
  }
  frmGroup& makeGroup(const char* number) {
    openList(ViewId::Groups, kGroup, "Video Set");
    auto& group = openNew<frmGroup>(kGroup);
    write(group, "txtEQUIP_NO", number);
    keepInStorage(group);
    click(group, "abSave");
    return group;
  }
  frmRoom& makeRoom(const char* number) {
    openList(ViewId::Rooms, kRoom, "Classroom");
    auto& room = openNew<frmRoom>(kRoom);
    write(room, "txtROOM_NO", number);
    click(room, "abSave");
    return room;
  }
  /// The record of today of the piece with this barcode, from the main window.
  frmMaintenance& makeMaintenance(const char* barcode) {
    open(ViewId::Maintenance);
    whenShown("text", [barcode](QWidget& box) {
      QTest::keyClicks(box.findChild<QLineEdit*>(), barcode);
      QTest::keyClick(&box, Qt::Key_Return);
    });
    auto& record = openNew<frmMaintenance>(kMaintenance);
    click(record, "abSave");
    return record;
  }

  // Another desk, at which the administrator works too.

  int elsewhere(std::string_view code, const std::vector<TagValue>& tags) {
    if (!other_) {
      other_ = std::make_unique<HttpTransport>(HttpTransport::Options{.address = address()});
      EXPECT_EQ(other_->logon("admin", "admin-demo"), LogonResult::Accepted);
      EXPECT_EQ(other_->send({"0", "SLL", {{"LOC", app().context.locationId}}}).reply.rc, 0);
    }
    return other_->send({std::to_string(++sent_), std::string(code), tags}).reply.rc;
  }
  /// What a save of a group, a room or a maintenance record carries; the value is its number or note.
  std::vector<TagValue> groupTags(const std::string& id, const std::string& number,
                                  const std::string& room = {}) {
    EXPECT_EQ(ask("GETEGTN", {{"EID", id}}), 0);
    const std::string type = get("ETI");
    EXPECT_EQ(ask("GETGDTL", {{"EID", id}}), 0);
    return {{"EID", id},     {"ETI", type},       {"ETY", ""},
            {"ENO", number}, {"LOC", get("LOC")}, {"RID", room.empty() ? get("RID") : room},
            {"RNM", ""}};
  }
  std::vector<TagValue> roomTags(const std::string& id, const std::string& number) {
    EXPECT_EQ(ask("GETRTN", {{"RID", id}}), 0);
    const std::string type = get("RTI");
    EXPECT_EQ(ask("GETRDTL", {{"RID", id}}), 0);
    return {{"RID", id}, {"RTI", type},       {"RTY", ""},  {"RNO", number},
            {"RNM", ""}, {"LOC", get("LOC")}, {"RCA", "12"}};
  }
  std::vector<TagValue> maintenanceTags(const std::string& id, const std::string& note) {
    EXPECT_EQ(ask("GETMDTL", {{"MID", id}}), 0);
    return {{"MID", id},         {"EID", get("EID")}, {"BNO", get("BNO")}, {"MNO", note},
            {"MDI", get("MDI")}, {"MDO", get("MDO")}, {"ENM", get("ENM")}};
  }

 private:
  std::unique_ptr<HttpTransport> other_;
  int sent_ = 0;
};

TEST_F(RecordStory, APieceIsKeptFromItsPurchaseToItsEnd) {
  startAs("admin", 3);
  openList(ViewId::Equipment, kEquipment, "Television");
  auto& piece = openNew<frmEquipment>(kEquipment);
  write(piece, "txtEQUIP_NO", "NEW1");
  for (const char* value : {"9000000000.01", "1200 EUR"}) {
    write(piece, "txtEQUIP_VALUEP", value);
    answerBox("Please enter an amount from 0.00 to 9000000000.00 for Purchase Value.", "OK");
    click(piece, "abSave");
    EXPECT_EQ(text(piece, "txtEQUIP_VALUEP"), value);
  }
  write(piece, "txtEQUIP_VALUEP", "9000000000");
  for (const char* date : {"0000-01-01", "10000-01-01"}) {
    write(piece, "dtEQUIP_DT_PUR", date);
    answerBox("Please enter a valid date for Acquisition Date.", "OK");
    click(piece, "abSave");
  }
  write(piece, "dtEQUIP_DT_PUR", "9999-12-31");
  keepInStorage(piece);
  click(piece, "abSave");
  EXPECT_EQ(caption(piece), "Equipment Inventory - NEW1");
  EXPECT_EQ(node("tvwDB(0)", "Television"), "Television (27)");
  EXPECT_EQ(rowsOf("fa(0)"), 27);
  const std::string id = idOf("NEW1");
  EXPECT_EQ(ofPiece(id, "EQVP") + ' ' + ofPiece(id, "EDP"), "9000000000.00 9999-12-31");
  giveBarcode(piece, "LABEL1");
  EXPECT_EQ(text(piece, "txtBARCODE_NO"), "LABEL1");
  EXPECT_EQ(ofPiece(id, "BNO"), "LABEL1");

  // Moved while it is booked.
  const std::string booking = book(id), room = ofPiece(id, "RID");
  window(piece).close();
  auto& again = television("LABEL1");
  answerBox("Equipment is used in a pending booking. Are you sure you want to move this equipment?", "OK");
  choose(again, "cboROOM_NAME", find<QComboBox>(again, "cboROOM_NAME").itemText(0));
  EXPECT_EQ(sent("DLTEBFR"), 1);
  click(again, "abSave");
  EXPECT_NE(ofPiece(id, "RID"), room);
  EXPECT_TRUE(bookedIn(booking).empty());

  // Away to maintenance, and back.
  openTab(again, "tabEquipment", 2);
  QTest::keyClick(&window(again), Qt::Key_F1);
  EXPECT_EQ(helpPage(), "Maintenance") << "help on the page, not on the window";
  click(again, "cmdNewMaint");
  auto& record = last<frmMaintenance>();
  write(record, "dtMAINT_DATEIN", "2026-11-24");
  write(record, "dtEQUIP_NXT_MAINT", "2027-05-24");
  find<QCheckBox>(record, "chkIN_MAINT").click();
  addDetail(record, "New lamp");
  click(record, "abSaveAndClose");
  EXPECT_EQ(rowsIn(again, "fa(1)"), 1);
  EXPECT_EQ(ofPiece(id, "STY"), "In Maintenance");
  select(again, "fa(1)", 1);
  click(again, "cmdEditMaint");
  auto& back = last<frmMaintenance>();
  EXPECT_EQ(rowsIn(back, "fa"), 1);
  find<QCheckBox>(back, "chkIN_MAINT").click();
  click(back, "abSaveAndClose");
  EXPECT_EQ(ofPiece(id, "STY"), "Not Charged");

  openTab(again, "tabEquipment", 0);
  applyStatus(again, "Missing", "Not on its shelf");
  EXPECT_EQ(text(again, "txtSTS_TYPE"), "Missing");
  EXPECT_EQ(ofPiece(id, "ENM"), "2027-05-24") << "the piece's own save keeps what maintenance has set";
  EXPECT_EQ(ask("GETEGSTS", {{"EID", id}}), 0);
  EXPECT_TRUE(app().message.NextRecord("SID"));
  EXPECT_EQ(get("SNO"), "Not on its shelf");
  answerBox(kDelete, "Yes");
  click(again, "abDelete");
  EXPECT_EQ(node("tvwDB(0)", "Television"), "Television (26)");
  EXPECT_EQ(rowsOf("fa(0)"), 26);
  EXPECT_EQ(idOf("NEW1"), "");
}

TEST_F(RecordStory, ARoomHasDetailsAndEquipment) {
  startAs("admin", 3);
  const std::string piece = buy("NEW1");
  openList(ViewId::Rooms, kRoom, "Classroom");
  auto& room = openNew<frmRoom>(kRoom);
  write(room, "txtROOM_NO", "R1");
  compose(room, "txtROOM_NAME", u8"Saal 🎬 قاعة");
  write(room, "txtROOM_CAPACITY", "2147483648");
  answerBox("Please enter a number from 0 to 99999 for Capacity.", "OK");
  click(room, "abSave");
  write(room, "txtROOM_CAPACITY", "99999");
  addDetail(room, "Rows of ten");
  addDetail(room, "Two sofas");
  click(room, "abSave");
  EXPECT_EQ(node("tvwDB(2)", "Classroom"), "Classroom (13)");
  window(room).close();
  auto& again = openRecord<frmRoom>(kRoom, "R1");
  EXPECT_EQ(text(again, "txtROOM_NAME"), "Saal 🎬 قاعة");
  EXPECT_EQ(again.txtROOM_CAPACITY.Text(), "99999");
  EXPECT_EQ(rowsIn(again, "fa(3)"), 2);
  openTab(again, "tabRoom", 2);
  write(again, "txtBarOrNumber", "NEW1", Qt::Key_Return);
  EXPECT_EQ(rowsIn(again, "fa(1)"), 1);
  EXPECT_EQ(ofPiece(piece, "RID"), again.recordId());
  answerBox("Unable To Delete!\n\nRoom Is Currently In Use!", "OK");
  click(again, "abDelete");
  select(again, "fa(1)", 1);
  whenShown("lblDescription", [](QWidget& move) { move.findChild<QPushButton*>("cmdOK")->click(); });
  click(again, "cmdRemoveFromRoom");
  EXPECT_EQ(rowsIn(again, "fa(1)"), 0);
  EXPECT_EQ(ask("GETRDTL", {{"RID", again.recordId()}}), 0);
  EXPECT_EQ(app().message.Count("RDI"), 2) << "the save with the removal keeps the details";
  answerBox(kDelete, "Yes");
  click(again, "abDelete");
  EXPECT_EQ(node("tvwDB(2)", "Classroom"), "Classroom (12)");
}

TEST_F(RecordStory, AMemberThatIsMadeInTheGroupsPaneIsListedThere) {
  startAs("admin", 3);
  window(makeGroup("SET1")).close();
  clickText("fa(1)", "SET1");
  click(mainWindow(), "cmdMembers");
  press(mainWindow(), "cmdNewInv", 4);
  auto& piece = last<frmEquipment>();
  choose(piece, "cboEQUIP_TYPE", "Television");
  write(piece, "txtEQUIP_NO", "NEW1");
  write(piece, "txtBARCODE_NO", "NEW1");
  click(piece, "abSave");
  EXPECT_EQ(text(piece, "txtGroup"), "SET1");
  EXPECT_EQ(rowsOf("fa(4)"), 1);
  const Grid& groups = viewAs<InventoryView>(mainWindow(), ViewId::Groups).fa;
  EXPECT_EQ(groups.TextMatrix(groups.Row, 1), "Y");
  open(ViewId::Equipment);
  EXPECT_EQ(node("tvwDB(0)", "Television"), "Television (27)");
}

TEST_F(RecordStory, AGroupIsSplitUpWithItsBookingsKeptAndNotKept) {
  startAs("admin", 3);
  const std::string first = buy("NEW1"), second = buy("NEW2");
  openList(ViewId::Groups, kGroup, "Video Set");
  auto& group = openNew<frmGroup>(kGroup);
  write(group, "txtEQUIP_NO", "SET1");
  keepInStorage(group);
  click(group, "abSave");
  EXPECT_EQ(node("tvwDB(1)", "Video Set"), "Video Set (9)");
  openTab(group, "tabGroup", 2);
  for (const char* barcode : {"NEW1", "NEW2"}) write(group, "txtBarOrNumber", barcode, Qt::Key_Return);
  ASSERT_EQ(rowsIn(group, "fa(1)"), 2);
  const std::string id = group.recordId(), booking = book(id);
  for (const bool keeps : {true, false}) {
    select(group, "fa(1)", 1);
    answerBox(
        "This equipment has future bookings associated with it.  Do you want to keep this equipment in those "
        "future bookings?",
        keeps ? "Yes" : "No");
    click(group, "cmdRemoveFromGroup");
  }
  EXPECT_EQ(rowsIn(group, "fa(1)"), 0);
  EXPECT_EQ(bookedIn(booking), (std::set{id, first}));
  answerBox("Unable To Delete!\n\nBookings Exist!", "OK");
  click(group, "abDelete");
  EXPECT_EQ(ask("VERDELE", {{"VID", second}, {"VTY", "1"}}), 0);
}

TEST_F(RecordStory, WhoMayOnlyLookSeesAllPagesAndChangesNothing) {
  startAs("view", 1);
  const struct {
    ViewId view;
    int kind;
    const char* category;
    const char* tabs;
    int pages;
    std::set<std::string> own;
  } cases[] = {{ViewId::Equipment, kEquipment, "Laptop", "tabEquipment", 5, {"cboEQUIP_NOTE_TYPE"}},
               {ViewId::Groups, kGroup, "Video Set", "tabGroup", 5, {"cboEQUIP_NOTE_TYPE"}},
               {ViewId::Rooms, kRoom, "Classroom", "tabRoom", 5, {"cboROOM_NOTE_TYPE"}},
               {ViewId::Maintenance, kMaintenance, "November", "tabMaintenance", 2, {}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.tabs);
    openList(c.view, c.kind, c.category);
    clickRow(grid(indexed("fa", c.kind).c_str()), 1, 0);
    press(mainWindow(), "cmdEditInv", c.kind);
    auto& record = last<InventoryWindow>();
    std::set<std::string> expected{"abHelp", "abOptions", "abPrint", "abSearch"}, live;
    expected.insert(c.own.begin(), c.own.end());
    if (c.pages > 2) expected.insert({"cmdViewCurrentBookings", "cmdViewOldBookings"});
    for (int page = 0; page < c.pages; ++page) {
      openTab(record, c.tabs, page);
      live.merge(openInputs(record));
    }
    EXPECT_EQ(live, expected) << "all else is closed";
    EXPECT_TRUE(record.Unload());
  }
}

TEST_F(RecordStory, OfTwoDesksOnOneRecordTheSecondIsToldWhatTheFirstHasDone) {
  startAs("admin", 3);
  const std::string id = buy("NEW1");
  auto& piece = television("NEW1");
  ASSERT_EQ(elsewhere("UPDEQIPD", televisionTags({{"EID", id}}, "NEW1", "Theirs")), 0);
  write(piece, "txtEQUIP_MANUF", "Mine");
  click(piece, "abSave");
  EXPECT_EQ(ofPiece(id, "EMA"), "Mine");
  ASSERT_EQ(elsewhere("REMEQIP", {{"EID", id}}), 0);
  openTab(piece, "tabEquipment", 3);
  choose(piece, "cboEQUIP_NOTE_TYPE", find<QComboBox>(piece, "cboEQUIP_NOTE_TYPE").itemText(1));
  compose(piece, "txtEQUIP_NOTE", "mine");
  answerBox(kGone, "OK");
  click(piece, "cmdSaveNote");
  openTab(piece, "tabEquipment", 0);
  applyStatus(piece, "Missing", "mine", kGone);
  write(piece, "txtEQUIP_MANUF", "Mine");
  answerBox(kGone, "OK");
  click(piece, "abSave");
  EXPECT_EQ(idOf("NEW1"), "");
}

TEST_F(RecordStory, OfTwoDesksOnOneGroupTheSecondIsToldWhatTheFirstHasDone) {
  startAs("admin", 3);
  const std::string first = buy("NEW1"), second = buy("NEW2");
  auto& piece = television("NEW1");
  auto& group = makeGroup("SET1");
  const std::string id = group.recordId();
  openTab(group, "tabGroup", 2);
  write(group, "txtBarOrNumber", "NEW1", Qt::Key_Return);
  ASSERT_EQ(rowsIn(group, "fa(1)"), 1);
  // The piece is a member now, and the window that shows it as it was does not take it away.
  choose(piece, "cboROOM_NAME", find<QComboBox>(piece, "cboROOM_NAME").itemText(0));
  answerBox(
      "This piece belongs to a group, and is kept where the group is.\n\nMove the group, or take the piece "
      "out of it first.",
      "OK");
  click(piece, "abSave");

  ASSERT_EQ(elsewhere("REMGITM", {{"EID", first}, {"GRPID", id}, {"ULI", "1"}}), 0);
  select(group, "fa(1)", 1);
  click(group, "cmdRemoveFromGroup");
  EXPECT_EQ(rowsIn(group, "fa(1)"), 0) << "it has left already";
  ASSERT_EQ(ask("GETEGSTY", {}), 0);
  while (app().message.NextRecord("SID") && get("STY") != "Missing") continue;
  ASSERT_EQ(elsewhere("NEWEGSTS", {{"EID", id}, {"SID", get("SID")}, {"SNO", ""}, {"ULI", "1"}}), 0);
  answerBox("Unable to perform the function due to the status of this group.", "OK");
  write(group, "txtBarOrNumber", "NEW2", Qt::Key_Return);
  EXPECT_EQ(ofPiece(second, "GRPID"), "");

  ASSERT_EQ(elsewhere("UPDGRPD", groupTags(id, "THEIRS")), 0);
  openTab(group, "tabGroup", 0);
  write(group, "txtEQUIP_NO", "MINE");
  click(group, "abSave");
  EXPECT_EQ(idOf("MINE"), id);
  ASSERT_EQ(elsewhere("REMGRP", {{"EID", id}}), 0);
  write(group, "txtEQUIP_NO", "SET2");
  answerBox(kGone, "OK");
  click(group, "abSave");
  openTab(group, "tabGroup", 2);
  answerBox(kGone, "OK");
  write(group, "txtBarOrNumber", "NEW2", Qt::Key_Return);
  answerBox(kChanges, "No");
  window(group).close();
}

TEST_F(RecordStory, OfTwoDesksOnOneRoomTheSecondIsToldWhatTheFirstHasDone) {
  startAs("admin", 3);
  const std::string piece = buy("NEW1");
  auto& room = makeRoom("R1");
  const std::string id = room.recordId();
  ASSERT_EQ(elsewhere("UPDROOMD", roomTags(id, "R1")), 0);
  addDetail(room, "Rows of ten");
  click(room, "abSave");
  EXPECT_EQ(ask("GETRDTL", {{"RID", id}}), 0);
  EXPECT_EQ(std::to_string(app().message.Count("RDI")) + ' ' + get("RCA"), "1 0");

  openTab(room, "tabRoom", 3);
  choose(room, "cboROOM_NOTE_TYPE", find<QComboBox>(room, "cboROOM_NOTE_TYPE").itemText(1));
  const std::string type = room.notes.cboNoteType.ItemData(1);
  ASSERT_EQ(elsewhere("AURNOTE", {{"RID", id}, {"RNID", type}, {"MNO", "theirs"}}), 0);
  compose(room, "txtROOM_NOTE", "mine");
  click(room, "cmdUndoNote");
  EXPECT_EQ(room.notes.txtNote.Text, "theirs");

  ASSERT_EQ(elsewhere("REMROOM", {{"RID", id}}), 0);
  openTab(room, "tabRoom", 2);
  answerBox("The room is not there any more, or is not at this location.", "OK");
  write(room, "txtBarOrNumber", "NEW1", Qt::Key_Return);
  EXPECT_NE(ofPiece(piece, "RID"), id);
  openTab(room, "tabRoom", 0);
  applyStatus(room, "Closed", "mine", kGone);
  write(room, "txtROOM_NAME", "Mine");
  answerBox(kGone, "OK");
  click(room, "abSave");
  answerBox(kDelete, "Yes");  // which is so already
  click(room, "abDelete");
}

TEST_F(RecordStory, OfTwoDesksOnOneMaintenanceTheSecondIsToldWhatTheFirstHasDone) {
  startAs("admin", 3);
  const std::string piece = buy("NEW1");
  auto& record = makeMaintenance("NEW1");
  const std::string id = record.recordId();
  ASSERT_EQ(elsewhere("UPDEMAINTD", maintenanceTags(id, "theirs")), 0);
  compose(record, "txtMEDIA_NOTE", "mine");
  click(record, "abSave");
  EXPECT_EQ(ask("GETMDTL", {{"MID", id}}), 0);
  EXPECT_EQ(get("MNO"), "mine");
  ASSERT_EQ(elsewhere("REMEQIP", {{"EID", piece}}), 0);
  compose(record, "txtMEDIA_NOTE", "more");
  answerBox(kGone, "OK");
  click(record, "abSave");
  EXPECT_EQ(ask("GETMDTL", {{"MID", id}}), 2) << "the record is gone with its piece";
}

TEST_F(RecordStory, WhatIsInUseOrTooLongIsToldAndNotHalfStored) {
  startAs("admin", 3);
  const std::string id = buy("NEW1");
  openList(ViewId::Equipment, kEquipment, "Television");
  auto& twin = openNew<frmEquipment>(kEquipment);
  write(twin, "txtEQUIP_NO", "NEW1");
  choose(twin, "cboLOC_NAME", "Riverside");
  answerBox("This number is in use.\n\nAnother record of this type and location has it.  Nothing was stored.",
            "OK");
  click(twin, "abSave");
  write(twin, "txtEQUIP_NO", "NEW2");
  answerBox("This record is not stored, since its first save was refused.\n\nPlease enter it again.", "OK");
  click(twin, "abSave");
  window(twin).close();
  auto& labelled = openNew<frmEquipment>(kEquipment);
  write(labelled, "txtEQUIP_NO", "NEW2");
  write(labelled, "txtBARCODE_NO", "NEW1");
  answerBox("This barcode is in use.\n\nAnother piece, group or media item has it.  Nothing was stored.",
            "OK");
  click(labelled, "abSaveAndClose");
  EXPECT_EQ(idOf("NEW2"), "");

  auto& piece = openRecord<frmEquipment>(kEquipment, "NEW1");
  compose(piece, "txtEQUIP_NO", u8"📺 תל");
  click(piece, "abSave");
  openTab(piece, "tabEquipment", 3);
  choose(piece, "cboEQUIP_NOTE_TYPE", find<QComboBox>(piece, "cboEQUIP_NOTE_TYPE").itemText(1));
  const std::string type = piece.notes.cboNoteType.ItemData(1);
  auto& note = find<QPlainTextEdit>(piece, "txtEQUIP_NOTE");
  compose(piece, "txtEQUIP_NOTE", u8"🎬 قديم");
  click(piece, "cmdSaveNote");
  QApplication::clipboard()->setText(QString("Seven words in each of many lines.\n").repeated(30000));
  QTest::keyClick(&note, Qt::Key_V, Qt::ControlModifier);
  const QString tooLong = note.toPlainText();
  answerBox(
      "This text is too long to be stored: it may have about a million characters.\n\nPlease shorten it.",
      "OK");
  click(piece, "cmdSaveNote");
  EXPECT_EQ(note.toPlainText(), tooLong) << "what was typed is still there";
  EXPECT_EQ(ask("GETEGN", {{"EID", id}, {"ENID", type}}), 0);
  EXPECT_EQ(get("MNO"), "🎬 قديم");
  EXPECT_EQ(ofPiece(id, "ENO"), "📺 תלNEW1");
  click(piece, "cmdUndoNote");
  EXPECT_EQ(note.toPlainText().toStdString(), "🎬 قديم");
}

/// The types, policies and operators of the small library, and nothing that was ever bought or booked.
struct EmptyShelvesStory : RecordStory {
  EmptyShelvesStory() : RecordStory(empty) {}
  static void empty(const fs::path& file) {
    server::Database library(file.string());
    library.write([](server::Connection& db) {
      for (const char* table : {"bookings", "maintenance", "equipment", "rooms"})
        db.run("delete from " + std::string(table));
    });
  }
};

TEST_F(EmptyShelvesStory, AnInventoryIsBuiltUpByHand) {
  startAs("admin", 3);
  open(ViewId::Rooms);
  EXPECT_EQ(node("tvwDB(2)", "Classroom"), "Classroom (0)");
  openList(ViewId::Equipment, kEquipment, "Television");
  auto& homeless = openNew<frmEquipment>(kEquipment);
  write(homeless, "txtEQUIP_NO", "TV1");
  answerBox("Missing Required Fields:\nRoom", "OK");
  click(homeless, "abSave");
  answerBox(kChanges, "No");
  window(homeless).close();

  // Rooms: one to book, one that keeps what is booked.
  auto& classroom = makeRoom("R1");
  addDetail(classroom, "Rows of ten");
  click(classroom, "abSaveAndClose");
  EXPECT_EQ(node("tvwDB(2)", "Classroom"), "Classroom (1)");
  openList(ViewId::Rooms, kRoom, "Equipment Storage");
  auto& store = openNew<frmRoom>(kRoom);
  write(store, "txtROOM_NO", "S1");
  write(store, "txtROOM_NAME", "Storage");
  click(store, "abSaveAndClose");

  // Pieces, with a label, a value and a note.
  openList(ViewId::Equipment, kEquipment, "Television");
  auto& piece = openNew<frmEquipment>(kEquipment);
  EXPECT_EQ(piece.place.locationId(), app().context.locationId) << "the operator's own location comes first";
  write(piece, "txtEQUIP_NO", "TV1");
  write(piece, "txtBARCODE_NO", "LABEL1");
  write(piece, "txtEQUIP_VALUER", "350");
  keepInStorage(piece);
  click(piece, "abSave");
  openTab(piece, "tabEquipment", 3);
  choose(piece, "cboEQUIP_NOTE_TYPE", find<QComboBox>(piece, "cboEQUIP_NOTE_TYPE").itemText(1));
  compose(piece, "txtEQUIP_NOTE", "With its cable");
  click(piece, "cmdSaveNote");
  click(piece, "abSaveAndNew");
  auto& next = last<frmEquipment>();
  write(next, "txtEQUIP_NO", "TV2");
  keepInStorage(next);
  click(next, "abSaveAndClose");
  EXPECT_EQ(node("tvwDB(0)", "Television"), "Television (2)");
  EXPECT_EQ(rowsOf("fa(0)"), 2);

  auto& group = makeGroup("SET1");
  openTab(group, "tabGroup", 2);
  write(group, "txtBarOrNumber", "LABEL1", Qt::Key_Return);
  EXPECT_EQ(rowsIn(group, "fa(1)"), 1);
  EXPECT_EQ(group.txtEQUIP_VALUER.Text(), "$350.00");
  const std::string groupId = group.recordId();
  window(group).close();
  EXPECT_EQ(node("tvwDB(1)", "Video Set"), "Video Set (1)");
  auto& record = makeMaintenance("LABEL1");
  EXPECT_EQ(text(record, "txtEQUIP_NO"), "TV1");
  addDetail(record, "New lamp");
  click(record, "abSaveAndClose");
  EXPECT_EQ(node("tvwDB(3)", "2026"), "2026");

  // It is kept, and can be booked.
  const std::string id = idOf("TV1");
  EXPECT_EQ(ofPiece(id, "BNO") + ' ' + ofPiece(id, "GRPNO") + ' ' + ofPiece(id, "EHM"), "LABEL1 SET1 1");
  EXPECT_EQ(bookedIn(book(groupId)), std::set{groupId});
  answerBox("Unable To Delete!\n\nBookings Exist!", "OK");
  openList(ViewId::Groups, kGroup, "Video Set");
  clickText("fa(1)", "SET1");
  press(mainWindow(), "cmdDeleteInv", kGroup);
  EXPECT_EQ(rowsOf("fa(1)"), 1);
}

}  // namespace
}  // namespace vantry::test

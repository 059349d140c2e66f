// The record windows of the inventory, as whoever keeps it works with them.
#include <QCheckBox>
#include <QClipboard>
#include <QPlainTextEdit>
#include <set>

#include "desktop/inventory_story.h"
#include "inventory/frmEquipment.h"
#include "inventory/frmGroup.h"
#include "inventory/frmMaintenance.h"
#include "inventory/frmRoom.h"
#include "server/store/database.h"
#include "server/store/query.h"

namespace vantry::test {
namespace {

constexpr const char* kGone = "This record is not there any more.\n\nAnother desk has deleted it.";
constexpr const char* kDelete = "Are you sure you want to DELETE this record?";

struct RecordStory : InventoryDesk {
  using InventoryDesk::InventoryDesk;

  void startAsAdmin() {
    logOnAs("admin", 3);
    start();
  }
  frmEquipment& television(const QString& barcode) {
    openList(ViewId::Equipment, kEquipment, "Television");
    return openRecord<frmEquipment>(kEquipment, barcode);
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
};

TEST_F(RecordStory, APieceIsKeptFromItsPurchaseToItsEnd) {
  startAsAdmin();
  openList(ViewId::Equipment, kEquipment, "Television");
  auto& piece = openNew<frmEquipment>(kEquipment);
  write(piece, "txtEQUIP_NO", "NEW1");
  write(piece, "txtEQUIP_VALUEP", "9000000000.01");
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
  click(again, "cmdNewMaint");
  auto& record = last<frmMaintenance>();
  write(record, "dtMAINT_DATEIN", "2026-11-24");
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
  startAsAdmin();
  const std::string piece = buy("NEW1");
  openList(ViewId::Rooms, kRoom, "Classroom");
  auto& room = openNew<frmRoom>(kRoom);
  write(room, "txtROOM_NO", "R1");
  compose(room, "txtROOM_NAME", u8"Saal 🎬 قاعة");
  write(room, "txtROOM_CAPACITY", "2147483648");
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

TEST_F(RecordStory, AGroupIsSplitUpWithItsBookingsKeptAndNotKept) {
  startAsAdmin();
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

TEST_F(RecordStory, ACopyIsARecordOfItsOwn) {
  startAsAdmin();
  const std::string model = buy("NEW1");
  click(television("NEW1"), "abCopy");
  auto& copy = last<frmEquipment>();
  EXPECT_EQ(caption(copy), "Copy of Equipment Inventory  - NEW1");
  EXPECT_EQ(text(copy, "txtEQUIP_NO") + text(copy, "txtBARCODE_NO"), "TELEVISION");
  write(copy, "txtEQUIP_NO", "COPY1");
  click(copy, "abSave");
  EXPECT_EQ(node("tvwDB(0)", "Television"), "Television (28)");
  EXPECT_NE(copy.recordId(), model);
  EXPECT_EQ(ofPiece(copy.recordId(), "ENO") + ofPiece(copy.recordId(), "BNO"), "COPY1");
  EXPECT_EQ(ofPiece(model, "ENO"), "NEW1");
}

TEST_F(RecordStory, WhoMayOnlyLookSeesAllPagesAndChangesNothing) {
  logOnAs("view", 1);
  start();
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
  startAsAdmin();
  const std::string id = buy("NEW1");
  auto& piece = television("NEW1");
  HttpTransport other({.address = address()});
  ASSERT_EQ(other.logon("admin", "admin-demo"), LogonResult::Accepted);
  ASSERT_EQ(other.send({"1", "SLL", {{"LOC", app().context.locationId}}}).reply.rc, 0);
  ASSERT_EQ(other.send({"2", "UPDEQIPD", televisionTags({{"EID", id}}, "NEW1", "Theirs")}).reply.rc, 0);
  ASSERT_EQ(other.send({"3", "REMEQIP", {{"EID", id}}}).reply.rc, 0);
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

TEST_F(RecordStory, WhatIsInUseOrTooLongIsToldAndNotHalfStored) {
  startAsAdmin();
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
  answerBox("The body is larger than 1 MiB.", "OK");
  click(piece, "cmdSaveNote");
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
  startAsAdmin();
  EXPECT_EQ(node("tvwDB(2)", "Classroom"), "Classroom (0)");
  openList(ViewId::Equipment, kEquipment, "Television");
  auto& homeless = openNew<frmEquipment>(kEquipment);
  write(homeless, "txtEQUIP_NO", "TV1");
  answerBox("Missing Required Fields:\nRoom", "OK");
  click(homeless, "abSave");
  answerBox("Changes will be lost!  Do you wish to SAVE this record before exiting?", "No");
  window(homeless).close();

  open(ViewId::Rooms);
  auto& room = openNew<frmRoom>(kRoom);
  write(room, "txtROOM_NO", "R1");
  click(room, "abSaveAndClose");
  EXPECT_EQ(node("tvwDB(2)", "Classroom"), "Classroom (1)");
  openList(ViewId::Equipment, kEquipment, "Television");
  auto& piece = openNew<frmEquipment>(kEquipment);
  write(piece, "txtEQUIP_NO", "TV1");
  write(piece, "txtBARCODE_NO", "LABEL1");
  click(piece, "abSaveAndNew");
  auto& next = last<frmEquipment>();
  write(next, "txtEQUIP_NO", "TV2");
  click(next, "abSaveAndClose");
  EXPECT_EQ(node("tvwDB(0)", "Television"), "Television (2)");
  EXPECT_EQ(rowsOf("fa(0)"), 2);
  openList(ViewId::Groups, kGroup, "Video Set");
  auto& group = openNew<frmGroup>(kGroup);
  write(group, "txtEQUIP_NO", "SET1");
  click(group, "abSave");
  openTab(group, "tabGroup", 2);
  write(group, "txtBarOrNumber", "LABEL1", Qt::Key_Return);
  EXPECT_EQ(rowsIn(group, "fa(1)"), 1);
  window(group).close();
  EXPECT_EQ(node("tvwDB(1)", "Video Set"), "Video Set (1)");
  open(ViewId::Maintenance);
  whenShown("text", [](QWidget& box) {
    QTest::keyClicks(box.findChild<QLineEdit*>(), "LABEL1");
    QTest::keyClick(&box, Qt::Key_Return);
  });
  auto& record = openNew<frmMaintenance>(kMaintenance);
  EXPECT_EQ(text(record, "txtEQUIP_NO"), "TV1");
  click(record, "abSaveAndClose");
  EXPECT_EQ(node("tvwDB(3)", "2026"), "2026");
}

}  // namespace
}  // namespace vantry::test

// The search, the staff and the counters of patrons, as a desk works with them.
#include <QCheckBox>
#include <QClipboard>

#include "booking/frmBooking.h"
#include "desktop/inventory_story.h"
#include "records/frmPatronCounter.h"
#include "records/records.h"
#include "search/frmFind.h"

namespace vantry::test {
namespace {

/// A patron who is in every small library.
constexpr const char* kCard = "2100001501";
constexpr const char* kName = "Booker, Bea";
const Date kTomorrow{2026, 11, 25};

struct SearchStory : InventoryDesk {
  frmBooking& newBooking() {
    run([&] { OpenRecordWindow(app(), {kBooking, "", kSourceMainWindow}); });
    return last<frmBooking>();
  }
  void key(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers held = Qt::NoModifier) {
    activate(*widget.window());
    widget.setFocus();
    QTest::keyClick(&widget, key, held);
    desktop.handleEvents();
  }
  /// A key for whatever has the focus.
  void key(Qt::Key key) {
    QTest::keyClick(typingTarget(), key);
    desktop.handleEvents();
  }
  void paste(const Form& form, const char* name, const std::string& text) {
    QApplication::clipboard()->setText(QString::fromStdString(text));
    auto& field = find<QLineEdit>(form, name);
    field.clear();
    key(field, Qt::Key_V, Qt::ControlModifier);
  }
  static void showPage(QWidget& window, const char* tabs, int page) {
    auto& bar = *window.findChild<QTabBar*>(tabs);
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(page).center());
  }
  /// The texts of a column of what was found.
  static QStringList column(QWidget& window, const char* heading) {
    const auto& rows = *window.findChild<GridView*>("faResults")->model();
    QStringList texts;
    for (int column = 0; column < rows.columnCount(); ++column) {
      if (rows.headerData(column, Qt::Horizontal).toString() != heading) continue;
      for (int row = 0; row < rows.rowCount(); ++row) texts << rows.index(row, column).data().toString();
    }
    return texts;
  }
  std::string cellOf(const char* list, const QString& name, int column) {
    const auto& rows = *grid(list).model();
    for (int row = 0; row < rows.rowCount(); ++row) {
      if (rows.index(row, 0).data().toString() == name)
        return rows.index(row, column).data().toString().toStdString();
    }
    return "not on the list";
  }
  QStringList staffOffered(const Form& editor) {
    QStringList names;
    const auto& list = find<QComboBox>(editor, "cboSetupStaff");
    for (int i = 0; i < list.count(); ++i) names << list.itemText(i);
    return names;
  }
  /// Books the desk's first room for a week after all others, with this member setting up.
  std::string bookWithStaff(const std::string& member) {
    EXPECT_EQ(ask("GETARLOC", {{"LOC", app().context.locationId}}), 0);
    EXPECT_TRUE(app().message.NextRecord("RID"));
    std::vector<TagValue> tags =
        bookingTags("2027-01-12 10:00:00", "2027-01-12 11:00:00", {{"PID", "0"}, {"PGID", "0"}},
                    {{"RID", get("RID")}, {"BTID", "1"}});
    for (TagValue& each : tags) {
      if (each.tag == "ADBK") each.value = "Y";
      if (each.tag == "ODE") each.value = member;
    }
    EXPECT_EQ(ask("NEWBK", tags), 0) << get("CANTREAD");
    return get("BOOKID");
  }
};

TEST_F(SearchStory, ARoomWithFortySeatsThatIsFreeTomorrowAtTenIsBooked) {
  startAs("admin", 3);
  frmBooking& editor = newBooking();
  find<QCheckBox>(editor, "chkAdminBooking").click();
  write(editor, "fpdNeedDate", formatDate(kTomorrow, desktop.shortDateFormat()));
  write(editor, "txtNeedTime", "10:00 AM");
  write(editor, "txtFinishTime", "11:00 AM");
  openTab(editor, "tabBooking", 2);
  find<QAbstractButton>(editor, "optRoom(1)").click();
  chooseFromMenu("mnuPopupRoomsFind");
  QString number, name;
  whenShown("txtRoomCapacity", [&](QWidget& search) {
    showPage(search, "tabSearch(3)", 5);
    write(search, "txtRoomCapacity", "40");
    showPage(search, "tabSearch(3)", 7);
    write(search, "dtRoomDate", formatDate(kTomorrow, desktop.shortDateFormat()));
    write(search, "txtRoomTime", "10:00 AM");
    showPage(search, "tabSearch(3)", 3);
    choose(search, "cboRoomLocation", "Riverside");
    search.findChild<QAbstractButton*>("optTerms(1)")->click();
    key(*search.findChild<QPushButton*>("cmdFindNow"), Qt::Key_Space);
    const QStringList seats = column(search, "Capacity");
    ASSERT_FALSE(seats.isEmpty());
    for (const QString& each : seats) EXPECT_GE(each.toInt(), 40);
    number = column(search, "Number").front();
    name = column(search, "Room Name").front();
    key(Qt::Key_Return);  // the first row has the focus
  });
  click(editor, "cmdRoom(1)");
  EXPECT_TRUE(QString::fromStdString(text(editor, "txtRoom(1)")).endsWith(" - " + number));
  answerBox("There is no media or equipment in this booking.  Save anyway?", "Yes");
  press(editor, Qt::Key_S);
  EXPECT_FALSE(editor.isLoaded());
  EXPECT_EQ(ask("FIND", {{"SRCHTAG", "25"},
                         {"SRCHVAL", "2026-11-25 10:00:00"},
                         {"SRCHTAG", "2"},
                         {"SRCHVAL", number.toStdString()},
                         {"SRCHTAG", "18"},
                         {"SRCHVAL", name.toStdString()},
                         {"SRCHFOR", "4"},
                         {"SRCHLOC", "3"},
                         {"SRCHOP", "AND"}}),
            0);
  EXPECT_EQ(get("SRCHCNT"), "0") << "it is taken now";
}

TEST_F(SearchStory, APatronIsFoundByHalfANameWithTheKeyboardAlone) {
  startAs("admin", 3);
  frmBooking& editor = newBooking();
  whenShown("txtLast", [this](QWidget& search) {
    for (const char* nothing : {"?", "%", "_", "'\"", "Book? or Ink"}) {
      const bool refused = std::string_view(nothing).size() < 3;
      answerBox(refused
                    ? "The search cannot use what was entered for Last name.\n\nPlease enter at least one "
                      "letter or figure."
                    : "No matches found.",
                "OK");
      write(search, "txtLast", nothing, Qt::Key_Return);
      EXPECT_EQ(search.findChild<QLineEdit*>("txtLast")->text(), nothing) << "what was typed stays";
    }
    activate(search);
    wand(kCard);
    EXPECT_TRUE(waitUntil([&] { return column(search, "Patron Name") == QStringList{"Booker, Bea "}; }));
    showPage(search, "tabSearch(5)", 0);
    EXPECT_EQ(search.findChild<QLineEdit*>("txtLast")->text(), "Book? or Ink");
    write(search, "txtLast", "book?", Qt::Key_Return);
    const QStringList names = column(search, "Patron Name");
    ASSERT_TRUE(names.contains("Booker, Bea "));
    for (qsizetype row = 0; row < names.indexOf("Booker, Bea "); ++row) key(Qt::Key_Down);
    // She has as many bookings as she may have.
    whenShown("cmdOverride", [this](QWidget& window) {
      key(*window.findChild<QPushButton*>("cmdOverride"), Qt::Key_Space);
    });
    key(Qt::Key_Return);
  });
  key(find<QPushButton>(editor, "cmdRequester"), Qt::Key_Space);
  EXPECT_EQ(text(editor, "txtRequester"), "Booker, Bea ");
  whenShown("txtLateReturns", [this](QWidget& counters) {
    EXPECT_EQ(counters.findChild<QAbstractSpinBox*>("txtCurrentBookings")->text(), "2");
    key(Qt::Key_Escape);
  });
  key(find<QLineEdit>(editor, "txtRequester"), Qt::Key_F4);
  EXPECT_EQ(sent("GPAI"), 1);
}

TEST_F(SearchStory, WhatCannotBeSoughtIsToldAndStaysAsItWasEntered) {
  startAs("admin", 3);
  desktop.dispatch([&] { ShowSearch(app(), kFindBookings); });
  const auto& search = last<frmFind>();
  const auto refused = [this](const char* field, const char* reason) {
    answerBox(("The search cannot use what was entered for " + std::string(field) + ".\n\n" + reason).c_str(),
              "OK");
  };
  find<QAbstractButton>(search, "optDate(1)").click();
  write(search, "dtDateStart", formatDate({2026, 12, 24}, desktop.shortDateFormat()));
  write(search, "dtDateEnd", formatDate({2026, 12, 1}, desktop.shortDateFormat()));
  refused("First date", "The last date is before the first one.");
  key(find<QPushButton>(search, "cmdFindNow"), Qt::Key_Space);
  EXPECT_EQ(search.ActiveControl()->Name(), "dtDateStart");

  openTab(search, "tabSearch(0)", 1);
  paste(search, "txtConfirmationNumber", std::string(10000, 'x'));
  refused("Confirmation number",
          "A confirmation number consists of figures; ? at the end stands for any others.");
  key(Qt::Key_Return);
  EXPECT_EQ(text(search, "txtConfirmationNumber"), std::string(255, 'x'));

  std::string ids = "1";
  for (int id = 2; id <= 5000; ++id) ids += ", " + std::to_string(id);
  openTab(search, "tabSearch(0)", 3);
  paste(search, "txtBibIDs", ids + ", 5001");
  refused("Catalogue ids", "Please enter whole numbers with commas between them, 5,000 at most.");
  key(Qt::Key_Return);
  EXPECT_EQ(text(search, "txtBibIDs"), ids + ", 5001");
  paste(search, "txtBibIDs", ids);
  key(Qt::Key_Return);
  EXPECT_GT(search.RecordCount, 0);
}

TEST_F(SearchStory, AMemberIsAddedByCardAndDeactivatedWithTheirBookings) {
  startAs("admin", 3);
  open(ViewId::Staff);
  const int before = rowsOf("faStaff");
  key(button("cmdStaffAdd"), Qt::Key_Space);
  wand(kCard);
  EXPECT_TRUE(waitUntil([&] { return text(mainWindow(), "txtStaff") == kName; }));
  EXPECT_TRUE(button("cmdOK").isEnabled());
  wand("2100001502");  // one at a time
  EXPECT_TRUE(find<QWidget>(mainWindow(), "fraStaffDetails").isVisible()) << "a scan presses no button";
  key(button("cmdOK"), Qt::Key_Space);
  EXPECT_EQ(rowsOf("faStaff"), before + 1);
  EXPECT_EQ(cellOf("faStaff", kName, 1), "Y");

  std::string member;
  for (const StaffMember& each : app().context.staff) {
    if (each.name == kName) member = each.id;
  }
  const std::string booking = bookWithStaff(member);
  open(ViewId::Staff);
  EXPECT_EQ(cellOf("faStaff", kName, 2), "1");
  frmBooking& whileActive = newBooking();
  EXPECT_TRUE(staffOffered(whileActive).contains(kName));
  whileActive.Closing = true;
  whileActive.Unload();

  clickText("faStaff", kName);
  answerBox("Staff selected for deactivation currently have bookings assigned to them.  Continue?", "Yes");
  key(button("cmdStaffActivate(1)"), Qt::Key_Space);
  EXPECT_EQ(cellOf("faStaff", kName, 1), "N");
  EXPECT_FALSE(staffOffered(newBooking()).contains(kName));
  desktop.dispatch([&] { OpenRecordWindow(app(), {kBooking, booking, kSourceMainWindow}); });
  EXPECT_EQ(find<QComboBox>(last<frmBooking>(), "cboSetupStaff").currentText(), kName) << "as it was";

  clickText("faStaff", kName);
  answerBox("Are you sure you wish to delete the selected staff?", "Yes");
  answerBox("Staff selected for delete currently have bookings assigned to them.  Continue?", "Yes");
  key(button("cmdStaffDelete"), Qt::Key_Space);
  EXPECT_EQ(rowsOf("faStaff"), before);
  EXPECT_EQ(stored(booking, "ODE"), "0");
}

}  // namespace
}  // namespace vantry::test

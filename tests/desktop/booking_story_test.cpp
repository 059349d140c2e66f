// Bookings as a desk makes and changes them, in the windows and in the store.
#include <QComboBox>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTreeWidget>
#include <set>

#include "booking/frmErrorReport.h"
#include "desktop/booking_story.h"
#include "desktop/qtext.h"
#include "desktop/style.h"

namespace vantry::test {
namespace {

TEST_F(BookingStory, ANewDeliveryIsStoredAsItWasTyped) {
  startAs("desk");
  const Requester who = requester();
  const std::string item = freeItem(who);
  const Piece scanned = freePiece(who), numbered = freePiece(who);
  showDay(kDay);
  ASSERT_EQ(rows(), 0);
  frmBooking& window = openNew("mnuPopupNewBookingFreeform");
  scanRequester(window, who);
  writeTimes(window, kDay, "10:00 AM", "11:30 AM");
  openTab(window, "tabBooking", 1);
  scan(window, "txtItemBarcode", item);
  openTab(window, "tabBooking", 2);
  expectNote(who.rooms[1]);
  auto& room = find<QComboBox>(window, "cboDeliveryRoom");
  room.setFocus();
  QTest::keyClick(&room, Qt::Key_Down);
  desktop.handleEvents();
  openTab(window, "tabBooking", 3);
  scan(window, "txtEquipBarcode", scanned.barcode);
  write(window, "txtEquipBarcode", numbered.number);
  click(window, "cmdAddEquipViaNumber");
  EXPECT_EQ(find<QLabel>(window, "lblThings").text(), "1 media, 2 equipment");
  write(window, "txtSetupTime", "15");
  openTab(window, "tabBooking", 4);
  QTest::keyClicks(&find<QPlainTextEdit>(window, "txtBookingNote"), "Ring twice");
  click(window, "abSaveAndClose");
  EXPECT_TRUE(editors().empty());
  ASSERT_EQ(rows(), 1);
  const std::string id = cell(1, 0), number = cell(1, kConfirmation);
  EXPECT_EQ(cell(1, kConfirmation - 1), who.name);

  frmBooking& again = edit(1);
  EXPECT_EQ(text(again, "txtConfirmationNumber"), number);
  EXPECT_EQ(this->window(again).windowTitle().toStdString(), "Booking - Confirmation Number:  " + number);
  EXPECT_EQ(find<QLabel>(again, "lblThings").text(), "1 media, 2 equipment");
  EXPECT_EQ(stored(id, "PID"), who.id);
  EXPECT_EQ(stored(id, "STIME") + " " + stored(id, "ETIME"), at(kDay, "10:00:00 ") + at(kDay, "11:30:00"));
  EXPECT_EQ(stored(id, "SCHCOM") + " " + stored(id, "UTIME"), "Ring twice 15");
  EXPECT_EQ(roomOf(id), who.rooms[1]);
  EXPECT_EQ(stored("GETSEQ", id, "EID"), (std::vector{scanned.id, numbered.id}));
  EXPECT_EQ(stored("GETSITM", id, "IM").size(), 1U);
}

TEST_F(BookingStory, ADateTypedWrongIsToldAndNothingIsStored) {
  startAs("desk");
  showDay(kDay);
  const frmBooking& window = openNew("mnuPopupNewBookingFreeform");
  for (const bool saves : {false, true}) {
    answerBox("Please enter a valid date for Date Needed.", "OK");
    write(window, "fpdNeedDate", "31/11/2026", saves ? Qt::Key_End : Qt::Key_Tab);
    if (saves) press(window, Qt::Key_S);
    EXPECT_TRUE(window.times.fpdNeedDate.isEmpty()) << "no other date takes its place";
    EXPECT_EQ(window.ActiveControl(), &window.times.fpdNeedDate);
  }
  EXPECT_EQ(editors().size(), 1U);
  EXPECT_EQ(rows(), 0);
}

TEST_F(BookingStory, OfSeveralTimesNoneIsStoredUntilAllAreFree) {
  startAs("desk");
  const Requester who = requester();
  const Piece piece = freePiece(who);
  ASSERT_EQ(ask("NEWBK", delivery(who, piece, at(kDay, "14:00:00"), at(kDay, "15:00:00"))), 0);
  const std::string taken = get("CNUM");
  showDay(kDay);
  frmBooking& window = openNew("mnuPopupNewBookingFreeform");
  scanRequester(window, who);
  writeTimes(window, kDay, "10:00 AM", "11:00 AM");
  openTab(window, "tabBooking", 3);
  scan(window, "txtEquipBarcode", piece.barcode);
  openTab(window, "tabBooking", 0);
  click(window, "cmdMultipleBookings");
  click(window, "cmdAddDate");
  addTimes(window, {{"10:30 AM", "11:30 AM"}, {"02:00 PM", "03:00 PM"}});

  // One is taken by another booking, two overlap each other.
  whenShown("faErrorsSpecific", [&](QWidget& report) {
    const auto& conflicts = *report.findChild<GridView*>("faErrorsSpecific")->model();
    ASSERT_EQ(conflicts.rowCount(), 1);
    QString row;
    for (int col = 0; col < conflicts.columnCount(); ++col)
      row += conflicts.index(0, col).data().toString() + ' ';
    EXPECT_TRUE(row.contains(QString::fromStdString(taken))) << row.toStdString();
    QTest::keyClick(&report, Qt::Key_Return);
  });
  click(window, "abSaveAndClose");
  correctTime(window, 3, "04:00 PM", "05:00 PM");
  answerBox("Multiple booking times overlap.  Please correct and save again.", "OK");
  click(window, "abSaveAndClose");
  EXPECT_EQ(rows(), 1) << "nothing is stored yet";
  correctTime(window, 2, "11:30 AM", "12:30 PM");
  answerBox("Multiple bookings created.  Display all?", "Yes");
  click(window, "abSaveAndClose");
  EXPECT_EQ(rows(), 4);
  std::set<QString> starts;
  for (frmBooking* form : editors()) starts.insert(find<QAbstractSpinBox>(*form, "txtNeedTime").text());
  EXPECT_EQ(starts, (std::set{shortTime({10, 0, 0}), shortTime({11, 30, 0}), shortTime({16, 0, 0})}))
      << "each in its own window";
}

/// What a report lists can be read without scrolling, also in bold.
TEST_F(BookingStory, AConflictReportIsAsWideAsWhatItLists) {
  startAs("desk");
  frmErrorReport conflicts(app(), codes::MediaConflict), lines(app(), codes::CalendarConflict);
  const auto fill = [](Grid& grid, int widest, std::initializer_list<std::string> texts) {
    grid.Rows = 2;
    int column = 0;
    for (const std::string& text : texts) grid.TextMatrix(1, column++, text);
    grid.AutoSize(0, grid.Cols - 1, widest);
  };
  const std::string title = "Introduction to Digital Sound Recording not available";
  const std::string date = formatDate({2026, 11, 24}, desktop.shortDateFormat());
  ASSERT_EQ(ask("ASKT", {}), 0);  // a reply without a conflict, so that neither list is hidden
  for (frmErrorReport* report : {&conflicts, &lines}) report->Load();
  fill(conflicts.faErrorsGeneric, Grid::kWidestFit, {title, date, "10:00 AM", date, "12:30 PM", "2", "3"});
  fill(conflicts.faErrorsSpecific, Grid::kWidestFit, {title, date, "10:00 AM", date, "12:30 PM", "100070"});
  fill(lines.faErrors, frmErrorReport::kWidestSentence,
       {"Exception Date:  Library/Media Center not open on " + date +
        " at 10:00 AM (booking start date/time)"});
  for (frmErrorReport* report : {&conflicts, &lines}) show(*report);
  for (Grid* grid : {&conflicts.faErrorsGeneric, &conflicts.faErrorsSpecific, &lines.faErrors}) {
    auto& list = find<GridView>(grid->form(), grid->Name().c_str());
    EXPECT_EQ(list.horizontalScrollBar()->maximum(), 0) << grid->Name();
    QFont bold = list.font();
    bold.setBold(true);
    for (int column = 0; column < grid->Cols; ++column) {
      const QString text = QString::fromStdString(grid->TextMatrix(1, column));
      EXPECT_GE(list.columnWidth(column) - 2 * style::kCellMargin, QFontMetrics(bold).horizontalAdvance(text))
          << text.toStdString();
    }
  }
}

TEST_F(BookingStory, ACopyForAnotherRequesterIsABookingOfItsOwn) {
  startAs("desk");
  const Requester who = requester(), another = requester(who);
  const Piece piece = freePiece(who);
  ASSERT_EQ(ask("NEWBK", delivery(who, piece, at(kDay, "10:00:00"), at(kDay, "11:00:00"))), 0);
  const std::string id = get("BOOKID"), number = get("CNUM");
  showDay(kDay);
  frmBooking& model = edit(1);
  whenShown("optAdministrative", [&](QWidget& window) {
    write(window, "txtRequester", another.barcode, Qt::Key_Return);
    window.findChild<QPushButton*>("cmdOK")->click();
  });
  click(model, "abCopy");
  ASSERT_EQ(editors().size(), 2U);
  frmBooking& copy = *editors().back();
  EXPECT_EQ(window(copy).windowTitle().toStdString(), "Copy of Booking with Confirmation Number " + number);
  EXPECT_EQ(text(copy, "txtRequester"), another.name);
  const Date next = addDays(kDay, 1);
  writeTimes(copy, next, "10:00 AM", "11:00 AM");
  click(copy, "abSaveAndClose");
  EXPECT_EQ(&onlyEditor(), &model);
  showDay(next);
  ASSERT_EQ(rows(), 1);
  const std::string copied = cell(1, 0);
  EXPECT_EQ(stored(copied, "PID"), another.id);
  EXPECT_EQ(roomOf(copied), who.rooms.front());
  EXPECT_EQ(stored("GETSEQ", copied, "EID"), std::vector{piece.id});
  EXPECT_EQ(stored(id, "PID"), who.id) << "the model is as it was";
  EXPECT_EQ(stored(id, "STIME"), at(kDay, "10:00:00"));
}

TEST_F(BookingStory, AnUpdateThatAnotherDeskOvertookIsRefused) {
  startAs("desk");
  const Requester who = requester();
  const Piece piece = freePiece(who);
  const std::string begin = at(kDay, "10:00:00"), end = at(kDay, "11:00:00");
  ASSERT_EQ(ask("NEWBK", delivery(who, piece, begin, end)), 0);
  const std::string id = get("BOOKID");
  showDay(kDay);
  frmBooking& mine = edit(1);
  openTab(mine, "tabBooking", 4);
  auto& note = find<QPlainTextEdit>(mine, "txtBookingNote");
  QTest::keyClicks(&note, "mine");

  HttpTransport other({.address = address()});
  ASSERT_EQ(other.logon("admin", "admin-demo"), LogonResult::Accepted);
  ASSERT_EQ(other.send({"1", "SLL", {{"LOC", app().context.locationId}}}).reply.rc, 0);
  std::vector<TagValue> theirs = delivery(who, piece, begin, end, "theirs");
  theirs.insert(theirs.begin(), {"BOOKID", id});
  ASSERT_EQ(other.send({"2", "UPDBK", theirs}).reply.rc, 0);

  answerBox(
      "This booking has been updated by another user.\r\n"
      "Please close this window and retrieve the booking again.",
      "OK");
  click(mine, "abSaveAndClose");
  EXPECT_EQ(sent("CDELTM"), 0) << "nothing more is asked";
  EXPECT_EQ(note.toPlainText(), "mine") << "what was typed still stands";
  answerBox("Changes will be lost!  Do you wish to SAVE this Booking before closing?", "No");
  press(mine, Qt::Key_F4);
  ASSERT_TRUE(editors().empty());
  EXPECT_EQ(find<QPlainTextEdit>(edit(1), "txtBookingNote").toPlainText(), "theirs");
  EXPECT_EQ(stored(id, "SCHCOM"), "theirs");
}

TEST_F(BookingStory, EscapeGivesNoChangesUp) {
  startAs("desk");
  const frmBooking& editor = openNew("mnuPopupNewBookingFreeform");
  openTab(editor, "tabBooking", 4);
  QTest::keyClicks(&find<QPlainTextEdit>(editor, "txtBookingNote"), "mine");
  whenShown("text", [&](QWidget& box) {
    QTest::keyClick(&box, Qt::Key_Escape);
    box.close();
    EXPECT_TRUE(box.isVisible());
    EXPECT_TRUE(window(editor).isVisible());
    EXPECT_EQ(find<QPlainTextEdit>(editor, "txtBookingNote").toPlainText(), "mine");
    box.findChildren<QPushButton*>().back()->click();
  });
  press(editor, Qt::Key_F4);
  EXPECT_TRUE(editors().empty()) << "No gives them up";
}

TEST_F(BookingStory, AnImmediatePickUpGoesOutAtOnce) {
  startAs("desk");
  app().preferences.AutoCharge = true;
  const Requester who = requester();
  const Piece piece = freePiece(who);
  std::set<std::string> before;
  for (int row = 1; row < grid().Rows; ++row) before.insert(cell(row, 0));
  frmBooking& window = openNew("mnuPopupNewBookingPickup");
  scan(window, "txtRequester", who.barcode);
  auto& begin = find<QAbstractSpinBox>(window, "txtNeedTime");
  EXPECT_EQ(begin.text(), shortTime({12, 0, 0})) << "the server's time";
  EXPECT_TRUE(begin.isReadOnly());
  EXPECT_FALSE(find<QWidget>(window, "txtOnBehalfOf").isVisible());
  openTab(window, "tabBooking", 2);
  EXPECT_FALSE(find<QWidget>(window, "cboDeliveryRoom").isVisible());
  openTab(window, "tabBooking", 3);
  scan(window, "txtEquipBarcode", piece.barcode);
  answerBox("Booking charged successfully!", "OK");
  click(window, "abSaveAndClose");
  EXPECT_TRUE(editors().empty());
  int row = 1;
  while (row < grid().Rows && before.contains(cell(row, 0))) ++row;
  ASSERT_LT(row, grid().Rows) << "today's list shows it";
  EXPECT_EQ(cell(row, 1), "99");
  const std::string id = cell(row, 0);
  EXPECT_EQ(stored(id, "BTID") + " " + stored(id, "BKRES"), "3 99");
  EXPECT_EQ(stored(id, "STIME"), "2026-11-24 12:00:00");
  EXPECT_EQ(stored("GETSEQ", id, "EID"), std::vector{piece.id});
}

TEST_F(BookingStory, ViewOnlyLooksAtAllTabsAndChangesNothing) {
  startAs("view", 1);
  frmBooking& form = edit(rowOf("0"));
  ASSERT_TRUE(form.media.faMedia.hasData()) << "the first live booking has media that need equipment";
  std::set<std::string> live;
  for (int tab = 0; tab < 7; ++tab) {
    openTab(form, "tabBooking", tab);
    live.merge(openInputs(form));
  }
  EXPECT_EQ(live, (std::set<std::string>{"abPrint", "cmdMARC", "cmdRoomView(0)"})) << "all else is closed";

  // Nor do keys change what looks as ever: the types that media need, and the bar of the time.
  openTab(form, "tabBooking", 3);
  auto& types = find<QTreeWidget>(form, "tvwEquipment");
  const auto firstType = [&] { return types.topLevelItem(0)->child(0)->child(0); };
  types.setCurrentItem(firstType());
  QTest::keyClick(&types, Qt::Key_Space);
  desktop.handleEvents();
  EXPECT_EQ(firstType()->checkState(0), Qt::Unchecked);
  EXPECT_EQ(sent("VEQUSG"), 0) << "nor has the server had to refuse it";
  openTab(form, "tabBooking", 0);
  auto& begin = find<QAbstractSpinBox>(form, "txtNeedTime");
  const QString time = begin.text();
  QTest::keyClick(&begin, Qt::Key_Up);
  QTest::keyClick(&find<QWidget>(form, "schTimeLine"), Qt::Key_Right);
  desktop.handleEvents();
  EXPECT_EQ(begin.text(), time);
  press(form, Qt::Key_S);
  press(form, Qt::Key_F4);
  EXPECT_TRUE(editors().empty()) << "nothing to be asked about";
  EXPECT_EQ(sent("CHKUPD"), 0);
}

}  // namespace
}  // namespace vantry::test

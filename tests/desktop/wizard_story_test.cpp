// Bookings made with the wizard, by keyboard and barcode reader alone.
#include <QAccessible>

#include "booking/frmBookWiz.h"
#include "booking/frmErrorReport.h"
#include "booking/place_panel.h"
#include "desktop/booking_story.h"
#include "platform/text.h"

namespace vantry::test {
namespace {

class WizardStory : public BookingStory {
 protected:
  WizardStory()
      : BookingStory([](const fs::path& library) {
          fs::create_directories(library.parent_path() / "misc");
          fs::copy_file(VANTRY_HELP_MAP, library.parent_path() / "misc" / "vantryhelp.ini");
        }) {}

  frmBookWiz& open() {
    chooseFromMenu("mnuPopupNewBookingWizard");
    click(mainWindow(), "cmdNewBooking");
    for (int i = app().windows.Count() - 1; i >= 0; --i) {
      if (auto* found = dynamic_cast<frmBookWiz*>(&app().windows[i])) return use(*found);
    }
    throw std::runtime_error("no wizard is open");
  }
  frmBookWiz& use(frmBookWiz& wizard) {
    wizard_ = &wizard;
    activate(window(wizard));
    return wizard;
  }

  void key(int code, Qt::KeyboardModifiers held = {}) {
    activate(window(*wizard_));
    QTest::keyClick(typingTarget(), static_cast<Qt::Key>(code), held);
    desktop.handleEvents();
  }
  /// Types over what is in the focused field.
  void type(const std::string& text, int end = Qt::Key_Tab) {
    key(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(typingTarget(), QString::fromStdString(text));
    key(end);
  }
  /// Enter leads to this page.
  void enter(int page) {
    key(Qt::Key_Return);
    EXPECT_TRUE(waitUntil([&] { return wizard_->page() == page; })) << "page " << wizard_->page();
    desktop.handleEvents();
  }
  template <class Condition>
  void scanUntil(const std::string& barcode, Condition condition) {
    activate(window(*wizard_));
    wand(barcode.c_str());
    EXPECT_TRUE(waitUntil(condition)) << barcode;
    desktop.handleEvents();
  }
  void scanRequester(const Requester& who) {
    scanUntil(who.barcode, [&] { return wizard_->cmdNext.Enabled.get(); });
    EXPECT_EQ(text(*wizard_, "txtRequester"), who.name);
  }
  void scanPiece(const Piece& piece) {
    scanUntil(piece.barcode, [&] { return wizard_->record.EquipmentCount == 1; });
  }
  void typeTimes(const Date& day, const char* start, const char* end) {
    EXPECT_EQ(wizard_->ActiveControl(), &wizard_->times.fpdNeedDate);
    type(formatDate(day, desktop.shortDateFormat()));
    type(start);
    key(Qt::Key_Tab);  // the end is on the same day
    type(end, Qt::Key_Tab);
  }
  static std::string spoken(QWidget& widget) {
    return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name).toStdString();
  }
  /// Alt and the letter of the option.
  void choosePlace(Qt::Key letter, int option) {
    key(letter, Qt::AltModifier);
    EXPECT_TRUE(waitUntil([&] { return wizard_->place.option() == option; }));
    desktop.handleEvents();
  }
  /// From the first entry on.
  void chooseEntry(const char* name, const ComboBox& combo, int entry) {
    find<QWidget>(*wizard_, name).setFocus();
    for (int next = 1; next <= entry; ++next) {
      expectNote(combo.ItemData(next));
      key(Qt::Key_Down);
    }
  }
  /// The last page is left with Finish; the wizard closes.
  void finish() {
    for (int tab = 0; tab < 9 && wizard_->ActiveControl() != &wizard_->cmdNext; ++tab) key(Qt::Key_Tab);
    ASSERT_EQ(wizard_->ActiveControl(), &wizard_->cmdNext);
    EXPECT_EQ(find<QPushButton>(*wizard_, "cmdNext").text(), "Finish");
    key(Qt::Key_Return);
    EXPECT_TRUE(waitUntil([&] { return !wizard_->isLoaded(); }));
    desktop.handleEvents();
  }
  /// The first room for the group in which the library lets this time be booked, as an entry of the list.
  int freeScheduledRoom(const Requester& who, const std::string& start, const std::string& end) {
    const TagValue group{"PGID", who.group};
    std::vector<std::string>& rooms = scheduledRooms_;
    EXPECT_EQ(ask("GLSRM", {{"ADBK", "N"}, group}), 0);
    while (app().message.NextRecord("RID")) rooms.push_back(get("RID"));
    const std::string day = std::to_string(weekday(kDay));
    for (std::size_t i = 0; i < rooms.size(); ++i) {
      const TagValue room{"RID", rooms[i]};
      if (ask("VALRMAVL", {{"BOOKID", "0"}, {"STIME", start}, {"ETIME", end}, room, group}) == 0 &&
          ask("VALLSL", {room, group}) == 0 &&
          ask("CRMTM",
              {group, {"ADBK", "N"}, {"STIME", start}, {"SDOW", day}, {"ETIME", end}, {"EDOW", day}, room}) ==
              0)
        return static_cast<int>(i);
    }
    throw std::runtime_error("no free room in the small library");
  }

  std::vector<std::string> scheduledRooms_;

 private:
  frmBookWiz* wizard_ = nullptr;
};

TEST_F(WizardStory, EachTypeIsMadeByKeyboardAndReader) {
  startAs("desk");
  const Requester who = requester();
  const std::string item = freeItem(who);
  const Piece pieces[] = {freePiece(who), freePiece(who), freePiece(who)};
  const struct {
    const char *start, *end, *stored;
  } times[] = {{"900", "1000", "09:00:00"}, {"11:00", "12:00", "11:00:00"}, {"2pm", "3pm", "14:00:00"}};
  const int studio = freeScheduledRoom(who, at(kDay, "11:00:00"), at(kDay, "12:00:00"));
  showDay(kDay);
  for (const int option : {kDeliverOption, kScheduledOption, kPickUpOption}) {
    SCOPED_TRACE(option);
    const auto& time = times[option];
    frmBookWiz& wizard = open();
    scanRequester(who);
    enter(frmBookWiz::kSchedulePage);
    EXPECT_EQ(spoken(find<QWidget>(wizard, "stpPages")), "Page: 2 of 6, Schedule");
    typeTimes(kDay, time.start, time.end);
    enter(frmBookWiz::kMediaPage);
    if (option == kDeliverOption)
      scanUntil(item, [&] { return wizard.record.ItemCount == 1; });
    else
      wizard.parts.media.txtItemBarcode.SetFocus();
    enter(frmBookWiz::kRoomPage);
    if (option == kDeliverOption) {
      expectNote(who.rooms[1]);
      key(Qt::Key_Down);
    } else if (option == kScheduledOption) {
      expectNote(wizard.place.cboLibSchedRoom.ItemData(0));
      choosePlace(Qt::Key_L, kScheduledOption);
      chooseEntry("cboLibSchedRoom", wizard.place.cboLibSchedRoom, studio);
    } else {
      choosePlace(Qt::Key_P, kPickUpOption);
    }
    const int room = wizard.record.RoomId;
    enter(frmBookWiz::kEquipmentPage);
    scanPiece(pieces[option]);
    enter(frmBookWiz::kNotesPage);
    QTest::keyClicks(typingTarget(), "Ring twice");
    finish();

    frmBooking& editor = onlyEditor();
    const std::string id = std::to_string(editor.record.BookingId);
    EXPECT_EQ(rows(), option + 1) << "the day's list is read anew";
    EXPECT_EQ(stored(id, "PID") + " " + stored(id, "WIZ"), who.id + " Y");
    EXPECT_EQ(stored(id, "BTID"), std::to_string(typeOfOption(option)));
    EXPECT_EQ(stored(id, "STIME"), at(kDay, time.stored));
    EXPECT_EQ(stored(id, "SCHCOM"), "Ring twice");
    EXPECT_EQ(stored("GETSEQ", id, "EID"), std::vector{pieces[option].id});
    EXPECT_EQ(stored("GETSITM", id, "IM").size(), option == kDeliverOption ? 1U : 0U);
    EXPECT_EQ(intOf(roomOf(id)), option == kPickUpOption ? 0 : room);
    editor.Unload();
    desktop.handleEvents();
  }
}

TEST_F(WizardStory, AConflictInTheMiddleOfASeriesKeepsThePage) {
  startAs("desk");
  const Requester who = requester();
  const Piece piece = freePiece(who);
  const std::string from = at(kDay, "14:00:00"), to = at(kDay, "15:00:00");
  const int studio = freeScheduledRoom(who, from, to);
  ASSERT_EQ(
      ask("NEWBK", bookingTags(from, to, {{"PID", who.id}, {"PGID", who.group}},
                               {{"RID", scheduledRooms_[static_cast<std::size_t>(studio)]}, {"BTID", "1"}})),
      0);
  showDay(kDay);
  frmBookWiz& wizard = open();
  scanRequester(who);
  enter(frmBookWiz::kSchedulePage);
  click(wizard, "cmdMultipleBookings");
  addTimes(wizard, {{"10:00 AM", "11:00 AM"}, {"02:00 PM", "03:00 PM"}, {"04:00 PM", "05:00 PM"}});
  click(wizard, "cmdNext");
  click(wizard, "cmdNext");
  ASSERT_EQ(wizard.page(), frmBookWiz::kRoomPage);
  expectNote(wizard.place.cboLibSchedRoom.ItemData(0));
  choosePlace(Qt::Key_L, kScheduledOption);
  chooseEntry("cboLibSchedRoom", wizard.place.cboLibSchedRoom, studio);

  const std::string taken = "The selected room is not available for the following booking:  " +
                            formatDate(kDay, desktop.shortDateFormat()) + "@02:00 PM";
  answerBox(taken.c_str(), "OK");
  click(wizard, "cmdNext");
  EXPECT_EQ(wizard.page(), frmBookWiz::kRoomPage);
  click(wizard, "cmdPrevious");
  click(wizard, "cmdPrevious");
  correctTime(wizard, 2, "12:00 PM", "01:00 PM");
  for (int page = frmBookWiz::kSchedulePage; page < frmBookWiz::kEquipmentPage; ++page)
    click(wizard, "cmdNext");
  ASSERT_EQ(wizard.page(), frmBookWiz::kEquipmentPage);
  scanPiece(piece);
  click(wizard, "cmdNext");
  answerBox("Multiple bookings created.  Display all?", "Yes");
  click(wizard, "cmdNext");
  EXPECT_FALSE(wizard.isLoaded());
  EXPECT_EQ(rows(), 4);
  std::set<std::string> starts;
  for (frmBooking* editor : editors()) starts.insert(editor->record.StartTime);
  EXPECT_EQ(starts, (std::set{at(kDay, "10:00:00"), at(kDay, "12:00:00"), at(kDay, "16:00:00")}));
}

TEST_F(WizardStory, EscapeAsksAndNoKeepsThePage) {
  startAs("desk");
  const Requester who = requester();
  const frmBookWiz& wizard = open();
  for (const WizardPage& page : wizard.pages)
    EXPECT_NE(page.txtHelp.Text, " ") << page.frame.Caption.get() << " is not explained";
  scanRequester(who);
  enter(frmBookWiz::kSchedulePage);
  bool asked = false;
  whenShown("text", [&asked](QWidget& box) {
    asked = true;
    QTest::keyClick(&box, Qt::Key_Return);  // which presses the second button
  });
  key(Qt::Key_Escape);
  EXPECT_TRUE(waitUntil([&] { return asked && !QApplication::activeModalWidget(); }));
  EXPECT_TRUE(wizard.isLoaded());
  EXPECT_EQ(wizard.page(), frmBookWiz::kSchedulePage);
  answerBox("Booking Wizard in progress!  Cancel this booking?", "Yes");
  click(wizard, "cmdCancel");
  EXPECT_FALSE(wizard.isLoaded());
  EXPECT_EQ(sent("NEWBK"), 0);
}

}  // namespace
}  // namespace vantry::test

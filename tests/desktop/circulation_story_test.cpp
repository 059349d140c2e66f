// A booking's way through the desk, from its search to the last scan.
#include <QComboBox>
#include <QListView>
#include <set>

#include "desktop/desk_story.h"

namespace vantry::test {
namespace {

struct CirculationStory : DeskStory {
  struct Booked {
    std::string id, number;
  };
  /// Books two laptops and two microphones for that day, by their kinds only.
  Booked book(const std::string& date) {
    std::vector<TagValue> what{{"LOC", app().context.locationId}, {"BTID", "3"}};
    for (const char* kind : {kLaptop, kLaptop, kMicrophone, kMicrophone}) {
      what.push_back({"ETI", kind});
      what.push_back({"IFL", "N"});
    }
    const int rc = ask(
        "NEWBK", bookingTags(date + " 12:00:00", date + " 14:00:00", {{"PID", "1"}, {"PGID", "6"}}, what));
    EXPECT_EQ(rc, 0) << get("CANTREAD");
    return {get("BOOKID"), get("CNUM")};
  }
  std::string status(const Booked& booked) { return stored(booked.id, "BKRES"); }
  /// Opens the view and chooses a type of search by keys, then goes to the text.
  void open(ViewId view, const char* types, int type, const char* text) {
    run([&] { mainWindow().showView(view); });
    auto& list = find<QComboBox>(mainWindow(), types);
    list.setFocus();
    for (int step = 0; step < type; ++step) QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(list.currentIndex(), type);
    find<QLineEdit>(mainWindow(), text).setFocus();
  }
  /// As a wand does: letters and an Enter to whatever has the focus, which must be this text.
  void scan(const char* text, const std::string& letters) {
    auto& line = find<QLineEdit>(mainWindow(), text);
    ASSERT_TRUE(waitUntil([&] { return window(mainWindow()).focusWidget() == &line; })) << text;
    QTest::keyClicks(&line, QString::fromStdString(letters));
    QTest::keyClick(&line, Qt::Key_Return);
    desktop.handleEvents();
    EXPECT_TRUE(waitUntil([&] { return window(mainWindow()).focusWidget() == &line; })) << text;
  }

  /// What was booked for that day is alone in the list of what can be charged.
  Booked findToCharge(const std::string& date) {
    startAs("desk");
    Booked booked = book(date);
    open(ViewId::Charge, "cboChargeSearch", 2, "txtChargeSearchFor");
    scan("txtChargeSearchFor", booked.number);
    return booked;
  }

  static constexpr const char* kLaptop = "1";
  static constexpr const char* kMicrophone = "10";
};

TEST_F(CirculationStory, WishesGoOutAsPiecesAndComeBackOneByOne) {
  // Out.
  const Booked booked = findToCharge("2026-11-24");
  EXPECT_EQ(sent("SSC"), 1) << "the default button has not searched as well";
  EXPECT_EQ(find<GridView>(mainWindow(), "faChargeBookings").model()->rowCount(), 1);
  EXPECT_TRUE(find<QWidget>(mainWindow(), "tvwCDetails").isVisible()) << "found alone, its details open";
  std::set<QString> numbers;
  whenShown("faGenEquip", [&](QWidget& window) {
    const QAbstractItemModel& pieces = *window.findChild<GridView*>("faGenEquip")->model();
    for (int row = 0; row < pieces.rowCount(); ++row) numbers.insert(pieces.index(row, 2).data().toString());
    QTest::keyClick(&window, Qt::Key_Return);
  });
  answerBox("Booking charged successfully!", "OK");
  pressButton("cmdCCharge");
  EXPECT_EQ(numbers.size(), 4U) << "two different pieces of each kind";
  EXPECT_EQ(status(booked), "99");
  answerBox("Selected booking already charged!", "OK");
  scan("txtChargeSearchFor", booked.number);  // in place of what was scanned before
  EXPECT_EQ(sent("SSC"), 2);

  // Half of it back by the dialog.
  open(ViewId::Discharge, "cboDischargeSearch", 2, "txtDischargeSearchFor");
  scan("txtDischargeSearchFor", booked.number);
  EXPECT_EQ(sent("SSD"), 1);
  std::vector<std::string> out;
  whenShown("lstEquipment", [&](QWidget& window) {
    auto& list = *window.findChild<QListView*>("lstEquipment");
    ASSERT_EQ(list.model()->rowCount(), 4);
    for (const int row : {1, 2}) {
      const QModelIndex line = list.model()->index(row, 0);
      out.push_back(line.data().toString().section(" - ", -1).toStdString());
      QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(line).center());
    }
    // Not from within this step: the next one answers what the click brings up.
    QTimer::singleShot(0, window.findChild<QPushButton*>("cmdOK"), &QPushButton::click);
  });
  answerBox("Selected items discharged successfully!", "OK");
  pressButton("cmdDDischarge");
  ASSERT_EQ(out.size(), 2U);
  EXPECT_EQ(status(booked), "99") << "something is still out";
  EXPECT_EQ(find<GridView>(mainWindow(), "faDischargeBookings").model()->rowCount(), 1);

  // The rest by the wand.
  open(ViewId::QuickDischarge, "cboQuickDischargeType", 2, "txtQuickDischargeItem");
  for (const std::string& barcode : out) {
    EXPECT_EQ(status(booked), "99");
    scan("txtQuickDischargeItem", barcode);
    EXPECT_EQ(find<QLineEdit>(mainWindow(), "txtQuickDischargeItem").text(), "") << "ready for the next one";
  }
  EXPECT_EQ(status(booked), "1");
  EXPECT_EQ(sent("DBK"), 3);

  // What is scanned while a box is open neither answers it nor is lost.
  const auto searched = sent("SSD");
  whenShown("text", [&](QWidget& box) {
    wand(out.back().c_str());
    EXPECT_TRUE(box.isVisible());
    box.findChild<QPushButton*>()->click();
  });
  answerBox("Unable to find booking information.", "OK");
  activate(window(mainWindow()));
  find<QWidget>(mainWindow(), "cboQuickDischargeType").setFocus();
  wand(out.front().c_str());
  EXPECT_TRUE(waitUntil([&] { return sent("SSD") == searched + 2; }));
}

TEST_F(CirculationStory, AMomentThatCannotBeReadIsNotTakenForNow) {
  startAs("desk");
  const Booked booked = book("2026-11-24");
  ASSERT_EQ(ask("CBK", {{"BOOKID", booked.id}}), 0);
  open(ViewId::Discharge, "cboDischargeSearch", 2, "txtDischargeSearchFor");
  scan("txtDischargeSearchFor", booked.number);
  const auto pressOK = [](QWidget& dialog) {
    QTimer::singleShot(0, dialog.findChild<QPushButton*>("cmdOK"), &QPushButton::click);
  };
  whenShown("chkOverride", [&](QWidget& dialog) {
    dialog.findChild<QAbstractButton*>("chkOverride")->click();
    write(dialog, "dtDischargeDate", "31/11/2026");
    pressOK(dialog);
  });
  answerBox("Please enter a valid date for Discharge Date.", "OK");
  whenShown("chkOverride", [&](QWidget& dialog) {
    EXPECT_EQ(sent("DBK"), 0);
    auto* date = dialog.findChild<QLineEdit*>("dtDischargeDate");
    EXPECT_EQ(dialog.focusWidget(), date);
    EXPECT_EQ(date->text(), "31/11/2026") << "what was typed is there to be mended";
    write(dialog, "dtDischargeDate", formatDate({2026, 11, 24}, desktop.shortDateFormat()));
    write(dialog, "txtDischargeTime", "25:70");
    pressOK(dialog);
  });
  answerBox("Discharge Time is invalid!", "OK");
  whenShown("chkOverride", [&](QWidget& dialog) {
    EXPECT_EQ(sent("DBK"), 0);
    write(dialog, "txtDischargeTime", "12:00");
    pressOK(dialog);
  });
  answerBox("Selected items discharged successfully!", "OK");
  pressButton("cmdDDischarge");
  EXPECT_EQ(sent("DBK"), 1);
}

TEST_F(CirculationStory, WhoLeavesALostServerIsToldNothingMore) {
  findToCharge("2026-11-24");
  const auto before = requestsSent();
  stopServer();
  answerBox(lostServer().c_str(), "Exit");
  const int code = desktop.run([this] {
    later([this] { button("cmdCCharge").click(); });
    return true;
  });
  EXPECT_EQ(code, 0);
  EXPECT_EQ(requestsSent(), before + 1) << "nothing is asked any more";
}

TEST_F(CirculationStory, ARefusedChargeTellsWhyAndChangesNothing) {
  const Booked booked = findToCharge("2026-11-25");
  whenShown("faErrors", [](QWidget& window) {
    const QString reason = window.findChild<GridView*>("faErrors")->model()->index(0, 0).data().toString();
    EXPECT_TRUE(reason.startsWith("Booking charged too early:  cannot charge before "))
        << reason.toStdString();
    QTest::keyClick(&window, Qt::Key_Return);
  });
  pressButton("cmdCCharge");
  EXPECT_EQ(find<GridView>(mainWindow(), "faChargeBookings").model()->rowCount(), 1);
  EXPECT_EQ(status(booked), "0");
  EXPECT_EQ(sent("CBK"), 1);
}

}  // namespace
}  // namespace vantry::test

#include <QClipboard>
#include <QColorDialog>
#include <QDialog>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QShortcutEvent>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTreeWidget>

#include <deque>
#include <fstream>
#include <set>

#include "desktop/desktop_test.h"
#include "platform/bars.h"
#include "platform/controls.h"

namespace vantry::test {
namespace {

class WorkForm : public Form {
 public:
  explicit WorkForm(Windows& all, std::string name = "frmWork") : Form(all, std::move(name)) {
    mnuPopup.Visible = false;
    mnuPopupEdit.Click = [this] { log += "edit "; };
    mnuFileExit.Click = [this] { log += "exit "; };
    cmdDo.Click = [this] { raise(action); };
    barMain.addButton(7, "abSearch", "Search", "search");
    Tool& fresh = barMain.addButton(100, "abNew", "New", "new");
    barMain.addChoice(fresh, 202, "Booking", "booking");
    barMain.ToolClick = [this](const Tool& tool) { log += std::to_string(tool.id) + " "; };
    albBar.setGroups({{"Group", {{"day", "Day View", "day"}, {"staff", "Staff", "staff"}}}});
    albBar.ItemClick = [this](std::string_view key) { log += std::string(key) + " "; };
    fraSecond.Visible = false;
    fraFirst.Layout = Column{cmdDo};
    fraSecond.Layout = Column{lblSecond};
    Layout = Row{albBar, Column{fraFirst, fraSecond}};
  }
  void Form_Activate() override { log += "activate "; }
  bool Form_Unload() override { return mayUnload; }

  MenuItem mnuFile{*this, "mnuFile", "&File"};
  MenuItem mnuFileExit{mnuFile, "mnuFileExit", "E&xit"};
  MenuItem mnuPopup{*this, "mnuPopup", ""};
  MenuItem mnuPopupEdit{mnuPopup, "mnuPopupEdit", "Edit"};
  MenuItem mnuPopupDelete{mnuPopup, "mnuPopupDelete", "Delete"};
  ToolBar barMain{*this, "barMain"};
  ListBar albBar{*this, "albBar"};
  Frame fraFirst{*this, "fraFirst", "", 0};
  Button cmdDo{fraFirst, "cmdDo", "&Do"};
  Frame fraSecond{*this, "fraSecond", "", 0};
  Label lblSecond{fraSecond, "lblSecond", "Second"};
  Timer tmrTick{*this, "tmrTick"};
  StatusBar StatusBar1{*this, "StatusBar1"};
  Event action;
  std::string log;
  bool mayUnload = true;
};

class WindowsTest : public DesktopTest {
 protected:
  WorkForm form{windows};
  void press(Form& of, const char* name) { QTest::mouseClick(&find<QPushButton>(of, name), Qt::LeftButton); }
};

TEST_F(WindowsTest, AModalWindowReturnsWhenItIsHiddenOrUnloaded) {
  show(form);
  WorkForm dialog(windows, "frmDialog");
  for (const bool unloads : {false, true}) {
    form.log.clear();
    form.action = [&] {
      dialog.action = [&] { unloads ? static_cast<void>(dialog.Unload()) : dialog.Hide(); };
      later([&] { press(dialog, "cmdDo"); });
      dialog.ShowModal();
      form.log += "returned ";
    };
    press(form, "cmdDo");
    EXPECT_NE(form.log.find("returned "), std::string::npos);
    EXPECT_FALSE(dialog.isShown());
    EXPECT_EQ(dialog.isLoaded(), !unloads);
  }
}

TEST_F(WindowsTest, TheFrontWindowIsActivatedOnceForEachTimeItComesThere) {
  show(form);
  EXPECT_EQ(form.log, "activate ");
  WorkForm other(windows, "frmOther");
  show(other);
  form.SetFocus();
  desktop.handleEvents();
  EXPECT_EQ(form.log, "activate activate ");
  later([] { QApplication::activeModalWidget()->close(); });
  informationBox(desktop, "A box is no other window.");
  desktop.handleEvents();
  EXPECT_EQ(form.log, "activate activate ");
}

TEST_F(WindowsTest, AKeptWindowIsFreedAfterItsEventAndNotWithinIt) {
  auto owned = std::make_unique<WorkForm>(windows, "frmKept");
  WorkForm& kept = windows.keep(std::move(owned));
  show(kept);
  const QPointer<QWidget> widget(&window(kept));
  bool stoodAfterBox = false;
  kept.action = [&] {
    kept.Unload();
    later([] { QApplication::activeModalWidget()->close(); });
    informationBox(desktop, "Its event is still under way.");
    stoodAfterBox = kept.Name() == "frmKept";
  };
  press(kept, "cmdDo");
  EXPECT_TRUE(stoodAfterBox);
  EXPECT_TRUE(waitUntil([&] { return widget.isNull(); })) << "the widget goes with the event loop";
  EXPECT_EQ(desktop.windowOf(kept), nullptr);
}

TEST_F(WindowsTest, AnUnloadedWindowCanBeShownAgain) {
  show(form);
  form.Unload();
  form.cmdDo.Enabled = false;  // nobody shows it now
  show(form);
  EXPECT_FALSE(find<QPushButton>(form, "cmdDo").isEnabled());
  EXPECT_TRUE(window(form).isVisible());
}

TEST_F(WindowsTest, TheSystemsCloseAsksTheForm) {
  show(form);
  form.mayUnload = false;
  window(form).close();
  EXPECT_TRUE(form.isShown());
  EXPECT_TRUE(window(form).isVisible());
  form.mayUnload = true;
  form.Enabled = false;
  window(form).close();
  EXPECT_TRUE(form.isShown()) << "a busy window stays";
  form.Enabled = true;
  window(form).close();
  EXPECT_FALSE(form.isShown());
  EXPECT_EQ(desktop.windowOf(form), nullptr);
}

TEST_F(WindowsTest, ABusyWindowTakesNoInputAndKeepsItsFocus) {
  show(form);
  int presses = 0;
  form.action = [&] { ++presses; };
  find<QWidget>(form, "cmdDo").setFocus();
  form.Enabled = false;
  press(form, "cmdDo");
  QTest::keyClick(&find<QWidget>(form, "cmdDo"), Qt::Key_Space);
  EXPECT_EQ(presses, 0);
  form.Enabled = true;
  EXPECT_TRUE(find<QWidget>(form, "cmdDo").hasFocus());
  press(form, "cmdDo");
  EXPECT_EQ(presses, 1);
}

TEST_F(WindowsTest, KeysOfAMenuEntryPressedDuringAWaitAreDropped) {
  form.mnuFileExit.Shortcut = "Ctrl+E";
  show(form);
  form.log.clear();
  auto* exit = window(form).findChild<QAction*>("mnuFileExit");
  const auto pressKeys = [&] {
    QShortcutEvent keys(QKeySequence("Ctrl+E"), 0);
    QApplication::sendEvent(exit, &keys);
  };
  form.Enabled = false;
  desktop.noticeableWait = 0;
  form.Enabled = true;
  pressKeys();
  EXPECT_EQ(form.log, "") << "they were meant for what stood before";
  desktop.handleEvents();
  desktop.handleEvents();
  pressKeys();
  EXPECT_EQ(form.log, "exit ");
}

TEST_F(WindowsTest, EndingTheProgramUnwindsEveryLoop) {
  WorkForm dialog(windows, "frmDialog");
  bool wentOn = false;
  form.action = [&] {
    dialog.action = [&] { desktop.endProgram(); };
    later([&] { press(dialog, "cmdDo"); });
    dialog.ShowModal();
    wentOn = true;
  };
  const int code = desktop.run([&] {
    form.Show();
    later([&] { press(form, "cmdDo"); });
    return true;
  });
  EXPECT_EQ(code, 0);
  EXPECT_FALSE(wentOn) << "the command that waited ends as well";
  EXPECT_THROW(form.ShowModal(), ProgramEnd);
}

TEST_F(WindowsTest, AWindowWhoseShowingEndsTheProgramEndsTheCommandThatShowsIt) {
  struct Ending : Form {
    explicit Ending(Windows& all) : Form(all, "frmEnding") {}
    void Form_Activate() override { windows().desktop().endProgram(); }
  } ending(windows);
  bool wentOn = false;
  const int code = desktop.run([&] {
    form.Show();
    form.action = [&] {
      ending.Show();
      wentOn = true;
    };
    later([&] { press(form, "cmdDo"); });
    return true;
  });
  EXPECT_EQ(code, 0);
  EXPECT_FALSE(wentOn);
}

TEST_F(WindowsTest, AFailureIsToldAndEndsTheProgram) {
  std::string told;
  const int code = desktop.run([&] {
    form.Show();
    form.action = [] { throw std::runtime_error("the disk is full"); };
    later([&] {
      later([&] {
        QWidget* box = QApplication::activeModalWidget();
        told = box->findChild<QLabel*>("text")->text().toStdString();
        box->close();
      });
      press(form, "cmdDo");
    });
    return true;
  });
  EXPECT_EQ(code, 1);
  EXPECT_NE(told.find("the disk is full"), std::string::npos);
}

TEST_F(WindowsTest, BoxesAnswerWithTheirButtonAndClosingIsTheLastOne) {
  const Box box{Box::Kind::Question, "Sure?", "", {"&Yes", "&No", "Cancel"}};
  const auto pressed = [&](int index) {
    later([index] {
      QWidget* dialog = QApplication::activeModalWidget();
      if (index < 0) return static_cast<void>(dialog->close());
      dialog->findChildren<QPushButton*>()[index]->click();
    });
    return desktop.messageBox(box);
  };
  EXPECT_EQ(pressed(0), 0);
  EXPECT_EQ(pressed(1), 1);
  EXPECT_EQ(pressed(-1), 2);
  later([] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
  EXPECT_EQ(desktop.messageBox({Box::Kind::Warning, "No server.", {}, {"&Retry", "E&xit"}, 0}), 0)
      << "unless the box says what closing means";

  later([] {
    auto* line = QApplication::activeModalWidget()->findChild<QLineEdit*>();
    QTest::keyClicks(line, "42");
    QTest::keyClick(line, Qt::Key_Return);
  });
  EXPECT_EQ(desktop.inputBox("How many?", "", "1"), "42");
  later([] { QApplication::activeModalWidget()->close(); });
  EXPECT_EQ(desktop.inputBox("How many?", "", "1"), std::nullopt);
}

TEST_F(WindowsTest, TheDefaultButtonOfABoxHasTheFocusAndAnswersEnter) {
  for (const int which : {0, 1}) {
    later([] {
      QWidget* dialog = QApplication::activeModalWidget();
      auto* focused = qobject_cast<QPushButton*>(dialog->focusWidget());
      EXPECT_TRUE(focused && focused->isDefault());
      QTest::keyClick(focused, Qt::Key_Return);
    });
    Box box{Box::Kind::Plain, "Sure?", "", {"&Yes", "&No"}};
    box.defaultButton = which;
    EXPECT_EQ(desktop.messageBox(box), which);
  }
}

TEST_F(WindowsTest, AQuestionOfYesAndNoIsAnsweredByItsButtonsOnly) {
  later([] {
    QWidget* dialog = QApplication::activeModalWidget();
    QTest::keyClick(dialog, Qt::Key_Escape);
    dialog->close();
    ASSERT_TRUE(dialog->isVisible());
    dialog->findChildren<QPushButton*>().front()->click();
  });
  EXPECT_TRUE(questionBox(desktop, "Changes will be lost! Save?"));
}

TEST_F(WindowsTest, TextsAreCopiedForOtherPrograms) {
  desktop.copyToClipboard("Zoë");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8("Zoë"));
  QGuiApplication::clipboard()->setText("5500");
  EXPECT_EQ(desktop.clipboardText(), "5500");
}

TEST_F(WindowsTest, FilesAndColoursAreChosenInADialog) {
  const auto playing = [&](auto&& play) { later([play] { play(*QApplication::activeModalWidget()); }); };
  playing([](QWidget& dialog) {
    EXPECT_EQ(static_cast<QFileDialog&>(dialog).nameFilters(),
              (QStringList{"Images (*.gif *.jpg)", "All (*)"}));
    dialog.close();
  });
  EXPECT_EQ(desktop.chooseFile("Picture", "Images (*.gif;*.jpg)|*.gif;*.jpg|All|*", ""), std::nullopt);
  playing([](QWidget& dialog) {
    EXPECT_EQ(static_cast<QColorDialog&>(dialog).currentColor(), QColor(1, 2, 3));
    static_cast<QColorDialog&>(dialog).setCurrentColor(QColor(0x10, 0x20, 0x30));
    static_cast<QColorDialog&>(dialog).accept();
  });
  EXPECT_EQ(desktop.chooseColour(0x030201), 0x302010U);
}

TEST_F(WindowsTest, AFileIsKnownByWhatItHolds) {
  const QTemporaryDir folder;
  const std::string picture = folder.filePath("picture.wav").toStdString();
  const std::string wave = folder.filePath("wave.gif").toStdString();
  ASSERT_TRUE(QImage(2, 2, QImage::Format_RGB32).save(QString::fromStdString(picture), "BMP"));
  std::ofstream(wave) << "RIFF$$$$WAVEfmt ";
  EXPECT_TRUE(desktop.canShow(picture));
  EXPECT_FALSE(desktop.canPlay(picture));
  EXPECT_TRUE(desktop.canPlay(wave));
  EXPECT_FALSE(desktop.canShow(wave));
  EXPECT_FALSE(desktop.canPlay("/no/such/file.wav"));
}

TEST_F(WindowsTest, MenusMirrorTheirEntries) {
  show(form);
  auto* bar = window(form).findChild<QMenuBar*>();
  ASSERT_NE(bar, nullptr);
  ASSERT_EQ(bar->actions().size(), 2);
  EXPECT_FALSE(bar->actions()[1]->isVisible()) << "a popup does not stand in the bar";
  auto* exit = window(form).findChild<QAction*>("mnuFileExit");
  exit->trigger();
  EXPECT_NE(form.log.find("exit "), std::string::npos);
  form.mnuFileExit.Enabled = false;
  form.mnuFile.Caption = "&Other";
  EXPECT_FALSE(exit->isEnabled());
  EXPECT_EQ(bar->actions()[0]->text(), "&Other");
}

TEST_F(WindowsTest, APopupRunsItsChoiceBeforeItReturns) {
  show(form);
  form.log.clear();
  form.mnuPopupDelete.Visible = false;
  later([&] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_FALSE(menu->actions()[1]->isVisible());
    menu->setActiveAction(menu->actions()[0]);
    QTest::keyClick(menu, Qt::Key_Return);
  });
  desktop.popupMenu(form.mnuPopup, &form.cmdDo);
  EXPECT_EQ(form.log, "edit ");
}

TEST_F(WindowsTest, BarsTellWhatWasChosen) {
  show(form);
  form.log.clear();
  QTest::mouseClick(&find<QToolButton>(form, "abSearch"), Qt::LeftButton);
  find<QToolButton>(form, "abNew").menu()->actions()[0]->trigger();
  EXPECT_EQ(form.log, "7 202 ");
  EXPECT_EQ(find<QToolButton>(form, "abSearch").focusPolicy(), Qt::TabFocus);
  form.barMain.tool(7).Enabled = false;
  EXPECT_FALSE(find<QToolButton>(form, "abSearch").isEnabled());
  EXPECT_EQ(find<QToolButton>(form, "abNew").focusPolicy(), Qt::TabFocus) << "the keys still find a tool";

  auto& bar = find<QTreeWidget>(form, "albBar");
  QTreeWidgetItem* staff = bar.topLevelItem(0)->child(1);
  QTest::mouseClick(bar.viewport(), Qt::LeftButton, {}, bar.visualItemRect(staff).center());
  EXPECT_EQ(form.log, "7 202 staff ");
}

TEST_F(WindowsTest, AFrameOfManyIsFilledWhenItIsFirstShown) {
  form.fraSecond.FillsWhenShown = true;
  show(form);
  EXPECT_EQ(window(form).findChild<QLabel*>("lblSecond"), nullptr);
  form.lblSecond.Caption = "Later";
  form.fraFirst.Visible = false;
  form.fraSecond.Visible = true;
  desktop.handleEvents();
  const QLabel& made = find<QLabel>(form, "lblSecond");
  EXPECT_EQ(made.text(), "Later");
  EXPECT_TRUE(made.isVisible());
  EXPECT_FALSE(made.geometry().isEmpty());
  form.fraSecond.Visible = false;
  form.lblSecond.Caption = "Hidden";
  form.fraSecond.Visible = true;
  desktop.handleEvents();
  EXPECT_EQ(&find<QLabel>(form, "lblSecond"), &made);
  EXPECT_EQ(made.text(), "Hidden");
}

TEST_F(WindowsTest, TheStatusBarShowsTheLastOfManyTexts) {
  show(form);
  auto& panel = find<QLabel>(form, "panel(2)");
  const auto seen = [&](int interval) {
    desktop.paintInterval = interval;
    std::set<std::string> texts;
    for (int count = 1; count <= 100; ++count) {
      form.StatusBar1.Panels(2).Text = std::to_string(count) + " record(s)";
      form.StatusBar1.Refresh();
      texts.insert(panel.text().toStdString());
    }
    return texts.size();
  };
  EXPECT_EQ(seen(0), 100U);
  desktop.paintInterval = 1;
  for (const char* text : {"first", "last"}) form.StatusBar1.Panels(2).Text = text;
  EXPECT_TRUE(waitUntil([&] { return panel.text() == "last"; }));
  EXPECT_EQ(seen(1000000), 1U) << "no more often than the eye can follow";
}

TEST_F(WindowsTest, ATextThatStandsDuringAWaitIsShownAtOnce) {
  show(form);
  auto& panel = find<QLabel>(form, "panel(2)");
  for (const char* text : {"1 record(s)", "2 record(s)", "Requesting Data From Server..."}) {
    form.StatusBar1.Panels(2).Text = text;
    form.StatusBar1.Refresh(true);
    EXPECT_EQ(panel.text(), text);
  }
}

TEST_F(WindowsTest, FramesShareTheirPlaceAndSidesCanChange) {
  show(form);
  auto& first = find<QWidget>(form, "fraFirst");
  auto& second = find<QWidget>(form, "fraSecond");
  const QPoint place = first.pos();
  form.fraFirst.Visible = false;
  form.fraSecond.Visible = true;
  desktop.handleEvents();
  EXPECT_EQ(second.pos(), place);
  auto& bar = find<QWidget>(form, "albBar");
  EXPECT_EQ(bar.mapTo(&window(form), QPoint()).x(), 0);
  form.Layout = Row{Column{form.fraFirst, form.fraSecond}, form.albBar};
  form.tell(Aspect::Structure);
  desktop.handleEvents();
  EXPECT_EQ(bar.geometry().right(), window(form).rect().right());
}

TEST_F(WindowsTest, TimersTickWhileTheirWindowIsReady) {
  show(form);
  int ticks = 0;
  form.tmrTick.Tick = [&] {
    if (++ticks == 3) form.tmrTick.Enabled = false;
  };
  form.tmrTick.Interval = 1;
  // A timer of the same interval tells how often the other one could have ticked.
  QTimer beside;
  int possible = 0;
  QObject::connect(&beside, &QTimer::timeout, [&] { ++possible; });
  beside.start(1);
  const auto pass = [&] {
    possible = 0;
    return waitUntil([&] { return possible >= 10; });
  };
  form.Enabled = false;
  form.tmrTick.Enabled = true;
  EXPECT_TRUE(pass());
  EXPECT_EQ(ticks, 0);
  form.Enabled = true;
  EXPECT_TRUE(waitUntil([&] { return ticks == 3; }));
  EXPECT_TRUE(pass());
  EXPECT_EQ(ticks, 3);
}

TEST_F(WindowsTest, NoTimerTicksIntoAnEventThatWaitsForAModalWindow) {
  show(form);
  int ticks = 0;
  form.tmrTick.Tick = [&] { ++ticks; };
  form.tmrTick.Interval = 1;
  form.tmrTick.Enabled = true;
  WorkForm modal(windows);
  QTimer beside;
  int possible = 0;
  QObject::connect(&beside, &QTimer::timeout, [&] {
    if (++possible == 10) modal.Hide();
  });
  beside.start(1);
  desktop.dispatch([&] { modal.ShowModal(); });
  EXPECT_EQ(ticks, 0);
  EXPECT_TRUE(waitUntil([&] { return ticks > 0; }));
  form.tmrTick.Enabled = false;
}

TEST_F(WindowsTest, AWindowWhoseFirstControlIsAButtonProposesItsDefault) {
  struct Decision : Form {
    explicit Decision(Windows& all) : Form(all, "frmDecision") {
      cmdCancel.Default = true;
      Layout = Row{cmdOverride, cmdCancel};
    }
    Button cmdOverride{*this, "cmdOverride", "&Override"};
    Button cmdCancel{*this, "cmdCancel", "Cancel"};
  } decision(windows);
  std::string pressed;
  decision.cmdOverride.Click = [&] { pressed += "override "; };
  decision.cmdCancel.Click = [&] { pressed += "cancel "; };
  show(decision);
  auto& override = find<QPushButton>(decision, "cmdOverride");
  auto& cancel = find<QPushButton>(decision, "cmdCancel");
  EXPECT_TRUE(cancel.hasFocus());
  QTest::keyClick(&cancel, Qt::Key_Return);
  EXPECT_TRUE(waitUntil([&] { return pressed == "cancel "; })) << pressed;
  override.setFocus();
  EXPECT_TRUE(override.isDefault() && !cancel.isDefault()) << "the focused one looks like what Enter presses";
  QTest::keyClick(&override, Qt::Key_Return);
  EXPECT_TRUE(waitUntil([&] { return pressed == "cancel override "; })) << pressed;
}

TEST_F(WindowsTest, AWindowKeepsItsSizeWhenAPageIsShownBeforeTheOtherIsHidden) {
  struct Pages : Form {
    explicit Pages(Windows& all) : Form(all, "frmPages") {
      for (int page = 0; page < 2; ++page) {
        Frame& frame = frames.add(*this, "");
        LayoutNode lines = Column{};
        for (int line = 0; line < 12; ++line) lines.children.emplace_back(texts.add(frame));
        frame.Layout = lines;
      }
      frames(1).Visible = false;
      Layout = Column{frames(0), frames(1)};
    }
    ControlArray<Frame> frames{"fraPage"};
    ControlArray<TextBox> texts{"txtLine"};
  } pages(windows);
  show(pages);
  const QSize before = window(pages).size();
  for (const int page : {1, 0, 1}) {
    pages.frames(page).Visible = true;
    pages.frames(1 - page).Visible = false;
    desktop.handleEvents();
    EXPECT_EQ(window(pages).size(), before);
  }
}

TEST_F(WindowsTest, WindowsOfOneKindDoNotOpenExactlyOnEachOther) {
  std::deque<WorkForm> opened;
  std::set<std::pair<int, int>> places;
  for (std::size_t count = 1; count <= 5; ++count) {
    show(opened.emplace_back(windows));
    const QWidget& last = window(opened.back());
    EXPECT_TRUE(QRect(0, 0, 1366, 768).contains(last.frameGeometry()));
    places.emplace(last.x(), last.y());
    EXPECT_EQ(places.size(), count) << "at " << last.x() << ' ' << last.y();
  }
}

TEST_F(WindowsTest, AWindowThatTheWindowManagerRestoresReturnsIntoTheScreen) {
  show(form);
  QWidget& shown = window(form);
  shown.showMinimized();
  shown.move(1300, 700);
  shown.showNormal();
  EXPECT_TRUE(waitUntil([&] { return QRect(0, 0, 1366, 768).contains(shown.frameGeometry()); }));
}

TEST_F(WindowsTest, AWindowLeftOffTheScreenReturnsIntoIt) {
  const QRect screen(0, 0, 1366, 768);
  for (const QPoint place : {QPoint(-1200, 300), QPoint(1300, 700), QPoint(100, 5000)}) {
    const QTemporaryDir folder;
    QtDesktop keeping(folder.filePath("windows.ini").toStdString());
    Windows all(keeping);
    {
      WorkForm first(all);
      first.Show();
      keeping.windowOf(first)->setGeometry(QRect(place, QSize(1300, 740)));
      first.Unload();
    }
    WorkForm second(all);
    second.Show();
    const QRect shown = keeping.windowOf(second)->frameGeometry();
    EXPECT_TRUE(screen.contains(shown))
        << shown.x() << ' ' << shown.y() << ' ' << shown.width() << ' ' << shown.height();
  }
}

TEST_F(WindowsTest, SizesAreRememberedByTheName) {
  const QTemporaryDir folder;
  QtDesktop keeping(folder.filePath("windows.ini").toStdString());
  Windows all(keeping);
  {
    WorkForm first(all);
    first.Show();
    keeping.windowOf(first)->resize(700, 500);
    first.Unload();
  }
  WorkForm second(all);
  second.Show();
  EXPECT_EQ(keeping.windowOf(second)->size(), QSize(700, 500));
}

TEST_F(WindowsTest, SizesAreRememberedWhenTheProgramEndsFromAWindow) {
  const QTemporaryDir folder;
  const std::string file = folder.filePath("windows.ini").toStdString();
  {
    QtDesktop ending(file);
    Windows all(ending);
    WorkForm first(all);
    first.action = [&] { ending.endProgram(); };
    ending.run([&] {
      first.Show();
      ending.windowOf(first)->resize(710, 510);
      QTimer::singleShot(0, &ending,
                         [&] { ending.windowOf(first)->findChild<QPushButton*>("cmdDo")->click(); });
      return true;
    });
  }
  QtDesktop keeping(file);
  Windows all(keeping);
  WorkForm second(all);
  second.Show();
  EXPECT_EQ(keeping.windowOf(second)->size(), QSize(710, 510));
}

}  // namespace
}  // namespace vantry::test

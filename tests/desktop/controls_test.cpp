#include <QAbstractScrollArea>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>

#include "desktop/desktop_test.h"
#include "platform/controls.h"
#include "platform/fields.h"
#include "platform/tree.h"

namespace vantry::test {
namespace {

class ControlsForm : public Form {
 public:
  explicit ControlsForm(Windows& all) : Form(all, "frmControls") {
    txtNote.MultiLine = true;
    txtNote.MaxLength = 5;
    cmdOK.Default = true;
    cmdCancel.Cancel = true;
    lblField.ReadOnlyField = true;
    tvwMany.MultiSelect = true;
    lblHeading.Heading = true;
    Layout = Column{Fields{lblName, txtName, lblKind, cboKind, lblDay, Row{dtDay, tmDay}},
                    txtNote,
                    Row{optFirst, optSecond, chkPrint},
                    lstItems,
                    Row{tvwItems, tvwMany},
                    lblField,
                    lblPlain,
                    lblHeading,
                    Row{Stretch{}, cmdOK, cmdCancel}};
  }
  Label lblName{*this, "lblName", "&Name:"};
  TextBox txtName{*this, "txtName"};
  Label lblKind{*this, "lblKind", "&Kind:"};
  ComboBox cboKind{*this, "cboKind"};
  Label lblDay{*this, "lblDay", "&Day:"};
  DateField dtDay{*this, "dtDay"};
  TimeField tmDay{*this, "tmDay"};
  TextBox txtNote{*this, "txtNote"};
  OptionButton optFirst{*this, "optFirst", "&First"};
  OptionButton optSecond{*this, "optSecond", "&Second"};
  CheckBox chkPrint{*this, "chkPrint", "&Print"};
  ListBox lstItems{*this, "lstItems"};
  Tree tvwItems{*this, "tvwItems"};
  Tree tvwMany{*this, "tvwMany"};
  Label lblField{*this, "lblField"};
  Label lblPlain{*this, "lblPlain"};
  Label lblHeading{*this, "lblHeading"};
  DateField dtHidden{*this, "dtHidden"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "Cancel"};
};

class ControlsTest : public DesktopTest {
 protected:
  ControlsForm form{windows};
  void SetUp() override { show(form); }
  void type(const char* name, const char* keys) {
    auto& widget = find<QWidget>(form, name);
    widget.setFocus();
    QTest::keyClicks(&widget, keys);
  }
};

TEST_F(ControlsTest, TextGoesBothWaysAndRaisesOneChange) {
  int changes = 0;
  form.txtName.Change = [&] { ++changes; };
  type("txtName", "Max");
  EXPECT_EQ(form.txtName.Text.get(), "Max");
  const int typed = changes;
  form.txtName.Text = "München";
  EXPECT_EQ(find<QLineEdit>(form, "txtName").text(), QString::fromUtf8("München"));
  EXPECT_EQ(changes, typed + 1);
}

TEST_F(ControlsTest, ATextBoxTellsItsSelectionKeysAndDoubleClicks) {
  std::string keys;
  int doubles = 0;
  for (TextBox* box : {&form.txtName, &form.txtNote}) {
    SCOPED_TRACE(box->Name());
    box->Text = "Zoë K";
    box->KeyDown = [&](std::string_view key) {
      keys += std::string(key) + ' ';
      return key == "Ctrl+C";
    };
    box->DblClick = [&] { ++doubles; };
    auto& widget = find<QWidget>(form, box->Name().c_str());
    widget.setFocus();
    QTest::keyClick(&widget, Qt::Key_Home);
    QTest::keyClick(&widget, Qt::Key_End, Qt::ShiftModifier);
    EXPECT_EQ(box->SelText(), "Zoë K");
    keys.clear();
    QGuiApplication::clipboard()->setText("before");
    QTest::keyClick(&widget, Qt::Key_C, Qt::ControlModifier);
    QTest::keyClick(&widget, Qt::Key_F4);
    EXPECT_EQ(keys, "Ctrl+C F4 ");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "before") << "a key that is answered does no more";
    auto* area = qobject_cast<QAbstractScrollArea*>(&widget);
    QTest::mouseDClick(area ? area->viewport() : &widget, Qt::LeftButton);
    box->SelText("Max");
    box->Select(1, 1);
  }
  EXPECT_EQ(doubles, 2);
  const QTextCursor cursor = find<QPlainTextEdit>(form, "txtNote").textCursor();
  EXPECT_EQ(cursor.selectedText(), "a");
  form.txtName.SetFocus();
  form.txtName.Select(2, 1);
  EXPECT_TRUE(waitUntil([&] { return find<QLineEdit>(form, "txtName").selectedText() == "x"; }));
}

TEST_F(ControlsTest, ALockedListShowsItsEntryAndKeepsIt) {
  for (const char* text : {"one", "two"}) form.cboKind.AddItem(text);
  form.cboKind.ListIndex = 0;
  form.cboKind.Locked = true;
  desktop.handleEvents();
  auto& combo = find<QComboBox>(form, "cboKind");
  combo.setFocus();
  QTest::keyClick(&combo, Qt::Key_Down);
  QTest::mouseClick(&combo, Qt::LeftButton);
  EXPECT_EQ(combo.currentText(), "one");
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(ControlsTest, LongTextStopsAtItsLimit) {
  type("txtNote", "1234567");
  EXPECT_EQ(form.txtNote.Text.get(), "12345");
  EXPECT_EQ(find<QPlainTextEdit>(form, "txtNote").toPlainText(), "12345");
}

TEST_F(ControlsTest, ButtonsPressAndEnterAndEscapeFindTheirs) {
  std::string pressed;
  form.cmdOK.Click = [&] { pressed += "ok "; };
  form.cmdCancel.Click = [&] { pressed += "cancel "; };
  QTest::mouseClick(&find<QPushButton>(form, "cmdOK"), Qt::LeftButton);
  auto& line = find<QLineEdit>(form, "txtName");
  line.setFocus();
  QTest::keyClick(&line, Qt::Key_Return);
  EXPECT_TRUE(waitUntil([&] { return pressed == "ok ok "; })) << pressed;
  QTest::keyClick(&line, Qt::Key_Escape);
  EXPECT_TRUE(waitUntil([&] { return pressed == "ok ok cancel "; })) << pressed;
  form.cmdOK.Enabled = false;
  EXPECT_FALSE(find<QPushButton>(form, "cmdOK").isEnabled());
}

TEST_F(ControlsTest, BoxesAndOptionsFollowTheirValues) {
  int clicks = 0;
  form.chkPrint.Click = [&] { ++clicks; };
  QTest::mouseClick(&find<QCheckBox>(form, "chkPrint"), Qt::LeftButton, {}, QPoint(8, 12));
  EXPECT_TRUE(form.chkPrint.Value.get());
  EXPECT_TRUE(find<QCheckBox>(form, "chkPrint").isChecked());
  EXPECT_EQ(clicks, 1);

  form.optFirst.Value = true;
  EXPECT_TRUE(find<QRadioButton>(form, "optFirst").isChecked());
  QTest::mouseClick(&find<QRadioButton>(form, "optSecond"), Qt::LeftButton, {}, QPoint(8, 12));
  EXPECT_TRUE(form.optSecond.Value.get());
  EXPECT_FALSE(form.optFirst.Value.get());
  EXPECT_FALSE(find<QRadioButton>(form, "optFirst").isChecked());
  form.optSecond.Value = false;
  EXPECT_FALSE(find<QRadioButton>(form, "optSecond").isChecked());
}

TEST_F(ControlsTest, ListsShowTheirEntriesAndTellTheChoice) {
  for (const char* text : {"one", "two", "three"}) form.cboKind.AddItem(text);
  for (const char* text : {"one", "two"}) form.lstItems.AddItem(text);
  form.cboKind.ListIndex = 1;
  desktop.handleEvents();
  auto& combo = find<QComboBox>(form, "cboKind");
  EXPECT_EQ(combo.count(), 3);
  EXPECT_EQ(combo.currentText(), "two");

  int clicks = 0;
  form.cboKind.Click = [&] { ++clicks; };
  combo.setFocus();
  QTest::keyClick(&combo, Qt::Key_Down);
  EXPECT_EQ(form.cboKind.Text(), "three");
  EXPECT_EQ(clicks, 1);

  auto& list = find<QListView>(form, "lstItems");
  int doubles = 0;
  form.lstItems.DblClick = [&] { ++doubles; };
  const QPoint second = list.visualRect(list.model()->index(1, 0)).center();
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, second);
  EXPECT_EQ(form.lstItems.ListIndex.get(), 1);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, second);
  EXPECT_EQ(doubles, 1);
  form.cboKind.Clear();
  desktop.handleEvents();
  EXPECT_EQ(combo.count(), 0);
}

TEST_F(ControlsTest, ATypedDateCountsOnceItIsWholeOrLeft) {
  int changes = 0;
  form.dtDay.Change = [&] { ++changes; };
  type("dtDay", "2026-11-2");
  EXPECT_TRUE(form.dtDay.isEmpty());
  type("dtDay", "4");
  EXPECT_EQ(form.dtDay.Value.get(), (Date{2026, 11, 24}));
  EXPECT_EQ(changes, 1);

  auto& line = find<QLineEdit>(form, "dtDay");
  QTest::keyClick(&line, Qt::Key_Down);
  EXPECT_EQ(line.text(), "2026-11-23");
  QTest::keyClick(&line, Qt::Key_PageUp);
  EXPECT_EQ(form.dtDay.shortDate(), "2026-12-23");

  // What is no date gives way to the date before it; nothing is no date.
  line.selectAll();
  type("dtDay", "soon");
  find<QLineEdit>(form, "txtName").setFocus();
  EXPECT_EQ(line.text(), "2026-12-23");
  line.setFocus();
  line.selectAll();
  QTest::keyClick(&line, Qt::Key_Delete);
  find<QLineEdit>(form, "txtName").setFocus();
  EXPECT_TRUE(form.dtDay.isEmpty());
}

TEST_F(ControlsTest, EnterThatAFieldAnswersPressesNoButton) {
  int presses = 0;
  form.cmdOK.Click = form.cmdCancel.Click = [&] { ++presses; };
  form.dtDay.Enter = [&] { form.cmdCancel.SetFocus(); };
  form.txtName.Enter = [&] { form.dtDay.SetFocus(); };
  auto& name = find<QLineEdit>(form, "txtName");
  auto& day = find<QLineEdit>(form, "dtDay");
  name.setFocus();
  QTest::keyClick(&name, Qt::Key_Return);
  EXPECT_TRUE(day.hasFocus());
  type("dtDay", "2026-11-2");
  QTest::keyClick(&day, Qt::Key_Return);
  EXPECT_TRUE(find<QPushButton>(form, "cmdCancel").hasFocus());
  EXPECT_EQ(form.dtDay.Value.get(), (Date{2026, 11, 2})) << "what was typed counts by then";
  QTest::qWait(200);  // a button that is pressed by a key takes its time
  EXPECT_EQ(presses, 0);

  form.dtDay.Enter = nullptr;
  day.setFocus();
  QTest::keyClick(&day, Qt::Key_Return);
  EXPECT_TRUE(waitUntil([&] { return presses == 1; })) << "a field without an answer leaves it to the button";
}

TEST_F(ControlsTest, AWindowMayGoOverTheValueThatAKeyEnds) {
  for (const auto key : {Qt::Key_Down, Qt::Key_F4, Qt::Key_Return}) {
    SCOPED_TRACE(key);
    ControlsForm other(windows);
    show(other);
    int enters = 0;
    other.dtDay.Change = [&] { other.Unload(); };
    other.dtDay.Enter = [&] { ++enters; };
    auto& line = find<QLineEdit>(other, "dtDay");
    line.setFocus();
    QTest::keyClicks(&line, "2026-11-2");
    EXPECT_TRUE(other.isLoaded()) << "not whole yet";
    QTest::keyClick(&line, key);
    EXPECT_FALSE(other.isLoaded());
    EXPECT_EQ(other.dtDay.Value.get(), (Date{2026, 11, 2})) << "and the key does no more";
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(enters, 0);
  }
}

TEST_F(ControlsTest, ADateIsChosenInItsCalendar) {
  form.dtDay.Value = Date{2026, 11, 24};
  auto& line = find<QLineEdit>(form, "dtDay");
  QTest::keyClick(&line, Qt::Key_F4);
  QWidget* popup = QApplication::activePopupWidget();
  ASSERT_NE(popup, nullptr);
  QWidget* calendar = QApplication::focusWidget();
  for (const auto key : {Qt::Key_PageDown, Qt::Key_Right}) QTest::keyClick(calendar, key);
  EXPECT_EQ(form.dtDay.shortDate(), "2026-11-24") << "moving about chooses nothing";
  QTest::keyClick(calendar, Qt::Key_Return);
  EXPECT_EQ(form.dtDay.shortDate(), "2026-12-25");
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(ControlsTest, AButtonFindsTheValueThatIsStillBeingTyped) {
  std::optional<Time> seen;
  form.cmdOK.Click = [&] { seen = form.tmDay.Value; };
  type("tmDay", "9:5");
  // By its mnemonic, the focus stays in the field.
  find<QPushButton>(form, "cmdOK").click();
  EXPECT_EQ(seen, (Time{9, 5, 0}));
  EXPECT_EQ(find<QLineEdit>(form, "tmDay").text(), "09:05");
}

TEST_F(ControlsTest, ATreeOpensAndSelectsByKeys) {
  ASSERT_TRUE(form.tvwItems.Add("", "a", "Projectors"));
  ASSERT_TRUE(form.tvwItems.Add("a", "a1", "Digital"));
  ASSERT_TRUE(form.tvwItems.Add("", "b", "Screens"));
  desktop.handleEvents();
  auto& tree = find<QTreeWidget>(form, "tvwItems");
  ASSERT_EQ(tree.topLevelItemCount(), 2);
  std::string expanded;
  form.tvwItems.Expand = [&] {
    expanded += "a ";
    ASSERT_TRUE(form.tvwItems.Add("a", "a2", "Slides"));  // entries may come when they are asked for
  };
  tree.topLevelItem(0)->setExpanded(true);
  desktop.handleEvents();
  EXPECT_EQ(expanded, "a ");
  ASSERT_EQ(tree.topLevelItem(0)->childCount(), 2);
  EXPECT_TRUE(tree.topLevelItem(0)->isExpanded());

  const QRect place = tree.visualItemRect(tree.topLevelItem(0)->child(1));
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, place.center());
  EXPECT_EQ(form.tvwItems.SelectedKey.get(), "a2");
  form.tvwItems.SelectedKey = "b";
  desktop.handleEvents();
  EXPECT_EQ(tree.currentItem(), tree.topLevelItem(1));
}

TEST_F(ControlsTest, ABoxOfATreeShowsWhatTheWindowMakesOfATick) {
  Tree& model = form.tvwItems;
  model.Headings = {"Type", "Status"};
  model.TickedImage = 1;
  model.UntickedImage = 5;
  model.Add("", "a", "DVD", 5)->expanded = true;
  ASSERT_TRUE(model.Add("a", "a1", "Player", 5));
  desktop.handleEvents();
  auto& tree = find<QTreeWidget>(form, "tvwItems");
  EXPECT_FALSE(tree.isHeaderHidden());
  EXPECT_EQ(tree.headerItem()->text(1), "Status");
  EXPECT_FALSE(tree.topLevelItem(0)->flags() & Qt::ItemIsUserCheckable) << "it follows what is below it";
  const auto child = [&] { return tree.topLevelItem(0)->child(0); };
  const auto tick = [&] {
    tree.setFocus();
    tree.setCurrentItem(child());
    QTest::keyClick(&tree, Qt::Key_Space);
    desktop.handleEvents();
    return child()->checkState(0);
  };
  int asked = 0;
  model.Check = [&] { ++asked; };
  EXPECT_EQ(tick(), Qt::Unchecked) << "the window refused";
  model.Check = [&] {
    ++asked;
    model.find("a1")->image = 1;
    model.changed();
  };
  EXPECT_EQ(tick(), Qt::Checked);
  EXPECT_EQ(asked, 2);
}

TEST_F(ControlsTest, ATreeOfManyTellsTheOrderOfSelecting) {
  for (const char* key : {"a", "b", "c"}) ASSERT_TRUE(form.tvwMany.Add("", key, key));
  desktop.handleEvents();
  auto& tree = find<QTreeWidget>(form, "tvwMany");
  EXPECT_TRUE(tree.isHeaderHidden());
  const auto click = [&](int row, Qt::KeyboardModifiers keys) {
    const QRect place = tree.visualItemRect(tree.topLevelItem(row));
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, keys, place.center());
    desktop.handleEvents();
  };
  click(2, {});
  click(0, Qt::ControlModifier);
  EXPECT_EQ(form.tvwMany.SelectedKeys(), (std::vector<std::string>{"c", "a"}));
  EXPECT_EQ(tree.selectedItems().size(), 2);
  click(1, {});
  EXPECT_EQ(form.tvwMany.SelectedKeys(), std::vector<std::string>{"b"});
}

TEST_F(ControlsTest, FocusMovesRaiseOneEvent) {
  std::string focused;
  form.txtName.GotFocus = [&] { focused += "name "; };
  form.cboKind.GotFocus = [&] { focused += "kind "; };
  find<QWidget>(form, "cboKind").setFocus();
  form.txtName.SetFocus();
  EXPECT_EQ(focused, "kind name ");
  EXPECT_EQ(form.ActiveControl(), &form.txtName);
  EXPECT_TRUE(find<QWidget>(form, "txtName").hasFocus());
}

TEST_F(ControlsTest, LabelsNameTheirFieldsAndShowDataToTheLetter) {
  auto& label = find<QLabel>(form, "lblName");
  EXPECT_EQ(label.buddy(), &find<QWidget>(form, "txtName"));
  EXPECT_EQ(find<QWidget>(form, "txtName").accessibleName(), "Name");
  EXPECT_EQ(find<QWidget>(form, "dtDay").accessibleName(), "Day");
  form.lblField.Caption = "Salt & Pepper <b>";
  form.lblPlain.Caption = "&Staff && more";
  EXPECT_EQ(find<QLabel>(form, "lblField").text(), "Salt & Pepper <b>");
  EXPECT_EQ(find<QLabel>(form, "lblPlain").text(), "Staff & more");
  form.lblPlain.Literal = true;
  form.lblPlain.Caption = "Audio &Video";
  EXPECT_EQ(find<QLabel>(form, "lblPlain").text(), "Audio &Video") << "a sentence with a name in it";
  form.lblHeading.Caption = "Conflict Resolution && Warning";
  EXPECT_EQ(find<QLabel>(form, "lblHeading").text(), "Conflict Resolution & Warning");
  form.lblHeading.Caption = "Salt &Pepper";
  EXPECT_EQ(find<QLabel>(form, "lblHeading").text(), "Salt &Pepper");
  EXPECT_EQ(window(form).findChild<QWidget*>("dtHidden"), nullptr) << "what no layout places is not shown";
}

}  // namespace
}  // namespace vantry::test

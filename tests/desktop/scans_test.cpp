// The barcode reader, which types as a keyboard does.
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

#include "desktop/desktop_test.h"
#include "platform/controls.h"

namespace vantry::test {
namespace {

class DeskForm : public Form {
 public:
  explicit DeskForm(Windows& all, std::string name = "frmDesk") : Form(all, std::move(name)) {
    cmdOK.Default = true;
    cmdOK.Click = [this] { log += "ok "; };
    txtBarcode.Enter = [this] { log += "barcode " + txtBarcode.Text.get() + ' '; };
    for (const char* text : {"4", "5", "6"}) cboKind.AddItem(text);
    cboKind.ListIndex = 0;
    Layout = Column{txtName, cboKind, txtBarcode, cmdOK};
  }
  TextBox txtName{*this, "txtName"};
  ComboBox cboKind{*this, "cboKind"};
  TextBox txtBarcode{*this, "txtBarcode"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  std::string log;
};

class Scans : public DesktopTest {
 protected:
  DeskForm form{windows};
  void SetUp() override {
    form.txtBarcode.TakesScans = true;
    show(form);
  }
  bool logs(const std::string& wanted) {
    const bool did = waitUntil([&] { return form.log == wanted; });
    EXPECT_EQ(form.log, wanted);
    form.log.clear();
    return did;
  }
};

TEST_F(Scans, AScanGoesToItsFieldWhereverTheFocusIs) {
  for (const char* focused : {"cmdOK", "cboKind", "txtName", "txtBarcode"}) {
    SCOPED_TRACE(focused);
    form.txtBarcode.Text = "";
    find<QWidget>(form, focused).setFocus();
    wand("5500");
    EXPECT_TRUE(logs("barcode 5500 "));
    EXPECT_EQ(form.txtName.Text, "") << "and leaves no trace";
    EXPECT_EQ(form.cboKind.ListIndex, 0);
  }
}

TEST_F(Scans, WhatIsTypedByHandIsNoScan) {
  find<QWidget>(form, "txtName").setFocus();
  hand("max");
  EXPECT_TRUE(logs("ok "));
  EXPECT_EQ(form.txtName.Text, "max");
  find<QWidget>(form, "cboKind").setFocus();
  hand("5");
  EXPECT_TRUE(logs("ok "));
  EXPECT_EQ(form.cboKind.Text(), "5");
  find<QWidget>(form, "cmdOK").setFocus();
  wand("55");
  EXPECT_TRUE(logs("ok ")) << "two keys may be struck at once";
}

TEST_F(Scans, ASecondEnterBelongsToTheScan) {
  find<QWidget>(form, "cmdOK").setFocus();
  wand("5500\r");
  EXPECT_TRUE(logs("barcode 5500 "));
  hand("");
  EXPECT_TRUE(logs("ok ")) << "a later one is the operator's";
}

TEST_F(Scans, AWindowTakesScansByItself) {
  form.ScanReceived = [this](std::string_view text) { form.log += "window " + std::string(text) + ' '; };
  find<QWidget>(form, "txtBarcode").setFocus();
  wand("A 17");
  EXPECT_TRUE(logs("window A 17 "));
  EXPECT_EQ(form.txtBarcode.Text, "");
}

TEST_F(Scans, AScanIntoAnotherFieldPressesNoButton) {
  form.txtBarcode.TakesScans = false;
  find<QWidget>(form, "txtName").setFocus();
  wand("5500");
  find<QWidget>(form, "txtBarcode").setFocus();
  wand("5501");
  EXPECT_TRUE(logs("barcode 5501 "));
  EXPECT_EQ(form.txtName.Text, "5500") << "it is text there";
}

TEST_F(Scans, ABoxIsNotAnsweredAndTheScansAreKeptInOrder) {
  find<QWidget>(form, "txtBarcode").setFocus();
  later([this] {
    QWidget* box = QApplication::activeModalWidget();
    activate(*box);
    wand("5500");
    wand("5501");
    EXPECT_TRUE(box->isVisible());
    EXPECT_EQ(form.log, "");
    hand("");
  });
  desktop.dispatch([&] { informationBox(desktop, "Unable to find booking information."); });
  EXPECT_TRUE(logs("barcode 5500 barcode 5501 "));
}

TEST_F(Scans, ScansOfABusyWindowAreKeptInOrder) {
  form.Enabled = false;
  wand("5500");
  hand("77");
  wand("5501");
  desktop.handleEvents();
  EXPECT_EQ(form.log, "");
  form.Enabled = true;
  EXPECT_TRUE(logs("barcode 5500 barcode 5501 ")) << "but not what was typed";
}

TEST_F(Scans, AModalWindowWithoutAPlaceLeavesTheScanToTheOneBelow) {
  DeskForm dialog(windows, "frmDialog");
  later([&] {
    activate(window(dialog));
    find<QWidget>(dialog, "cmdOK").setFocus();
    wand("5500");
    desktop.handleEvents();
    EXPECT_EQ(dialog.log + form.log, "");
    dialog.Hide();
  });
  desktop.dispatch([&] { dialog.ShowModal(); });
  activate(window(form));
  EXPECT_TRUE(logs("barcode 5500 "));
}

TEST_F(Scans, AnInputBoxIsAnsweredByAScan) {
  later([this] {
    activate(*QApplication::activeModalWidget());
    wand("5500");
  });
  EXPECT_EQ(desktop.inputBox("Enter an Equipment Barcode.", "", ""), "5500");
}

}  // namespace
}  // namespace vantry::test

#include "records/record_fields.h"

#include <map>

#include "platform/controls.h"
#include "platform/fields.h"
#include "platform/number_fields.h"
#include "records/required_fields.h"
#include "support/scripted_desktop.h"

namespace vantry::test {
namespace {

struct Window : Form {
  explicit Window(Windows& windows) : Form(windows, "frmTest") {
    cboLocation.AddItem("Main", "3");
    cboLocation.AddItem("Branch", "4");
    Load();
  }
  TextBox txtNumber{*this, "txtNumber"};
  ComboBox cboLocation{*this, "cboLocation"};
  CheckBox chkStorage{*this, "chkStorage", "Storage Room:"};
  DateField dtBought{*this, "dtBought"};
  NumberField txtCapacity{*this, "txtCapacity", 0, 99999};
  CurrencyField txtValue{*this, "txtValue", 0, 9000};
  TextBox txtStatus{*this, "txtStatus"};
};

struct RecordFieldsTest : testing::Test {
  ScriptedDesktop desktop;
  Windows windows{desktop};
  Window window{windows};
  RecordFields fields{{{window.txtNumber, "RNO", FieldUse::Edited, "Number", "Enter a number."},
                       {window.cboLocation, "LOC", FieldUse::Edited, "", "", Right::RMUPD},
                       {window.chkStorage, "RST"},
                       {window.dtBought, "EDP"},
                       {window.txtCapacity, "RCA"},
                       {window.txtValue, "EQVP"},
                       {window.txtStatus, "STY", FieldUse::Shown}}};

  void load(std::map<std::string, std::string, std::less<>> values) {
    fields.load([&](std::string_view tag) {
      const auto found = values.find(tag);
      return found == values.end() ? std::string() : found->second;
    });
  }
  std::string saved() {
    std::string text;
    fields.save([&](std::string_view tag, const std::string& value) {
      text += (text.empty() ? "" : " ") + std::string(tag) + "=" + value;
    });
    return text;
  }
};

TEST_F(RecordFieldsTest, WhatIsReadIsSavedInTheOrderOfTheTable) {
  load({{"RNO", "12"},
        {"LOC", "4"},
        {"RST", "Y"},
        {"EDP", "2026-11-24 00:00:00"},
        {"RCA", "30"},
        {"EQVP", "12.50"},
        {"STY", "Available"}});
  EXPECT_EQ(window.cboLocation.Text(), "Branch");
  EXPECT_EQ(window.txtStatus.Text, "Available");
  EXPECT_EQ(saved(), "RNO=12 LOC=4 RST=Y EDP=2026-11-24 RCA=30 EQVP=12.50") << "the status is only shown";
  load({});
  EXPECT_EQ(saved(), "RNO= LOC= RST=N EDP= RCA= EQVP=");
}

TEST_F(RecordFieldsTest, AChangeIsToldBehindWhatTheWindowDoesWithIt) {
  std::string told;
  window.cboLocation.Click = [&] { told += "rooms "; };
  fields.tellChanges([&] { told += "dirty "; });
  window.cboLocation.select(0);
  window.txtNumber.type("13");
  window.txtStatus.Text = "Lost";
  EXPECT_EQ(told, "rooms dirty dirty ");
}

TEST_F(RecordFieldsTest, WhatMayNotBeEditedIsLocked) {
  EXPECT_TRUE(window.txtStatus.Locked);
  fields.secure(Rights());
  EXPECT_FALSE(window.cboLocation.Enabled);
  EXPECT_FALSE(window.txtNumber.Locked);
  fields.lock();
  EXPECT_TRUE(window.txtNumber.Locked && window.txtCapacity.Locked && window.txtValue.Locked);
  EXPECT_FALSE(window.dtBought.Enabled || window.chkStorage.Enabled);
}

TEST_F(RecordFieldsTest, TipsComeAndGo) {
  fields.showTips(true);
  EXPECT_EQ(window.txtNumber.ToolTipText, "Enter a number.");
  fields.showTips(false);
  EXPECT_EQ(window.txtNumber.ToolTipText, "");
}

}  // namespace
}  // namespace vantry::test

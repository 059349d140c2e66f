#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "circulation/charge_view.h"
#include "circulation/discharge_view.h"
#include "circulation/frmDischarge.h"
#include "circulation/frmPopupNote.h"
#include "circulation/quick_discharge_view.h"
#include "messaging/frmError.h"
#include "support/desk.h"

namespace vantry::test {

/// The desk with the views of circulation at hand.
struct CirculationTest : Desk {
  ChargeView& charge() { return viewAs<ChargeView>(main(), ViewId::Charge); }
  DischargeView& discharge() { return viewAs<DischargeView>(main(), ViewId::Discharge); }
  QuickDischargeView& quick() { return viewAs<QuickDischargeView>(main(), ViewId::QuickDischarge); }
  std::string panel() { return main().StatusBar1.Panels(2).Text; }
  bool focused(const Control& control) { return main().ActiveControl() == &control; }

  std::vector<std::string> edited;  ///< bookings whose editor was asked for

  void open(ViewId view) {
    start();
    app->makers.addRecord(kBooking, [this](App& program) {
      edited.push_back(program.slots.opening.id);
      return nullptr;
    });
    main().showView(view);
  }
  static std::string cell(const Grid& grid, int row, int data) {
    return grid.TextMatrix(row, grid.columnOfData(data));
  }
  static std::vector<std::string> ids(const Grid& grid) {
    std::vector<std::string> texts;
    for (int row = 1; row < grid.Rows; ++row) texts.push_back(cell(grid, row, 0));
    return texts;
  }
  /// "Media: a, b; Equipment: c"
  static std::string linesOf(const Tree& tree) {
    std::string text;
    for (const TreeNode* root : tree.Roots()) {
      text += (text.empty() ? "" : "; ") + root->text + ":";
      for (const TreeNode* node : root->children) text += " [" + node->key + "] " + node->text;
    }
    return text;
  }
  /// The details are asked for, and have nothing.
  void expectDetails(const std::string& bookingId, std::string_view media = {},
                     std::string_view equipment = {}) {
    server.expect("GETSITM", "BOOKID=" + bookingId + " SC=Y").replies(media);
    server.expect("GETSEQ", "BOOKID=" + bookingId + " SC=Y").replies(equipment);
  }
  /// The server fails for reasons of its own, and the window of errors tells where.
  void expectReport(std::string form, std::string module) {
    desktop.expectModalWindow<frmError>("frmError", [=](frmError& window) {
      EXPECT_EQ(window.lblFormNameText.Caption, form);
      EXPECT_EQ(window.lblModuleText.Caption, module);
      window.cmdOKCompress.press();
    });
  }
  void expectNotes(std::string caption, std::string text) {
    desktop.expectModalWindow<frmPopupNote>("frmPopupNote", [=](frmPopupNote& window) {
      EXPECT_EQ(window.Caption, caption);
      EXPECT_EQ(window.txtPopupNote.Text, text);
      window.cmdOK.press();
    });
  }
};

}  // namespace vantry::test

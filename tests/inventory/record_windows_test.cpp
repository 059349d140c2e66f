// What the record windows of the inventory share by preference and right.
#include "inventory/frmEquipment.h"
#include "inventory/frmGroup.h"
#include "inventory/frmMaintenance.h"
#include "inventory/frmRoom.h"
#include "inventory/record_fixture.h"
#include "platform/find_control.h"

namespace vantry::test {
namespace {

struct RecordWindows : RecordFixture {
  void start(const std::string& rights = allRightsBut()) {
    RecordFixture::start(rights);
    for (const char* code : {"GETARLOC", "ADDREQP", "GETEGSTY"}) server.always(code);
  }
  template <class Window>
  Window& openNew(int kind) {
    return dynamic_cast<Window&>(*OpenRecordWindow(*app, {kind, "", kSourceEquipment}));
  }
  /// Whether all lists of the window that hold records merge equal cells.
  static bool merges(const Form& form) {
    return !findIn(form, [](const Control& control) {
      return control.kind() == ControlKind::Grid &&
             static_cast<const Grid&>(control).MergeCells != MergeMode::Free;
    });
  }
};

TEST_F(RecordWindows, TipsAndMergedCellsArePreferencesAndEachWindowCanMergeByItself) {
  const std::pair<int, std::vector<const char*>> rows[] = {
      {kEquipment,
       {"cboEQUIP_TYPE", "txtBARCODE_NO", "txtEQUIP_VALUER", "txtGroup", "txtTEMP_ROOM_NAME",
        "cmdSaveDetails"}},
      {kGroup, {"txtEQUIP_NO", "txtEQUIP_VALUER", "cboLOC_NAME"}},
      {kRoom, {"txtROOM_NO", "txtROOM_CAPACITY", "cmdRemoveFromRoom"}},
      {kMaintenance, {}}};
  for (const bool on : {true, false}) {
    settings.prefer("ToolTips", on ? "true" : "false");
    settings.prefer("MergeCells", on ? "true" : "false");
    start();
    app->lookUp.LookupRows.assign(1, LookUpRow{});
    for (const auto& [kind, fields] : rows) {
      SCOPED_TRACE(kind);
      auto& window = openNew<InventoryWindow>(kind);
      for (const char* field : fields)
        EXPECT_EQ(window.findControl(field)->ToolTipText.get().empty(), !on) << field;
      EXPECT_EQ(merges(window), on);
      window.mnuViewMergeCells_Click();
      EXPECT_EQ(merges(window), !on);
      EXPECT_EQ(window.mnuViewMergeCells.Checked, !on);
    }
  }
}

TEST_F(RecordWindows, BookingsAndNewThingsNeedTheirOwnRights) {
  for (const bool may : {true, false}) {
    start(may ? allRightsBut() : allRightsBut("BKV EQADD"));
    auto& room = openNew<frmRoom>(kRoom);
    EXPECT_EQ(room.equipment.newPiece.usable(), may);
    EXPECT_EQ(room.equipment.newGroup.usable(), may);
    EXPECT_EQ(room.bookings.fa.Visible, may);
    EXPECT_EQ(room.bookings.viewCurrent.usable(), may);
    EXPECT_EQ(room.bookings.viewOld.usable(), may);
  }
}

}  // namespace
}  // namespace vantry::test

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
  static std::string tipOf(const Form& form, const char* name) { return form.findControl(name)->ToolTipText; }
  /// Whether all lists of the window that hold records merge equal cells.
  static bool merges(const Form& form) {
    return !findIn(form, [](const Control& control) {
      return control.kind() == ControlKind::Grid &&
             static_cast<const Grid&>(control).MergeCells != MergeMode::Free;
    });
  }
};

TEST_F(RecordWindows, TipsAndMergedCellsArePreferencesAndEachWindowCanMergeByItself) {
  struct Row {
    int kind;
    std::vector<std::pair<const char*, const char*>> tips;
  };
  const Row rows[] = {
      {kEquipment,
       {{"cboEQUIP_TYPE", "Select from Television, VCR, Projector..."},
        {"txtBARCODE_NO", "Select the active barcode."},
        {"txtEQUIP_VALUER", "Cost to replace this?"},
        {"txtGroup", "View the group information for this piece of equipment."},
        {"txtTEMP_ROOM_NAME", "The room where the equipment is currently located."},
        {"cmdSaveDetails", "Save the information on this tab."}}},
      {kGroup,
       {{"txtEQUIP_NO", "Enter an equipment number...TV_VCR1"},
        {"txtEQUIP_VALUER", "How much $$$ will it cost to replace this group?"},
        {"cboLOC_NAME", "Where the group is regularly stored."}}},
      {kRoom,
       {{"txtROOM_NO", "Enter a Room number...Seminar1"},
        {"txtROOM_CAPACITY", "How many people can fit in this room?"},
        {"cmdRemoveFromRoom", "Remove Equipment from this room, but put it in another room."}}},
      {kMaintenance, {}}};
  for (const bool on : {true, false}) {
    settings.prefer("ToolTips", on ? "true" : "false");
    settings.prefer("MergeCells", on ? "true" : "false");
    start();
    app->lookUp.LookupRows.assign(1, LookUpRow{});
    for (const Row& row : rows) {
      SCOPED_TRACE(row.kind);
      auto& window = openNew<InventoryWindow>(row.kind);
      for (const auto& [name, tip] : row.tips) EXPECT_EQ(tipOf(window, name), on ? tip : "") << name;
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

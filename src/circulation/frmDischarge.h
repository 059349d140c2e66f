#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "frame/app.h"
#include "messaging/ask.h"
#include "platform/controls.h"
#include "platform/fields.h"

namespace vantry {

/// Lists what of a booking is out, and takes back what the operator selects, now or at an earlier moment.
class frmDischarge : public Form {
 public:
  explicit frmDischarge(App& app);
  void Form_Load() override;
  void cmdOK_Click();
  void cmdCancel_Click();
  /// 0 acts on the media items, 1 on the equipment.
  void cmdSelectAll_Click(int list) { selectAll(list, true); }
  void cmdDeselectAll_Click(int list) { selectAll(list, false); }
  void chkOverride_Click();
  /// Selects the line of what was scanned; pressing OK is left to the operator.
  void tick(std::string_view scanned);

  int BookingId = 0;  ///< set before it loads
  /// "1" all came back, "0" some is still out, "2" cancelled. Closed by its frame, the window leaves what the
  /// last attempt set, also one that failed; empty without an attempt.
  std::string DischargeStatus;

  Label lblItems{*this, "lblItems", "Media Items to Discharge"};
  ListBox lstItems{*this, "lstItems"};
  Label lblEquipment{*this, "lblEquipment", "Equipment to Discharge"};
  ListBox lstEquipment{*this, "lstEquipment"};
  ControlArray<Button> cmdSelectAll{"cmdSelectAll"};
  ControlArray<Button> cmdDeselectAll{"cmdDeselectAll"};
  CheckBox chkOverride{*this, "chkOverride", "Override Discharge Date/Time"};
  Frame fraDischargeDateTime{*this, "fraDischargeDateTime", "Discharge Date/Time"};
  Label lblDischargeDate{fraDischargeDateTime, "lblDischargeDate", "D&ate:"};
  DateField dtDischargeDate{fraDischargeDateTime, "dtDischargeDate"};
  Label lblDischargeTime{fraDischargeDateTime, "lblDischargeTime", "&Time:"};
  TimeField txtDischargeTime{fraDischargeDateTime, "txtDischargeTime"};
  DateField dtTodaysDate{*this,
                         "dtTodaysDate"};  ///< hidden, as the next one: what the future checks compare with
  TimeField txtRightNow{*this, "txtRightNow"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "Cancel"};

 private:
  ListBox& list(int index) { return index == 0 ? lstItems : lstEquipment; }
  void arrange();
  void connect();
  void fillLists();
  void addScanName(int index, std::string name);
  void offer(int index);
  void selectAll(int index, bool on);
  void dtDischargeDate_Change();
  void txtDischargeTime_Change();
  bool isToday() const { return dtDischargeDate.Value.get() == dtTodaysDate.Value.get(); }
  void refuseTime();
  bool readRoomPieces(std::vector<std::string>& pieces);
  void addSelected(const ListBox& lines, std::string_view tag);
  void sayFailure() const;

  App& app_;
  Ask ask_;
  /// What a scan can name, and the line that it ticks.
  struct ScanName {
    std::string name;
    int list;
    int line;
  };
  std::vector<ScanName> scanNames_;
};

/// Lets the operator discharge of a booking what they choose; the dialog's status.
[[nodiscard]] std::string DischargeBooking(App& app, const std::string& bookingId);

}  // namespace vantry

#pragma once

#include "inventory/maintenance_page.h"
#include "inventory/piece_window.h"

namespace vantry {

/// The window of one piece of equipment. Beside what pieces and groups share it has values, dates and a
/// maker, shows the piece's group, and has a page of its maintenance.
class frmEquipment : public PieceWindow {
 public:
  explicit frmEquipment(App& app);
  void mnuFilePrint_Click();
  void txtGroup_DblClick();
  void cmdNewMaint_Click();
  void BuildMaintenanceTab() override { maintenance.BuildMaintenanceTab(); }
  void takeNextMaintenance(const std::optional<Date>& date) override;

  Label lblEQUIP_MANUF{fraDetails, "lblEQUIP_MANUF", "Manufacturer:"};
  TextBox txtEQUIP_MANUF{fraDetails, "txtEQUIP_MANUF"};
  Label lblEQUIP_FORMAT{fraDetails, "lblEQUIP_FORMAT", "Format:"};
  TextBox txtEQUIP_FORMAT{fraDetails, "txtEQUIP_FORMAT"};
  Label lblEQUIP_MODEL{fraDetails, "lblEQUIP_MODEL", "Model Number:"};
  TextBox txtEQUIP_MODEL{fraDetails, "txtEQUIP_MODEL"};
  Label lblEQUIP_SERIAL_NO{fraDetails, "lblEQUIP_SERIAL_NO", "Serial Number:"};
  TextBox txtEQUIP_SERIAL_NO{fraDetails, "txtEQUIP_SERIAL_NO"};
  Label lblEQUIP_VALUEP{fraDetails, "lblEQUIP_VALUEP", "Purchase Value:"};
  CurrencyField txtEQUIP_VALUEP{fraDetails, "txtEQUIP_VALUEP", 0, kMostValue};
  Label lblEQUIP_VALUER{fraDetails, "lblEQUIP_VALUER", "Replacement Value:"};
  CurrencyField txtEQUIP_VALUER{fraDetails, "txtEQUIP_VALUER", 0, kMostValue};
  Label lblEQUIP_DEALER{fraDetails, "lblEQUIP_DEALER", "Dealer:"};
  TextBox txtEQUIP_DEALER{fraDetails, "txtEQUIP_DEALER"};
  Label lblEQUIP_DT_PUR{fraDetails, "lblEQUIP_DT_PUR", "Acquisition Date:"};
  DateField dtEQUIP_DT_PUR{fraDetails, "dtEQUIP_DT_PUR"};
  Label lblEQUIP_NXT_MAINT{fraDetails, "lblEQUIP_NXT_MAINT", "Next Maintenance:"};
  DateField dtEQUIP_NXT_MAINT{fraDetails, "dtEQUIP_NXT_MAINT"};
  Label lblGroup{fraDetails, "lblGroup", "Group:"};
  TextBox txtGroup{fraDetails, "txtGroup"};
  Button cmdSaveDetails{fraDetails, "cmdSaveDetails", "&Save"};

  Frame fraMaintenance{*this, "fraTab(2)", "", 0};
  MaintenancePage maintenance{app_, ask_, fraMaintenance, [this] { return recordId(); }};
  Label lblHIST_MAINT{fraProperties, "lblHIST_MAINT", "Historical Maintenance:"};
  TextBox txtHIST_MAINT{fraProperties, "txtHIST_MAINT"};

 protected:
  [[nodiscard]] const RecordFields& fields() const override { return fields_; }
  void showNew() override;
  void showOwn() override;
  void addValues() override;
  void addRecord(bool created) override;
  void takeReply(bool created) override;
  void copyEnds() override;
  [[nodiscard]] bool saveMore(bool created) override;
  void refreshLists() override;
  [[nodiscard]] bool notesAreAsked() const override { return CallerView != kSourceGroupMembers; }
  void SetFormSecurity() override;
  void merge(bool on) override;

 private:
  static constexpr std::int64_t kMostValue = 9'000'000'000;

  std::vector<RecordField> fieldTable();
  void connect();
  void arrange();
  void showGroup(const GroupSlots& group);
  void showGroupValue(const std::string& value);
  void firstMaintenance();

  RecordFields fields_;
  GroupSlots caller_;                    ///< the group that the piece was opened from
  std::optional<std::string> ownValue_;  ///< of the piece, while its field shows that of the group
  std::string groupValue_;
};

}  // namespace vantry

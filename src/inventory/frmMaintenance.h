#pragma once

#include "inventory/detail_lines.h"
#include "inventory/inventory_window.h"
#include "inventory/properties_panel.h"

namespace vantry {

/// The window of one maintenance record: a piece of equipment went away on a day and came back on another.
/// It has both pages from the start, no notes by type, and sets the piece's status with each save.
class frmMaintenance : public InventoryWindow {
 public:
  explicit frmMaintenance(App& app);
  void mnuFilePrint_Click();
  void txtBARCODE_NO_DblClick();

  // The rules of the dates, also when a field is left.
  void dtMAINT_DATEIN_Change();
  void dtMAINT_DATEOUT_Change();
  void dtEQUIP_NXT_MAINT_Change();

  Frame fraDetails{*this, "fraTab(0)", "", 0};
  Label lblEQUIP_TYPE{fraDetails, "lblEQUIP_TYPE", "Equipment Type:"};
  TextBox txtEQUIP_TYPE{fraDetails, "txtEQUIP_TYPE"};
  Label lblEQUIP_NO{fraDetails, "lblEQUIP_NO", "Number:"};
  TextBox txtEQUIP_NO{fraDetails, "txtEQUIP_NO"};
  Label lblBARCODE_NO{fraDetails, "lblBARCODE_NO", "Barcode:"};
  TextBox txtBARCODE_NO{fraDetails, "txtBARCODE_NO"};
  Label lblMAINT_DATEIN{fraDetails, "lblMAINT_DATEIN", "Date In:"};
  DateField dtMAINT_DATEIN{fraDetails, "dtMAINT_DATEIN"};
  Label lblMAINT_DATEOUT{fraDetails, "lblMAINT_DATEOUT", "Date Out:"};
  DateField dtMAINT_DATEOUT{fraDetails, "dtMAINT_DATEOUT"};
  Label lblEQUIP_NXT_MAINT{fraDetails, "lblEQUIP_NXT_MAINT", "Next Maintenance:"};
  DateField dtEQUIP_NXT_MAINT{fraDetails, "dtEQUIP_NXT_MAINT"};
  CheckBox chkIN_MAINT{fraDetails, "chkIN_MAINT", "In Maintenance?"};  ///< its tag is the id of the status
  Label lblMEDIA_NOTE{fraDetails, "lblMEDIA_NOTE", "Notes"};
  TextBox txtMEDIA_NOTE{fraDetails, "txtMEDIA_NOTE"};
  DetailLines details{app_, fraDetails, kMaintenanceDetails};

  Frame fraProperties{*this, "fraTab(1)", "", 0};
  PropertiesPanel propertyFields{fraProperties};
  Label lblMAINTENANCE_NOTE{fraProperties, "lblMAINTENANCE_NOTE", "Note:"};
  TextBox txtMAINTENANCE_NOTE{fraProperties, "txtMAINTENANCE_NOTE"};

 protected:
  [[nodiscard]] std::string number() const override { return txtEQUIP_NO.Text; }
  [[nodiscard]] std::string category() const override;
  [[nodiscard]] const RecordFields& fields() const override { return fields_; }
  void showNew() override;
  void readRecord() override;
  [[nodiscard]] bool requiredAreFilled() override;
  void addRecord(bool created) override;
  void takeReply(bool created) override;
  [[nodiscard]] bool saveMore(bool created) override;
  void showAsStored() override;
  void refreshLists() override;
  void recordIsDeleted() override;
  void DisableEditing() override;
  void SetFormSecurity() override;
  void DisableButtons() override { details.DisableButtons(); }
  void merge(bool on) override;

 private:
  std::vector<RecordField> fieldTable();
  void connect();
  void arrange();
  void BuildStatusTypes();
  void showReply(bool created);
  void sendStatus(std::string_view code);
  void tellPiece(const std::function<void(InventoryWindow&)>& tell);
  [[nodiscard]] Date today() const { return app_.clock.now().date; }

  RecordFields fields_;
  std::string pieceId_;
  std::string listedIn_;  ///< the month in whose list the record was
};

}  // namespace vantry

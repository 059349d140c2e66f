#pragma once

#include "inventory/regular_place.h"
#include "inventory/typed_window.h"
#include "platform/number_fields.h"

namespace vantry {

/// What differs between the windows of pieces and of groups as data.
struct PieceWindowKind {
  TypedWindowKind typed;
  const char* moveRefusal;  ///< after a move within the location
  const char* typeTip;
  const char* numberTip;
  const char* statusTip;
  const char* roomTip;
  const char* locationTip;
  const char* currentlyAtTip;
};

/// The window of what has a number, barcodes, statuses and a place, and is booked: a piece of equipment or a
/// group.
class PieceWindow : public TypedWindow {
 public:
  void cmdEQUIP_NO_Click() { showNumbers(); }
  void txtBARCODE_NO_DblClick();

  Label lblEQUIP_TYPE{fraDetails, "lblEQUIP_TYPE", "Equipment Type:"};
  ComboBox cboEQUIP_TYPE{fraDetails, "cboEQUIP_TYPE"};
  Label lblEQUIP_NO{fraDetails, "lblEQUIP_NO", "Number:"};
  TextBox txtEQUIP_NO{fraDetails, "txtEQUIP_NO"};
  Button cmdEQUIP_NO{fraDetails, "cmdEQUIP_NO", "..."};
  Label lblBARCODE_NO{fraDetails, "lblBARCODE_NO", "Barcode:"};
  TextBox txtBARCODE_NO{fraDetails, "txtBARCODE_NO"};
  Label lblSTS_TYPE{fraDetails, "lblSTS_TYPE", "Status:"};
  TextBox txtSTS_TYPE{fraDetails, "txtSTS_TYPE"};
  RegularPlace place;

 protected:
  PieceWindow(App& app, const PieceWindowKind& kind);

  void prepare() override;
  void showNew() override;
  void readRecord() override;
  void showRecord() override;
  void addRecord(bool created) override;
  void addOwnTags() override;
  void showAsStored() override;
  void recordIsShown() override;
  void statusIsShown() override { place.statusChanged(); }
  void DisableEditing() override;

  /// The tags between the number and the place.
  virtual void addValues() {}
  /// The fields that the reply of the record holds beside those that pieces and groups share.
  virtual void showOwn() = 0;

  /// The rows of the fields that pieces and groups share.
  [[nodiscard]] std::vector<RecordField> sharedFields();

 private:
  void connect();
  void openBarcode();

  const PieceWindowKind& kind_;
};

}  // namespace vantry

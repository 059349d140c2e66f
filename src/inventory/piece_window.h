#pragma once

#include "inventory/bookings_panel.h"
#include "inventory/inventory_window.h"
#include "inventory/notes_panel.h"
#include "inventory/properties_panel.h"
#include "inventory/regular_place.h"
#include "platform/number_fields.h"

namespace vantry {

/// What differs between the windows of pieces and of groups as data.
struct PieceWindowKind {
  InventoryWindowKind window;
  std::string_view readCode;
  std::vector<Category> CategoryLists::*categories;
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
class PieceWindow : public InventoryWindow {
 public:
  void cmdEQUIP_NO_Click();
  void txtBARCODE_NO_DblClick();
  void txtSTS_TYPE_DblClick();

  Frame fraDetails{*this, "fraTab(0)", "", 0};
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
  Frame fraBookings{*this, "fraTab(1)", "", 0};
  BookingsPanel bookings;

 protected:
  PieceWindow(App& app, const PieceWindowKind& kind, const char* bookingsGrid);

  [[nodiscard]] std::string number() const override { return txtEQUIP_NO.Text; }
  [[nodiscard]] std::string category() const override { return typeId(); }

  void prepare() override;
  void showNew() override;
  void readRecord() override;
  void copyEnds() override;
  void addRecord(bool created) override;
  void takeReply(bool created) override;
  void showAsStored() override;
  void refreshLists() override;
  void refreshNumbers() override;
  void recordIsShown() override;
  void DisableEditing() override;
  void SetFormSecurity() override;

  /// The tags between the number and the place.
  virtual void addOwnTags() {}
  /// The fields that the reply of the record holds beside those that pieces and groups share.
  virtual void showOwn() {}
  /// The properties of the page.
  [[nodiscard]] virtual PropertiesPanel& properties() = 0;

  /// The rows of the fields that pieces and groups share.
  [[nodiscard]] std::vector<RecordField> sharedFields();
  [[nodiscard]] std::string messageValue(std::string_view tag) const { return app_.message.Get(tag); }
  [[nodiscard]] const std::string& typeId() const;
  [[nodiscard]] int slot() const { return opening().kind; }

 private:
  void connect();
  void fillTypes();
  void selectNewType();
  void showNumbers();
  void openBarcode();
  [[nodiscard]] bool answersF4(std::string_view key, bool mayOpen, void (PieceWindow::*handler)());

  const PieceWindowKind& kind_;
  std::string oldType_;       ///< name of the type at the last save
  bool typeChanged_ = false;  ///< by the save under way
};

}  // namespace vantry

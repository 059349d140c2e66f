#pragma once

#include "inventory/group_members.h"
#include "inventory/piece_window.h"

namespace vantry {

/// The window of a group: pieces of equipment that are booked, moved and counted as one. Its replacement
/// value is the server's sum over its members, and a refused save ends there.
class frmGroup : public PieceWindow {
 public:
  explicit frmGroup(App& app);
  void mnuFilePrint_Click();
  void takeMembersValue(const std::string& value) override { txtEQUIP_VALUER.Text(value); }
  /// Shows in the main window's list whether the group has members.
  void membersChanged();

  Label lblEQUIP_VALUER{fraDetails, "lblEQUIP_VALUER", "Replacement Value:"};
  CurrencyField txtEQUIP_VALUER{fraDetails, "txtEQUIP_VALUER", -kMostValue, kMostValue};
  Button cmdSaveDetails{fraDetails, "cmdSaveDetails", "&Save"};

  Frame fraMembers{*this, "fraTab(2)", "", 0};
  GroupMembers members{app_, ask_, fraMembers, *this};

 protected:
  [[nodiscard]] const RecordFields& fields() const override { return fields_; }
  void showOwn() override;
  void copyEnds() override;
  void SetFormSecurity() override;
  void merge(bool on) override;

 private:
  static constexpr std::int64_t kMostValue = 9'000'000'000;

  std::vector<RecordField> fieldTable();
  void connect();
  void arrange();

  RecordFields fields_;
};

}  // namespace vantry

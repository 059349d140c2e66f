#pragma once

#include <string>

#include "lists/main_view.h"

namespace vantry {

/// The returns desk: what is scanned is discharged from the booking that holds it, with one line in a log.
/// The focus stays in the text, so that a wand needs no other hand.
class QuickDischargeView : public MainView {
 public:
  QuickDischargeView(const MainParts& parts, Frame& frame);

  Label lblQuickDischargeType;
  ComboBox cboQuickDischargeType;
  Label lblQuickDischargeItem;
  TextBox txtQuickDischargeItem;
  Button cmdQuickDischarge, cmdQuickClear, cmdBackDate;
  Frame fraBackDate;
  Label lblDischargeDate;
  DateField dtDischargeDate;
  Label lblDischargeTime;
  TimeField txtDischargeTime;
  Label lblDischargeLog;
  TextBox txtDischargeLog;

  /// The log stays, also for another operator.
  void load() override;
  void open() override;
  void cmdQuickDischarge_Click();
  void cmdQuickClear_Click();
  void cmdBackDate_Click();

 private:
  struct Found;
  void arrange(Frame& frame);
  void connect();
  void typeChosen();
  void allowByText();
  bool find(Found& found);
  bool send(const Found& found, std::string& stamp);
  void addMoment(std::string& stamp);
  std::string noteOf(const Found& found);
  std::string readNote(std::string_view whose, std::string_view occasion, const std::string& id,
                       std::string_view failure);
  void log(const std::string& stamp);
  void stop();
  void focusText();

  bool typeChosen_ = false;  ///< until then the view opens on the first type
};

}  // namespace vantry

#pragma once

#include "booking/modBooking_media.h"
#include "platform/controls.h"

namespace vantry {

/// Lets the operator choose the title of an item that belongs to several.
class frmMultBibs : public Form {
 public:
  frmMultBibs(App& app, const ItemMatches& matches);
  void Form_Load() override;
  void cmdOK_Click();
  void cmdCancel_Click();

  /// The place of the chosen title among the matches; counts only where the tag is "1".
  int choice() const { return lstBibs.ListIndex; }

  ListBox lstBibs{*this, "lstBibs"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  App& app_;
  const ItemMatches& matches_;
};

}  // namespace vantry

#pragma once

#include "frame/app.h"
#include "lists/reply_list.h"
#include "platform/controls.h"

namespace vantry {

/// Shows which items, equipment and room the server has assigned for a booking's generic wishes when it was
/// charged. It reads the reply of that charge, and sends no request.
class frmGenAssign : public Form {
 public:
  /// How many of each the reply assigns; parts without any do not show.
  struct Counts {
    int equipment = 0;
    int items = 0;
    int rooms = 0;
    int sum() const { return equipment + items + rooms; }
  };
  frmGenAssign(App& app, Counts counts);
  void Form_Load() override;
  void Form_Activate() override;
  void cmdOK_Click();
  /// Prints the lists of this window.
  void cmdPrint_Click();

  Label lblRoomCaption{*this, "lblRoomCaption", "The following room has been assigned and charged:"};
  Label lblRoom{*this, "lblRoom"};
  Label lblGenItems{*this, "lblGenItems", "The following media items have been assigned and charged:"};
  Grid faGenMedia{*this, "faGenMedia"};
  Label lblGenEquip{*this, "lblGenEquip", "The following equipment has been assigned and charged:"};
  Grid faGenEquip{*this, "faGenEquip"};
  Button cmdPrint{*this, "cmdPrint", "&Print"};
  Button cmdOK{*this, "cmdOK", "&OK"};

 private:
  void showParts();
  void fillRoom();

  App& app_;
  Counts counts_;
  ReplyList media_{app_, faGenMedia};
  ReplyList pieces_{app_, faGenEquip};
};

/// The counts of the reply of a charge.
[[nodiscard]] frmGenAssign::Counts assignedCounts(const TagMessage& message);

}  // namespace vantry

#pragma once

#include <vector>

#include "booking/booking_record.h"
#include "booking/modBooking_equipment.h"
#include "frame/app.h"
#include "lists/reply_list.h"
#include "platform/controls.h"
#include "platform/menu.h"
#include "platform/tree.h"

namespace vantry {

/// Lets the operator pick pieces and groups for a booking at the stored times. Each is checked when it is
/// picked.
class frmPickEquip : public Form {
 public:
  frmPickEquip(App& app, const BookingRecord& record);
  void Form_Load() override;
  void cmdAdd_Click();
  void cmdRemove_Click();
  void cmdOK_Click();
  void cmdCancel_Click();
  void mnuPopupToolsFind_Click();
  void mnuPopupToolsSortAscending_Click() { sort(SortOrder::Ascending); }
  void mnuPopupToolsSortDescending_Click() { sort(SortOrder::Descending); }

  /// What was picked, in its order; empty when the operator cancelled.
  EquipmentMatches picked;

  Label lblPicked{*this, "lblPicked", "&Picked for the booking:"};
  Grid faPicked{*this, "faPicked"};
  Button cmdRemove{*this, "cmdRemove", "&Remove"};
  Tree tvwEquip{*this, "tvwEquip"};
  Grid fa{*this, "fa"};
  Button cmdAdd{*this, "cmdAdd", "&Add"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};
  MenuItem mnuPopupTools{*this, "mnuPopupTools", "Tools"};
  MenuItem mnuPopupToolsAdd{mnuPopupTools, "mnuPopupToolsAdd", "&Add"};
  MenuItem mnuPopupToolsRemove{mnuPopupTools, "mnuPopupToolsRemove", "&Remove"};
  MenuItem mnuPopupToolsLine{mnuPopupTools, "mnuPopupToolsLine", "-"};
  MenuItem mnuPopupToolsFind{mnuPopupTools, "mnuPopupToolsFind", "&Find..."};
  MenuItem mnuPopupToolsSortAscending{mnuPopupTools, "mnuPopupToolsSortAscending", "Sort A&scending"};
  MenuItem mnuPopupToolsSortDescending{mnuPopupTools, "mnuPopupToolsSortDescending", "Sort &Descending"};

 private:
  /// A row that can be picked, or was.
  struct Candidate {
    EquipmentPiece piece;
    ListRow texts;        ///< of its row in `fa`
    std::string typeKey;  ///< the node under which it was found
  };

  void connect();
  void buildLists();
  void tvwEquip_Click();
  void loadType(const TreeNode& type);
  /// Of the current record and the row that it filled.
  Candidate readCandidate(const TreeNode& type, int row) const;
  bool isPicked(std::string_view eid) const;
  static Candidate* selected(std::vector<Candidate>& candidates, const ReplyList& list);
  void enableCommands();
  void openTools(ReplyList& list);
  void sort(SortOrder order);

  App& app_;
  const BookingRecord& record_;
  std::vector<Candidate> shown_;   ///< of the type on show, those in `fa`
  std::vector<Candidate> picked_;  ///< those in `faPicked`
  ReplyList picks_{app_, faPicked};
  ReplyList pieces_{app_, fa};
  ReplyList* tools_ = nullptr;  ///< the list that the popup menu acts on
};

}  // namespace vantry

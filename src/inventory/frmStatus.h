#pragma once

#include <string>
#include <vector>

#include "frame/app.h"
#include "lists/reply_list.h"
#include "messaging/ask.h"
#include "platform/controls.h"
#include "platform/fields.h"

namespace vantry {

struct StatusKind;

/// The statuses of a piece, group or room: the types that are not applied, and those that are with date and
/// note. The properties hold the answer when the window is gone.
class frmStatus : public Form {
 public:
  /// The kind is that of the record: equipment, group, room or maintenance. An empty id is a new record.
  frmStatus(App& app, RecordKind kind, std::string id);
  void Form_Load() override;
  void Form_Activate() override;
  bool Form_Unload() override;
  void fa_Click(int index);
  void cmdAddStatus_Click();
  void cmdRemoveStatus_Click();
  void cmdOK_Click() { Unload(); }

  std::string status;  ///< the applied one of the lowest priority number; empty unless OK was pressed on one
  bool changed = false;  ///< a status was applied or removed

  Label lblAvailable{*this, "lblAvailable", "A&vailable:"};
  Label lblApplied{*this, "lblApplied", "A&pplied:"};
  ControlArray<Grid> fa{"fa"};
  Button cmdAddStatus{*this, "cmdAddStatus", "&Add"};
  Button cmdRemoveStatus{*this, "cmdRemoveStatus", "&Remove"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  // They turn the server's moments into what is shown.
  DateField dtAppliedDate{*this, "dtAppliedDate"};
  TimeField txtAppliedTime{*this, "txtAppliedTime"};

 private:
  struct StatusType {
    std::string id;
    std::string priority;
    std::string name;
  };

  [[nodiscard]] bool readTypes();
  void readApplied();
  void showNew();
  void fillAvailable();
  void SortData();
  void selectSystemStatus();
  void statusChanged();
  [[nodiscard]] const StatusType* typeOf(std::string_view priority, std::string_view id) const;
  /// The applied row with this text, or 0.
  [[nodiscard]] int appliedRow(int column, std::string_view text) const;

  App& app_;
  Ask ask_;
  const StatusKind& kind_;
  std::string id_;
  std::vector<StatusType> types_;
  ReplyList available_;
  ReplyList applied_;
};

}  // namespace vantry

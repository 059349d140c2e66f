#pragma once

#include <string>
#include <string_view>

#include "frame/app.h"
#include "lists/reply_list.h"
#include "platform/controls.h"

namespace vantry {

struct NumbersKind;

/// The numbers that a type has already given to its pieces, groups or rooms. One window of each kind is open
/// at most, beside the record windows.
class frmNumbers : public Form {
 public:
  frmNumbers(App& app, const NumbersKind& kind, std::string typeId);
  void Form_Load() override;
  void Form_Activate() override;
  /// Reads the numbers of the type anew.
  void RefreshList();
  void cmdOK_Click() { Unload(); }

  std::string typeId;

  Grid faNumbers{*this, "faNumbers"};
  Button cmdOK{*this, "cmdOK", "&Close"};

 private:
  bool faNumbers_KeyDown(std::string_view key);

  App& app_;
  const NumbersKind& kind_;
  ReplyList list_;
};

/// Shows the window of a kind (equipment, group or room) with the numbers of a type, or brings it to the
/// front with them.
void ShowAssignedNumbers(App& app, RecordKind kind, const std::string& typeId);
/// Reads the numbers of the type anew where the window of the kind is open.
void RefreshAssignedNumbers(App& app, RecordKind kind, const std::string& typeId);

}  // namespace vantry

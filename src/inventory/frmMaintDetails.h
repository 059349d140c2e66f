#pragma once

#include <optional>
#include <string>

#include "frame/app.h"
#include "frame/record_opening.h"
#include "lists/reply_list.h"
#include "platform/controls.h"

namespace vantry {

/// One detail of a maintenance record or a room: its type and a text.
struct DetailLine {
  std::string typeId;
  std::string typeName;
  std::string text;
};

struct DetailSource;

/// Edits one detail line.
class frmMaintDetails : public Form {
 public:
  /// The source is the record window: maintenance or room. A new line is empty.
  frmMaintDetails(App& app, RecordSource source, DetailLine line);
  void Form_Load() override;
  void Form_Activate() override;
  void cmdOK_Click();
  void cmdCancel_Click() { Hide(); }

  std::optional<DetailLine> answer;  ///< nothing when it was cancelled

  Grid fa{*this, "fa"};
  Label lblDetails{*this, "lblDetails", "&Details:"};
  TextBox txtDetails{*this, "txtDetails"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  void selectType();
  void enableOK();

  App& app_;
  const DetailSource& source_;
  DetailLine line_;
  ReplyList list_;
};

}  // namespace vantry

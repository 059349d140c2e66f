#pragma once

#include <string>

#include "frame/app.h"
#include "lists/reply_list.h"
#include "messaging/ask.h"
#include "platform/controls.h"

namespace vantry {

/// The barcodes of a piece or group, one of which is active at most. The properties hold the answer when the
/// window is gone.
class frmBarcodes : public Form {
 public:
  frmBarcodes(App& app, std::string id);
  void Form_Load() override;
  void Form_Activate() override;
  bool Form_Unload() override;
  void fa_Click();
  void cmdSave_Click();
  void cmdDelete_Click();
  void cmdClose_Click() { Unload(); }

  std::string barcode = "(none)";  ///< the active one
  bool changed = false;            ///< a barcode was added, deleted or given another status

  Grid fa{*this, "fa"};
  Label lblBARCODE_NO{*this, "lblBARCODE_NO", "&Barcode"};
  TextBox txtBARCODE_NO{*this, "txtBARCODE_NO"};
  Label lblBARCODE_STS{*this, "lblBARCODE_STS", "&Status"};
  ComboBox cboBARCODE_STS{*this, "cboBARCODE_STS"};
  Button cmdSave{*this, "cmdSave", "&Add"};
  Button cmdDelete{*this, "cmdDelete", "&Delete"};
  Button cmdClose{*this, "cmdClose", "&Close"};

 private:
  struct Input {
    std::string barcode;
    int status = 0;
  };

  void BuildBarcodeTypes();
  void SortData();
  void show(const Input& input);
  [[nodiscard]] bool isUnsaved() const;
  [[nodiscard]] bool isComplete();
  /// False when something is missing or the server has refused.
  [[nodiscard]] bool save();
  [[nodiscard]] bool remove(int row);
  /// The row of a barcode, or the first one with a status; 0 for none.
  [[nodiscard]] int rowWith(int column, std::string_view text) const;

  App& app_;
  Ask ask_;
  std::string id_;
  Input shown_;  ///< what the fields were given last: another content is unsaved typing
  ReplyList list_;
};

}  // namespace vantry

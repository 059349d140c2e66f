#pragma once

#include "messaging/marc_viewer.h"
#include "platform/controls.h"
#include "platform/grid.h"

namespace vantry {

/// Shows the reply that holds a record of the catalogue: what each field is called and what it says, and on
/// demand its tag, indicators and subfields.
class frmMarcRecord : public Form {
 public:
  frmMarcRecord(Windows& windows, TagMessage& message, MarcKind kind);
  void Form_Load() override;
  void chkDetails_Click();
  void cmdClose_Click();

  Grid faFields{*this, "faFields"};
  CheckBox chkDetails{*this, "chkDetails", "Show &tags and subfields"};
  Button cmdClose{*this, "cmdClose", "&Close"};

 private:
  void fit();

  TagMessage& message_;
  MarcKind kind_;
};

}  // namespace vantry

#pragma once

#include <vector>

#include "booking/modBooking_media.h"
#include "platform/controls.h"

namespace vantry {

/// Lets the operator choose the media type of a thing that has none.
class frmSelectMediaType : public Form {
 public:
  frmSelectMediaType(App& app, const std::vector<MediaType>& types);
  void Form_Load() override;
  void cmdOK_Click();
  void cmdCancel_Click();

  /// The place of the chosen type; below 0 when none was.
  int choice = -1;

  Label lblMediaTypes{*this, "lblMediaTypes", "&Media Types:"};
  ListBox lstMediaTypes{*this, "lstMediaTypes"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  App& app_;
  const std::vector<MediaType>& types_;
};

}  // namespace vantry

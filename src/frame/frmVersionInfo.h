#pragma once

#include <vector>

#include "frame/component_table.h"
#include "platform/clock.h"
#include "platform/controls.h"
#include "platform/form.h"

namespace vantry {

class Desktop;

/// Lists the components that are not as they must be. It opens before anything else of the program is there.
class frmVersionInfo : public Form {
 public:
  frmVersionInfo(Windows& windows, Desktop& desktop, const Clock& clock,
                 const std::vector<ComponentFailure>& failures);
  void cmdV_I_PrintList_Click();
  void cmdV_I_Exit_Click() { Unload(); }

  Label lblV_I_Heading{*this, "lblV_I_Heading", "Required Resource  -  Version           Error Condition"};
  ListBox lstV_I_Resource{*this, "lstV_I_Resource"};
  Label lblV_I_Corrected{*this, "lblV_I_Corrected",
                         "These errors must be corrected for this application to run."};
  Button cmdV_I_PrintList{*this, "cmdV_I_PrintList", "&Print List"};
  Button cmdV_I_Exit{*this, "cmdV_I_Exit", "E&xit"};

 private:
  Desktop& desktop_;
  const Clock& clock_;
};

/// Checks the components and shows what is wrong with them. False when something is.
[[nodiscard]] bool ComponentsAreValid(Desktop& desktop, const Clock& clock, const ComponentFiles& files,
                                      std::string_view table = resourceVersions(),
                                      std::span<const std::string_view> list = resourceList());

}  // namespace vantry

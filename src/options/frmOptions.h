#pragma once

#include "frame/app.h"
#include "options/option_pages.h"
#include "options/sound_page.h"
#include "options/wanted_file.h"

namespace vantry {

/// The editor of the preferences, and the only writer of their store.
class frmOptions : public Form {
 public:
  explicit frmOptions(App& app);
  void Form_Load() override;
  void cmdOK_Click();
  void cmdCancel_Click() { Unload(); }
  void cmdApply_Click();
  void cmdSchedColor_Click(int index);
  /// Asks for a file and puts its path into the field, when the file can be used.
  void cmdBrowse_Click(TextBox& path, const WantedFile& wanted);
  void lstBookingDeskLocation_Click();
  void mnuBackColor_Click();
  void mnuTextColor_Click();

  OptionPages pages{*this, [this] { changed(); }};
  Label lblBookingDeskLocation{pages.fraOpt(kMonitorPage), "lblBookingDeskLocation",
                               "Booking Desk &Location:"};
  Label lblSessionOnly{pages.fraOpt(kMonitorPage), "lblSessionOnly", "(Current Session Only)"};
  ListBox lstBookingDeskLocation{pages.fraOpt(kMonitorPage), "lstBookingDeskLocation"};
  SoundPage sounds;
  Button cmdOK{*this, "cmdOK", "OK"};
  Button cmdCancel{*this, "cmdCancel", "Cancel"};
  Button cmdApply{*this, "cmdApply", "&Apply"};
  MenuItem mnuColor{*this, "mnuColor", "Colors"};
  MenuItem mnuBackColor{mnuColor, "mnuBackColor", "&Background Color..."};
  MenuItem mnuTextColor{mnuColor, "mnuTextColor", "&Text Color..."};

 private:
  void connect();
  void show();
  void changed();
  void EnableSchedulerSelections();
  void fillLocations();
  /// Ids joined by "|"; "0" for all.
  [[nodiscard]] std::string chosenLocations() const;
  void chooseColour(Property<Colour>& colour);

  App& app_;
  bool allLocations_ = false;  ///< the entry for all was selected before the operator's choice
  int colour_ = 0;             ///< whose popup menu is open
};

}  // namespace vantry

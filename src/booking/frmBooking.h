#pragma once

#include <string_view>
#include <vector>

#include "booking/booking_form.h"
#include "booking/equipment_panel.h"
#include "booking/media_panel.h"
#include "booking/place_panel.h"
#include "booking/requester_panel.h"
#include "messaging/ask.h"
#include "platform/bars.h"
#include "platform/tabs.h"

namespace vantry {

struct Removal;

/// The free-form editor of one booking: who, when, what, where. Several can be open side by side.
///
/// Reads its id from the record slots; the slot of a new pick-up and the copy mode of the booking windows
/// steer what it shows.
class frmBooking : public Form {
  App& app_;  // stands first: the panels are made with it

 public:
  explicit frmBooking(App& app);
  void Form_Load() override;
  void Form_Activate() override;
  bool Form_Unload() override;

  // File
  void mnuFileSave_Click();
  void abSaveAndNew_Click();
  void mnuFileCopyBooking_Click();
  void mnuFileDeleteBooking_Click();
  void mnuFilePrint_Click();
  void mnuFileClose_Click();
  // Booking
  void mnuBookingCharge_Click();
  void mnuBookingDischarge_Click();
  void mnuBookingCancel_Click();
  // View, tools, help
  void mnuViewTab_Click(int tab);
  void mnuViewMergeCells_Click();
  void mnuToolsFind_Click();
  void mnuToolsOptions_Click();
  void mnuHelpTopics_Click();
  void mnuHelpAbout_Click();

  bool SaveOk = false;   ///< the last save reached its end
  bool Dirty = false;    ///< a field was changed since the window opened
  bool Closing = false;  ///< a command closes the window: nothing is asked any more
  int CallerView = 0;    ///< the source that opened the window
  BookingRecord record;

  MenuItem mnuFile{*this, "mnuFile", "&File"};
  MenuItem mnuFileSave{mnuFile, "mnuFileSave", "&Save and Close"};
  MenuItem mnuFileLine1{mnuFile, "mnuFileLine1", "-"};
  MenuItem mnuFileCopyBooking{mnuFile, "mnuFileCopyBooking", "C&opy Booking..."};
  MenuItem mnuFileDeleteBooking{mnuFile, "mnuFileDeleteBooking", "&Delete Booking"};
  MenuItem mnuFilePrint{mnuFile, "mnuFilePrint", "&Print Confirmation"};
  MenuItem mnuFileLine2{mnuFile, "mnuFileLine2", "-"};
  MenuItem mnuFileClose{mnuFile, "mnuFileClose", "&Close"};
  MenuItem mnuView{*this, "mnuView", "Vie&w"};
  MenuItem mnuViewTab1{mnuView, "mnuViewTab(1)", "&Schedule"};
  MenuItem mnuViewTab2{mnuView, "mnuViewTab(2)", "&Media"};
  MenuItem mnuViewTab3{mnuView, "mnuViewTab(3)", "&Room"};
  MenuItem mnuViewTab4{mnuView, "mnuViewTab(4)", "&Equipment"};
  MenuItem mnuViewTab5{mnuView, "mnuViewTab(5)", "&Notes"};
  MenuItem mnuViewTab6{mnuView, "mnuViewTab(6)", "S&taff"};
  MenuItem mnuViewTab7{mnuView, "mnuViewTab(7)", "&Properties"};
  MenuItem mnuViewLine1{mnuView, "mnuViewLine1", "-"};
  MenuItem mnuViewMergeCells{mnuView, "mnuViewMergeCells", "Mer&ge Cells"};
  MenuItem mnuBooking{*this, "mnuBooking", "Bookin&g"};
  MenuItem mnuBookingCharge{mnuBooking, "mnuBookingCharge", "&Charge"};
  MenuItem mnuBookingDischarge{mnuBooking, "mnuBookingDischarge", "&Discharge..."};
  MenuItem mnuBookingCancel{mnuBooking, "mnuBookingCancel", "Ca&ncel Booking"};
  MenuItem mnuTools{*this, "mnuTools", "T&ools"};
  MenuItem mnuToolsFind{mnuTools, "mnuToolsFind", "&Search"};
  MenuItem mnuToolsOptions{mnuTools, "mnuToolsOptions", "&Options..."};
  MenuItem mnuHelp{*this, "mnuHelp", "&Help"};
  MenuItem mnuHelpTopics{mnuHelp, "mnuHelpTopics", "&Help Topics"};
  MenuItem mnuHelpAbout{mnuHelp, "mnuHelpAbout", "&About Vantry..."};

  ToolBar barBooking{*this, "barBooking"};

  // The head: the booking at a glance.
  Frame fraHead{*this, "fraHead", "", 0};
  RequesterPanel requester{app_, fraHead, record};
  Label lblConfirmation{fraHead, "lblConfirmation", "Confirmation:"};
  TextBox txtConfirmationNumber{fraHead, "txtConfirmationNumber"};
  Label lblStatusCaption{fraHead, "lblStatusCaption", "Status:"};
  Label lblStatus{fraHead, "lblStatus"};
  Label lblPlaceCaption{fraHead, "lblPlaceCaption", "Place:"};
  Label lblPlace{fraHead, "lblPlace"};
  Label lblThingsCaption{fraHead, "lblThingsCaption", "Booked:"};
  Label lblThings{fraHead, "lblThings"};

  TabStrip tabBooking{*this, "tabBooking"};
  Frame fraSchedule{*this, "fraTab(0)", "", 0};
  TimesPanel times{app_, fraSchedule, record};
  Frame fraMedia{*this, "fraTab(1)", "", 0};
  MediaPanel media{app_, fraMedia, record};
  Frame fraPlace{*this, "fraTab(2)", "", 0};
  PlacePanel place{app_, fraPlace, record};
  Frame fraEquipment{*this, "fraTab(3)", "", 0};
  EquipmentPanel equipment{app_, fraEquipment, record};
  Frame fraNotes{*this, "fraTab(4)", "", 0};
  Label lblBookingNote{fraNotes, "lblBookingNote", "Booking &Note:"};
  TextBox txtBookingNote{fraNotes, "txtBookingNote"};
  Frame fraStaff{*this, "fraTab(5)", "", 0};
  Label lblSetupStaff{fraStaff, "lblSetupStaff", "&Setup Staff:"};
  ComboBox cboSetupStaff{fraStaff, "cboSetupStaff"};
  Label lblCleanupStaff{fraStaff, "lblCleanupStaff", "&Clean-up Staff:"};
  ComboBox cboCleanupStaff{fraStaff, "cboCleanupStaff"};
  Frame fraProperties{*this, "fraTab(6)", "", 0};
  Label lblCreateOperator{fraProperties, "lblCreateOperator", "Created By:"};
  TextBox txtCreateOperator{fraProperties, "txtCreateOperator"};
  Label lblCreateLocation{fraProperties, "lblCreateLocation", "Create Location:"};
  TextBox txtCreateLocation{fraProperties, "txtCreateLocation"};
  Label lblCreateDate{fraProperties, "lblCreateDate", "Create Date:"};
  DateField fpdCreateDate{fraProperties, "fpdCreateDate"};
  Label lblUpdateOperator{fraProperties, "lblUpdateOperator", "Updated By:"};
  TextBox txtUpdateOperator{fraProperties, "txtUpdateOperator"};
  Label lblUpdateLocation{fraProperties, "lblUpdateLocation", "Update Location:"};
  TextBox txtUpdateLocation{fraProperties, "txtUpdateLocation"};
  Label lblUpdateDate{fraProperties, "lblUpdateDate", "Update Date:"};
  DateField fpdUpdateDate{fraProperties, "fpdUpdateDate"};

 private:
  friend class BookingSave;  // the save, in a file of its own

  // Building
  void buildToolBar();
  void buildTabs();
  void arrange();
  void arrangeHead();
  void connect();
  void connectMenus();
  void connectPanels();
  void showToolTips();

  // Loading
  void loadNew();
  /// False: the booking could not be read, and the window is gone.
  [[nodiscard]] bool loadBooking(std::string_view id, bool copy);
  void showPickUpMode();
  void takeNextRequester();
  void fillStaff();
  void selectStaff(ComboBox& combo, int memberId);
  void takeCopyRequester();
  void showHead();
  void showTypeAndRooms();
  void readPlace();
  void readMedia();
  void readEquipment();
  void readRequiredTypes();
  void endCopy();
  void endSaved();
  /// Asks about the booking that is read; a failure is told.
  [[nodiscard]] bool read(std::string_view code);

  // State
  void touch();
  void focusFirst();
  void showTab();
  void selectTab(int tab) { tabBooking.SelectedTab = tab; }
  void showSummary();
  void showProperties();
  void setTitle(std::string title);
  void showStatus();
  void DisableEditing();
  void SetFormSecurity();
  void allowSavedCommands();
  void setCommand(MenuItem& entry, std::string_view tool, bool on);
  void loadRooms();

  // Commands
  void Save();
  void closeNow();
  void print();
  /// Asks, checks and does away with the booking; false when it still stands.
  [[nodiscard]] bool remove(const Removal& removal, std::string_view question);
  void refreshCaller();
  void showResult(int result);

  Ask ask_;
  BookingForm form_;
  std::string title_;
  bool loading_ = false;
  bool pickupMode_ = false;
};

/// Opens a new editor on a booking as a model, whatever other windows stand.
void openCopy(App& app, int bookingId);

/// Prints the confirmation of a booking as it stands stored: from an editor that nobody sees.
void printConfirmationOf(App& app, const std::string& bookingId);

}  // namespace vantry

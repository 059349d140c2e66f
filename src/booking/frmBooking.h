#pragma once

#include <string>

#include "booking/booking_parts.h"
#include "platform/tab_pages.h"
#include "records/record_fields.h"
#include "records/record_window.h"

namespace vantry {

struct Removal;

/// The free-form editor of one booking: who, when, what, where. Several can be open side by side.
class frmBooking : public RecordWindow {
 public:
  explicit frmBooking(App& app);
  void Form_Activate() override;

  // File
  void mnuFileSave_Click() { saveAndClose(); }
  void abSaveAndNew_Click() { saveAndNew(); }
  void mnuFileCopyBooking_Click();
  void mnuFileDeleteBooking_Click();
  void mnuFilePrint_Click();
  // Booking
  void mnuBookingCharge_Click();
  void mnuBookingDischarge_Click();
  void mnuBookingCancel_Click();
  // View, tools
  void mnuViewTab_Click(int tab);
  void mnuToolsFind_Click();

  /// What a stored booking can be given to: charge, discharge, cancel.
  Command charge, discharge, cancel;

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

  // The frames of the panels, which make their controls in them.
  Frame fraHead{*this, "fraHead", "", 0};
  TabStrip tabBooking{*this, "tabBooking"};
  Frame fraSchedule{*this, "fraTab(0)", "", 0};
  Frame fraMedia{*this, "fraTab(1)", "", 0};
  Frame fraPlace{*this, "fraTab(2)", "", 0};
  Frame fraEquipment{*this, "fraTab(3)", "", 0};
  BookingParts parts{app_, {fraHead, fraSchedule, fraMedia, fraPlace, fraEquipment}};
  BookingRecord& record = parts.record;
  RequesterPanel& requester = parts.requester;
  TimesPanel& times = parts.times;
  MediaPanel& media = parts.media;
  PlacePanel& place = parts.place;
  EquipmentPanel& equipment = parts.equipment;

  // The head: the booking at a glance.
  Label lblConfirmation{fraHead, "lblConfirmation", "Confirmation:"};
  TextBox txtConfirmationNumber{fraHead, "txtConfirmationNumber"};
  Label lblStatusCaption{fraHead, "lblStatusCaption", "Status:"};
  Label lblStatus{fraHead, "lblStatus"};
  Label lblPlaceCaption{fraHead, "lblPlaceCaption", "Place:"};
  Label lblPlace{fraHead, "lblPlace"};
  Label lblThingsCaption{fraHead, "lblThingsCaption", "Booked:"};
  Label lblThings{fraHead, "lblThings"};

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

 protected:
  void prepare() override;
  void loadNew() override;
  [[nodiscard]] bool loadRecord() override;
  void recordIsShown() override;
  [[nodiscard]] bool isStored() const override { return record.BookingId != 0; }
  void Save() override;
  [[nodiscard]] RecordOpening nextOpening() override;
  void DisableEditing() override;
  void SetFormSecurity() override;
  void recordChanged() override { showSummary(); }
  void merge(bool on) override;

 private:
  friend class BookingSave;  // the save, in a file of its own

  // Building
  std::vector<RecordField> fieldTable();
  void placeCommands();
  void arrange();
  void arrangeHead();
  void connect();

  // Loading
  void showPickUpMode();
  void takeNextRequester();
  void fillStaff();
  void selectStaff(ComboBox& combo, const std::string& memberId);
  void takeCopyRequester();
  void showFields();
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
  void focusFirst();
  void selectTab(int tab) { pages_.select(tab); }
  void showSummary();
  void setTitle(std::string title);
  void showStatus();
  /// Switches the commands of a stored booking. Its discharge comes with its result.
  void allowStored(bool on);

  // Commands
  /// Asks, checks and removes the booking; false when it is still there.
  [[nodiscard]] bool remove(const Removal& removal, std::string_view question);
  void refreshCaller();
  void showResult(int result);

  RecordFields fields_;
  TabPages pages_;
  std::string title_;
  bool pickupMode_ = false;
};

/// Prints the confirmation of a booking as it is stored, from an editor that nobody sees.
void printConfirmationOf(App& app, const std::string& bookingId);

}  // namespace vantry

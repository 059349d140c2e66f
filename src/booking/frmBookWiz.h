#pragma once

#include <array>
#include <functional>
#include <string>

#include "booking/booking_parts.h"
#include "messaging/ask.h"
#include "platform/step_line.h"

namespace vantry {

/// One page of the wizard: its frame with what is entered on it and, beside that, a text that explains it.
struct WizardPage {
  WizardPage(Form& form, int number, std::string caption);

  Frame frame;
  Frame entry;
  TextBox txtHelp;
};

/// The booking wizard: makes a new booking, or several that differ in their times, page by page. Each page is
/// checked when the operator goes on from it; the last one only stores.
class frmBookWiz : public Form {
 public:
  static constexpr int kPages = 6;
  enum PageNumber { kRequesterPage, kSchedulePage, kMediaPage, kRoomPage, kEquipmentPage, kNotesPage };

  explicit frmBookWiz(App& app);
  void Form_Load() override;
  void Form_Activate() override;
  bool Form_Unload() override;

  void cmdPrevious_Click();
  /// Goes to the next page or, on the last one, stores the booking.
  void cmdNext_Click();
  void cmdCancel_Click() { Unload(); }

  /// The page that is shown; the tag of `cmdPrevious` keeps it.
  int page() const;

  StepLine stpPages{*this, "stpPages"};
  // The booking so far.
  Frame fraChosen{*this, "fraChosen", "", 0};
  Label lblChosenRequesterCaption{fraChosen, "lblChosenRequesterCaption", "Requester:"};
  Label lblChosenRequester{fraChosen, "lblChosenRequester"};
  Label lblChosenTimesCaption{fraChosen, "lblChosenTimesCaption", "Times:"};
  Label lblChosenTimes{fraChosen, "lblChosenTimes"};
  Label lblPlaceCaption{fraChosen, "lblPlaceCaption", "Place:"};
  Label lblPlace{fraChosen, "lblPlace"};
  Label lblThingsCaption{fraChosen, "lblThingsCaption", "Booked:"};
  Label lblThings{fraChosen, "lblThings"};

  std::array<WizardPage, kPages> pages;
  BookingParts parts;
  BookingRecord& record = parts.record;
  RequesterPanel& requester = parts.requester;
  TimesPanel& times = parts.times;
  PlacePanel& place = parts.place;
  Label lblBookingNote{pages[kNotesPage].entry, "lblBookingNote", "Booking &Note:"};
  TextBox txtBookingNote{pages[kNotesPage].entry, "txtBookingNote"};

  Button cmdPrevious{*this, "cmdPrevious", "< Previ&ous"};
  Button cmdNext{*this, "cmdNext", "Next >"};
  Button cmdCancel{*this, "cmdCancel", "Cancel"};

 private:
  using Check = bool (frmBookWiz::*)();
  static const std::array<Check, kPages> kChecks;

  void goOnByEnter(TextBox& field, std::function<bool()> hasBarcode);
  void arrange();
  void readHelp();
  void showPage(int next);
  /// Where a page begins.
  Control& firstControl();
  void partsChanged();
  /// Shows the booking so far, and allows to go on where the page has what it asks for.
  void showChosen();
  std::string requesterText() const;
  bool mayGoOn() const;

  // What is checked when the operator goes on from a page; true when nothing speaks against it.
  bool hasNoCheck() { return true; }
  bool timesAreInOrder();
  bool mediaAreFree();
  bool placeSuits();
  bool equipmentIsFree();

  void finish();
  [[nodiscard]] bool isStored();
  void showCreated();

  App& app_;
  Ask ask_;
  int reached_ = kRequesterPage;  ///< the last page that was shown
  bool finished_ = false;
};

}  // namespace vantry

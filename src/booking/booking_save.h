#pragma once

#include <string_view>

namespace vantry {

class App;
class frmBooking;

/// One save of the editor's booking: a fixed order of steps, each of which may stop it. Nothing that was
/// stored is undone.
class BookingSave {
 public:
  BookingSave(App& app, frmBooking& window);
  /// Runs the steps; the window's `SaveOk` tells whether the end was reached.
  void run();

 private:
  enum class Outcome {
    Next,    ///< the next step follows
    Failed,  ///< the save has failed
    Stopped  ///< the save ends without a failure: the operator wanted no more
  };
  using Step = Outcome (BookingSave::*)();
  static const Step kSteps[];

  Outcome nobodyHasChangedIt();
  Outcome requesterIsKnown();
  Outcome timesAreInOrder();
  Outcome placeIsKnown();
  Outcome placeSuits();
  Outcome calendarAllows();
  Outcome itemLimitAllows();
  Outcome isNotEmpty();
  Outcome equipmentLimitAllows();
  Outcome itemsAreFree();
  Outcome equipmentIsFree();
  Outcome isStored();
  Outcome isShownAsUpdated();
  Outcome isShownAsNew();
  Outcome commandsAreAllowed();
  Outcome listIsRefreshed();

  void takeFields();
  void addNumber(std::string_view tag, int number);
  void addTimes(bool withDays);
  int send(std::string_view code);
  Outcome tell(int tab, std::string_view text);
  Outcome reported(int rc, std::string_view code);
  Outcome refused(int rc, std::string_view code);
  void showCreated();
  void showAll();
  static Outcome next(bool goOn) { return goOn ? Outcome::Next : Outcome::Failed; }

  App& app_;
  frmBooking& w_;
  bool isNew_;
  bool hasMedia_ = false;
  bool hasEquipment_ = false;
};

}  // namespace vantry

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
  /// Runs the steps. The window's `SaveOk` tells whether the end was reached.
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
  Outcome isAllowed();
  Outcome isStored();
  Outcome isShown();
  Outcome listIsRefreshed();

  Outcome tell(int tab, std::string_view text);
  void showUpdated();
  void showCreated();
  void showAll();
  static Outcome next(bool goOn) { return goOn ? Outcome::Next : Outcome::Failed; }

  App& app_;
  frmBooking& w_;
  bool isNew_;
};

}  // namespace vantry

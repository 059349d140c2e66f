#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lists/main_view.h"
#include "platform/controls.h"
#include "platform/datetime.h"
#include "platform/fields.h"

namespace vantry {

struct PickListKind;
struct ViewRow;

/// A list of what staff have to fetch for the bookings of a date, or of a span: the equipment, or the items.
/// It is read when the operator asks for it.
class PickListView : public MainView {
 public:
  PickListView(const MainParts& parts, Frame& frame, const ViewRow& view);

  ControlArray<OptionButton> optDateRange;
  DateField fpdSpecificDate;
  Button cmdToday;
  Label lblNeedDate;
  DateField fpdNeedDate;
  TimeField fpNeedTime;
  Label lblFinishDate;
  DateField fpdFinishDate;
  TimeField fpFinishTime;
  Button cmdGetLists;
  Grid faDaemon;
  Button cmdPrintDaemon;

  void load() override;
  /// The list stays as it was read, with its span.
  void open() override;
  ReplyList* list() override { return &list_; }
  std::string reportText() const override { return span_; }

  void optDateRange_Click();
  void cmdToday_Click();
  void cmdGetLists_Click();
  void faDaemon_RightClick();

 private:
  /// The two moments of the list, both included.
  struct Span {
    DateTime from;
    DateTime until;
  };

  void connect();
  void arrange(Frame& frame);
  bool takesOneDate() const { return optDateRange(0).Value; }
  /// The span that was entered; nothing when a box has told what is wrong with it.
  std::optional<Span> enteredSpan();
  std::optional<Span> enteredDate();
  std::optional<Span> enteredRange();
  bool refuse(std::string_view text);
  bool isTooFar(const Date& date);
  /// Lets the server give things to the wishes of the span, when the operator wants that.
  void offerAssignment(const Span& span);
  void addDesks();
  void fillList();
  /// Reads enumeration and chronology of each item.
  void readItems();
  void enablePrinting(bool on);
  void showSpan();

  const PickListKind& kind_;
  ReplyList list_{parts(), faDaemon};
  std::string span_;                  ///< of the list, as the heading tells it; empty before the first
  std::vector<std::string> numbers_;  ///< confirmation numbers of the rows as they were read
};

}  // namespace vantry

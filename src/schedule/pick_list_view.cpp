#include "schedule/pick_list_view.h"

#include <stdexcept>

#include "platform/text.h"
#include "platform/wiring.h"
#include "schedule/main_views.h"
#include "schedule/monitor_view.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr ReplyColumn text(std::string_view heading, std::string_view tag, int width = 1500) {
  return {.heading = heading, .tag = tag, .width = width};
}

// clang-format off
constexpr ReplyColumn kPieces[] = {
    text("ID", tags::BOOKID, 0), text("First Name", tags::PFN), text("Last Name", tags::PLN),
    text("Equipment number", tags::ENO), text("Equipment barcode", tags::EQBAR),
    text("Equipment location", tags::LNA), text("Equipment room", tags::EQIR),
    text("Staff start date & time", tags::UTIME, 2000), text("Equipment type", tags::ETY),
    text("Booking type", tags::BTYP)};
constexpr ReplyColumn kItems[] = {
    text("ID", tags::BOOKID, 0), text("First Name", tags::PFN), text("Last Name", tags::PLN),
    text("Staff start date & time", tags::UTIME, 2000), text("Normalized Title", tags::NTTL, 2500),
    text("Title", tags::MBIBT, 2500), text("Normalized Call Number", tags::NCN), text("Call Number", tags::CN),
    text("Enumeration", tags::EN), text("Chronology", tags::CH), text("location", tags::LNA),
    text("Barcode", tags::BNO), text("Item type", tags::MDSC), text("Booking type", tags::BTYP),
    text("Bib ID", tags::BI), text("MFHD ID", tags::MI), text("Item ID", tags::IM)};
// clang-format on

/// Places of columns that commands read, in the list of items.
constexpr int kEnumeration = 8;
constexpr int kChronology = 9;
constexpr int kHoldings = 15;
constexpr int kItem = 16;

/// So many days from today on a list can be made.
constexpr int kDaysAhead = 2;
constexpr Time kDayStart{0, 0, 0};
constexpr Time kDayEnd{23, 59, 59};

}  // namespace

/// The twins: what their controls are called, what they ask for, what they say.
struct PickListKind {
  ViewId view;
  int index;  ///< of the list in its array
  std::string_view options;
  std::string_view today;
  std::string_view get;
  std::string_view code;
  ReplyLayout layout;
  bool readsItems;
  std::string_view nothing;
};

namespace {

constexpr PickListKind kKinds[] = {
    {ViewId::EquipmentList,
     6,
     "optEqpDateRange",
     "cmdEqpPLToday",
     "cmdGetEqpLists",
     "GEPL",
     {.columns = kPieces, .walk = tags::CNUM},
     false,
     "No equipment scheduled to be picked up for the time range."},
    {ViewId::ItemList,
     7,
     "optItemDateRange",
     "cmdItemPLToday",
     "cmdGetItemLists",
     "GIPL",
     {.columns = kItems, .walk = tags::CNUM},
     true,
     "No items scheduled to be picked up for the time range."},
};

const PickListKind& kindOf(ViewId view) {
  for (const PickListKind& kind : kKinds) {
    if (kind.view == view) return kind;
  }
  throw std::logic_error("no pick list");
}

/// Minutes since some moment.
std::int64_t minutesOf(const DateTime& moment) {
  return (std::int64_t{dayNumber(moment.date)} * 24 + moment.time.hour) * 60 + moment.time.minute;
}

}  // namespace

PickListView::PickListView(const MainParts& mainParts, Frame& frame, const ViewRow& view)
    : MainView(mainParts, frame),
      optDateRange(std::string(kindOf(view.id).options)),
      fpdSpecificDate(frame, arrayName("fpdSpecificDate", kindOf(view.id).index)),
      cmdToday(frame, std::string(kindOf(view.id).today), "Toda&y"),
      lblNeedDate(frame, arrayName("lblNeedDate", kindOf(view.id).index), "fr&om:"),
      fpdNeedDate(frame, arrayName("fpdNeedDate", kindOf(view.id).index)),
      fpNeedTime(frame, arrayName("fpNeedTime", kindOf(view.id).index)),
      lblFinishDate(frame, arrayName("lblFinishDate", kindOf(view.id).index), "to:"),
      fpdFinishDate(frame, arrayName("fpdFinishDate", kindOf(view.id).index)),
      fpFinishTime(frame, arrayName("fpFinishTime", kindOf(view.id).index)),
      cmdGetLists(frame, std::string(kindOf(view.id).get), "&Get List"),
      faDaemon(frame, arrayName("faDaemon", kindOf(view.id).index)),
      cmdPrintDaemon(frame, arrayName("cmdPrintDaemon", kindOf(view.id).index), "&Print"),
      kind_(kindOf(view.id)) {
  optDateRange.add(frame, "&Specific Date");
  optDateRange.add(frame, "Date &Range");
  fpdSpecificDate.AccessibleName = "Specific date";
  fpNeedTime.AccessibleName = "Start time";
  fpFinishTime.AccessibleName = "End time";
  faDaemon.AccessibleName = plainCaption((parts().menus.*view.menu).Caption.get());
  cmdGetLists.Default = true;  // counts while its view shows
  connect();
  arrange(frame);
}

void PickListView::connect() {
  for (int place : {0, 1}) on(optDateRange(place).Click, this, &PickListView::optDateRange_Click);
  on(cmdToday.Click, this, &PickListView::cmdToday_Click);
  on(cmdGetLists.Click, this, &PickListView::cmdGetLists_Click);
  on(faDaemon.RightClick, this, &PickListView::faDaemon_RightClick);
  faDaemon.Click = [this] { setEnabled(faDaemon.hasData(), sort); };
  parts().commands.printListing.link(cmdPrintDaemon);
  list_.hooks.filled = [this](int) { numbers_.push_back(app().message.Get(tags::CNUM)); };
  list_.hooks.progress = [this](int row, int total) { parts().showProgress(row, total); };
}

void PickListView::arrange(Frame& frame) {
  frame.Layout = Column{Row{optDateRange(0), fpdSpecificDate, cmdToday, Stretch{}},
                        Row{optDateRange(1), lblNeedDate, fpdNeedDate, fpNeedTime, lblFinishDate,
                            fpdFinishDate, fpFinishTime, Gap{}, cmdGetLists, Stretch{}},
                        faDaemon, Row{Stretch{}, cmdPrintDaemon}};
}

void PickListView::load() {
  list_.build(kind_.layout);
  span_.clear();
  for (DateField* date : {&fpdSpecificDate, &fpdNeedDate, &fpdFinishDate}) date->clear();
  for (TimeField* time : {&fpNeedTime, &fpFinishTime}) time->clear();
  optDateRange(0).Value = true;
  optDateRange_Click();
}

void PickListView::open() {
  showSpan();
  enablePrinting(faDaemon.hasData());
}

void PickListView::showSpan() {
  if (!span_.empty() && showHeading) showHeading(span_);
}

void PickListView::optDateRange_Click() {
  setEnabled(takesOneDate(), fpdSpecificDate, cmdToday);
  setEnabled(!takesOneDate(), fpdNeedDate, fpNeedTime, fpdFinishDate, fpFinishTime);
}

void PickListView::cmdToday_Click() {
  fpdSpecificDate.Value = app().clock.now().date;
}

bool PickListView::refuse(std::string_view sentence) {
  plainBox(app().desktop, std::string(sentence));
  return true;
}

bool PickListView::isTooFar(const Date& date) {
  if (dayNumber(date) - dayNumber(app().clock.now().date) <= kDaysAhead) return false;
  return refuse("No pick up list can be made after next 2 days, please reselect date.");
}

std::optional<PickListView::Span> PickListView::enteredSpan() {
  return takesOneDate() ? enteredDate() : enteredRange();
}

std::optional<PickListView::Span> PickListView::enteredDate() {
  if (fpdSpecificDate.isEmpty()) {
    refuse("Please enter a valid date for Specific Date.");
    return std::nullopt;
  }
  const Date date = *fpdSpecificDate.Value.get();
  if (isTooFar(date)) return std::nullopt;
  return Span{{date, kDayStart}, {date, kDayEnd}};
}

std::optional<PickListView::Span> PickListView::enteredRange() {
  struct Check {
    bool fails;
    std::string_view text;
  };
  for (const Check& check : {Check{fpdNeedDate.isEmpty(), "Please enter a valid date for start date."},
                             Check{fpdFinishDate.isEmpty(), "Please enter a valid date for end date."},
                             Check{fpNeedTime.isEmpty(), "Start Time is invalid!"},
                             Check{fpFinishTime.isEmpty(), "End Time is invalid!"}}) {
    if (check.fails && refuse(check.text)) return std::nullopt;
  }
  const Span span{{*fpdNeedDate.Value.get(), *fpNeedTime.Value.get()},
                  {*fpdFinishDate.Value.get(), *fpFinishTime.Value.get()}};
  if (isTooFar(span.from.date) || isTooFar(span.until.date)) return std::nullopt;
  if (span.from.date > span.until.date) {
    refuse("Start Date should not be later than End Date.");
    return std::nullopt;
  }
  if (span.from.date == span.until.date && span.from.time > span.until.time) {
    refuse("Start time should not be later than End time.");
    return std::nullopt;
  }
  return span;
}

void PickListView::cmdGetLists_Click() {
  const std::optional<Span> span = enteredSpan();
  if (!span) return;
  list_.clear();
  enablePrinting(false);
  offerAssignment(*span);
  const std::string from = serverTime(span->from);
  const std::string until = serverTime(span->until);
  app().message.Add(tags::CLI, app().context.locationId);
  addDesks();
  parts().showMessage("Requesting Data From Server...");
  span_ = from + " to " + until;
  showSpan();
  const bool read =
      ask()(kind_.code, {{tags::STIME, from}, {tags::ETIME_, until}, {tags::OI, app().context.operatorId}},
            [this] { fillList(); });
  if (!read) return;
  if (!faDaemon.hasData()) plainBox(app().desktop, std::string(kind_.nothing));
  if (kind_.readsItems) readItems();
}

/// The hours to the end of the span count for all kinds of bookings: whatever is on the list can then have
/// its thing.
void PickListView::offerAssignment(const Span& span) {
  const std::int64_t end =
      takesOneDate() ? minutesOf({span.from.date, kDayStart}) + 1440 : minutesOf(span.until);
  const std::int64_t minutes = end - minutesOf(app().clock.now());
  const std::int64_t hours = (minutes + 59) / 60;
  if (val(app().preferences.PickUpHours) * 60 >= static_cast<double>(minutes)) return;
  if (!askBox(app().desktop, Box::Kind::Plain,
              "Do you want to make generic assignments for the time period you set?"))
    return;
  addWatchedLocations(app());
  const std::string ahead = std::to_string(hours);
  ask()("GECN", {{tags::DHRS, ahead}, {tags::RHRS, ahead}, {tags::PHRS, ahead}}, [] {});
}

/// Without a choice of locations only the desk's own counts here.
void PickListView::addDesks() {
  const std::string& chosen = app().monitorLocations;
  if (chosen.empty() || chosen == "0") return app().message.Add(tags::LOC, app().context.locationId);
  addChosenLocations(app());
}

void PickListView::fillList() {
  numbers_.clear();
  const int rows = list_.fill();
  parts().showProgress(rows, rows);
  enablePrinting(rows > 0);
}

void PickListView::readItems() {
  for (int row = faDaemon.FixedRows; row < faDaemon.Rows; ++row) {
    const std::string item = list_.text(row, kItem);
    if (item.empty()) continue;
    const std::string& number = numbers_[static_cast<std::size_t>(row - faDaemon.FixedRows)];
    if (!ask().orWarn("Failed to retrieve Enumeration and Chronology information for the booking: " + number,
                      "GID", {{tags::MI, list_.text(row, kHoldings)}, {tags::IM, item}}))
      continue;
    list_.setText(row, kEnumeration, app().message.Get(tags::EN));
    list_.setText(row, kChronology, app().message.Get(tags::CH));
  }
}

void PickListView::enablePrinting(bool on) {
  allowListing(on);
}

void PickListView::faDaemon_RightClick() {
  MainMenus& m = parts().menus;
  setVisible(false, m.mnuPopupSchedulerEdit, m.mnuPopupSchedulerCancel, m.mnuPopupSchedulerCharge,
             m.mnuPopupSchedulerDischarge, m.mnuPopupSchedulerItems);
  app().desktop.popupMenu(m.mnuPopupScheduler, nullptr);
}

}  // namespace vantry

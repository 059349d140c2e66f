// The checks of a booking's times, and the list of several.
#include "booking/times_panel.h"

#include "platform/desktop.h"
#include "platform/text.h"

namespace vantry {

static constexpr std::string_view kStartLater =
    "Booking start date/time is later than booking end date/time!";

bool TimesPanel::isValid() const {
  const struct {
    bool missing;
    std::string_view text;
  } checks[] = {{fpdNeedDate.isEmpty(), "Date Needed is invalid!"},
                {txtNeedTime.isEmpty(), "Time Needed is invalid!"},
                {fpdFinishDate.isEmpty(), "Date Finished is invalid!"},
                {txtFinishTime.isEmpty(), "Time Finished is invalid!"}};
  for (const auto& check : checks) {
    if (!check.missing) continue;
    informationBox(app_.desktop, std::string(check.text));
    return false;
  }
  return true;
}

bool TimesPanel::CheckTimes() {
  return isMultiple() ? checkList() : checkSingle();
}

bool TimesPanel::checkSingle() {
  if (!isValid()) return false;
  const BookingTime time = singleTime();
  if (time.start > time.end) {
    raise(showTab);
    txtNeedTime.SetFocus();
    criticalBox(app_.desktop, std::string(kStartLater));
    return false;
  }
  if (datesExpire()) {
    raise(showTab);
    fpdFinishDate.SetFocus();
    return false;
  }
  return true;
}

bool TimesPanel::checkList() {
  // Whether the rows overlap is for the server to find.
  for (int row = 1; row < faDatesTimes.Rows; ++row) {
    const BookingTime time = timeOfRow(row);
    if (time.start > time.end) {
      informationBox(app_.desktop, std::string(kStartLater));
      return false;
    }
    if (isPastExpiry(parseDate(list_.text(row, kFinishDate), app_.windows.shortDateFormat()))) {
      tellExpiry();
      return false;
    }
  }
  return true;
}

// The end of the requester's privileges. The requester may be named, or be another one, after a date was
// typed: so it is checked when a date is left and again when the dates are taken.

bool TimesPanel::isPastExpiry(const std::optional<Date>& date) const {
  if (record_.isAdministrative() || record_.RequesterId == 0 || fpdExpireDate.isEmpty()) return false;
  return date > fpdExpireDate.Value.get();
}

void TimesPanel::tellExpiry() {
  informationBox(app_.desktop, "Booking date cannot be past requester's expiration date of " +
                                   fpdExpireDate.shortDate() + ".");
}

bool TimesPanel::expires(DateField& field) {
  if (!isPastExpiry(field.Value.get())) return false;
  tellExpiry();
  field.Value = fpdExpireDate.Value;
  return true;
}

bool TimesPanel::datesExpire() {
  const bool needExpires = isPastExpiry(fpdNeedDate.Value.get());
  if (!expires(fpdFinishDate)) return expires(fpdNeedDate);
  if (needExpires) fpdNeedDate.Value = fpdExpireDate.Value;  // one message is enough for both
  return true;
}

// Leaving a date.

void TimesPanel::fpdNeedDate_LostFocus() {
  if (!leaveDate(fpdNeedDate, "Date Needed")) return;
  expires(fpdNeedDate);  // first, so that the other date is not dragged past it
  if (fpdNeedDate.Value.get() > fpdFinishDate.Value.get()) fpdFinishDate.Value = fpdNeedDate.Value;
}

void TimesPanel::fpdFinishDate_LostFocus() {
  if (!leaveDate(fpdFinishDate, "Date Finished")) return;
  expires(fpdFinishDate);
  if (fpdFinishDate.Value.get() < fpdNeedDate.Value.get()) fpdNeedDate.Value = fpdFinishDate.Value;
}

bool TimesPanel::leaveDate(DateField& field, std::string_view name) {
  if (!field.isEmpty()) return true;
  informationBox(app_.desktop, "Please enter a valid date for " + std::string(name) + ".");
  raise(showTab);
  field.SetFocus();
  return false;
}

// The list.

void TimesPanel::enableListCommands() {
  const bool any = faDatesTimes.hasData();
  cmdEditDate.Enabled = any;
  cmdDeleteDate.Enabled = any;
}

void TimesPanel::cmdMultipleBookings_Click() {
  const bool open = intOf(cmdMultipleBookings.Tag.get()) != 1;
  cmdMultipleBookings.Tag = open ? "1" : "0";
  cmdMultipleBookings.Caption = open ? "<< &Single Booking" : "&Multiple Bookings >>";
  fraMultiBooking.Visible = open;
  raise(Changed);
}

void TimesPanel::endMultiple() {
  if (intOf(cmdMultipleBookings.Tag.get()) != 1) return;
  const BookingTime only = times().front();
  list_.clear();
  enableListCommands();
  cmdMultipleBookings_Click();
  showTimes(only.start, only.end);
}

/// Asks where the requester has as many bookings as allowed, with one more time in the list; false when it is
/// not to be.
bool TimesPanel::mayAddBooking() {
  // Each time but the first is one more booking. The list may be older than its requester, whose count is the
  // server's: so the two are added up only here.
  const int count = record_.BookingCount + faDatesTimes.Rows - faDatesTimes.FixedRows;
  const bool limited = record_.RequesterId != 0 && record_.BookingMax != kUnlimitedBookings;
  if (!limited || count <= record_.BookingMax) return true;
  return questionBox(app_.desktop, "Requester has reached maximum allowed number of bookings (" +
                                       std::to_string(record_.BookingMax) + ").  Continue anyway?");
}

ListRow TimesPanel::enteredTime() const {
  return {fpdNeedDate.shortDate(),  fpdFinishDate.shortDate(),       txtNeedTime.textAmPm(),
          txtFinishTime.textAmPm(), std::to_string(NeedTimeIndex()), std::to_string(FinishTimeIndex())};
}

void TimesPanel::cmdAddDate_Click() {
  if (!isValid() || datesExpire()) return;
  if (editedRow_ != 0) {
    list_.setRow(editedRow_, enteredTime());
  } else if (mayAddBooking()) {
    list_.addRow(enteredTime());
  } else {
    return;
  }
  faDatesTimes.Row = editedRow_ != 0 ? editedRow_ : faDatesTimes.Rows - 1;
  enableListCommands();
  // With two times there is no way back to a single one but emptying the list.
  if (faDatesTimes.Rows > 2) cmdMultipleBookings.Visible = false;
  endEditing();
  changed();
}

void TimesPanel::endEditing() {
  editedRow_ = 0;
  cmdAddDate.Caption = "&Add";
}

void TimesPanel::cmdEditDate_Click() {
  const int row = faDatesTimes.Row;
  if (row < faDatesTimes.FixedRows) return;
  const auto text = [&](TimeColumn column) { return list_.text(row, column); };
  fpdNeedDate.Value = parseDate(text(kNeedDate), app_.windows.shortDateFormat());
  fpdFinishDate.Value = parseDate(text(kFinishDate), app_.windows.shortDateFormat());
  timeLine_.restore(parseClockTime(text(kNeedTime)), parseClockTime(text(kFinishTime)),
                    {intOf(text(kNeedIndex)), intOf(text(kFinishIndex))});
  editedRow_ = row;
  cmdAddDate.Caption = "Update";
}

void TimesPanel::cmdDeleteDate_Click() {
  const int row = faDatesTimes.Row;
  if (row < faDatesTimes.FixedRows) return;
  faDatesTimes.RemoveItem(row);
  endEditing();
  enableListCommands();
  // A booking that is stored stays a single one.
  if (!faDatesTimes.hasData()) cmdMultipleBookings.Visible = record_.BookingId == 0;
  changed();
}

}  // namespace vantry

#include "schedule/frmSched.h"

#include "booking/modBooking_times.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

struct TabRow {
  const char* caption;
  const char* toolTip;
  std::string_view code;  ///< the request for its list of calendars
};

constexpr TabRow kTabRows[frmSched::kTabs] = {
    {"Delivery", "Calendar for Deliveries", "GDELCA"},
    {"Library/Media Center Scheduled", "Calendar for Library/Media Center Rooms", "GROMCA"},
    {"Pickup", "Calendar for Pickups", "GPICCA"},
};

struct WeekdayRow {
  const char* caption;
  const char* label;  ///< name of the control with its hours
  std::string_view open, opens, closes;
};

constexpr WeekdayRow kWeek[frmSched::kWeekdays] = {
    {"Sunday:", "lblSunHours", tags::SOP, tags::SHBE, tags::SHEE},
    {"Monday:", "lblMonHours", tags::MOP, tags::MHBE, tags::MHEE},
    {"Tuesday:", "lblTueHours", tags::TOP, tags::THBE, tags::THEE},
    {"Wednesday:", "lblWedHours", tags::WOP, tags::WHBE, tags::WHEE},
    {"Thursday:", "lblThuHours", tags::THOP, tags::THHBE, tags::THHEE},
    {"Friday:", "lblFriHours", tags::FOP, tags::FHBE, tags::FHEE},
    {"Saturday:", "lblSatHours", tags::SASOP, tags::SAHBE, tags::SAHEE},
};

constexpr const char* kNeverRead = "Not Available";
constexpr const char* kClosed = "Unavailable";

}  // namespace

struct frmSched::Pane {
  Pane(Frame& frame, int index)
      : lblCalendar(frame, arrayName("lblCalendar", index), "Calendar:"),
        cboCalendar(frame, arrayName("cboCalendar", index)),
        lblCalStartDate(frame, arrayName("lblCalStartDate", index), "Start Date:"),
        dtCalStartDate(frame, arrayName("dtCalStartDate", index)),
        lblCalEndDate(frame, arrayName("lblCalEndDate", index), "End Date:"),
        dtCalEndDate(frame, arrayName("dtCalEndDate", index)),
        lblExceptions(frame, arrayName("lblExceptions", index), "Exceptions:"),
        lstExceptions(frame, arrayName("lstExceptions", index)) {
    dtCalStartDate.Enabled = dtCalEndDate.Enabled = false;
    for (std::size_t day = 0; day < kWeekdays; ++day) {
      lblDay[day] = std::make_unique<Label>(frame, arrayName("lblDay", index), kWeek[day].caption);
      lblHours[day] = std::make_unique<Label>(frame, arrayName(kWeek[day].label, index), kNeverRead);
      lblHours[day]->ReadOnlyField = true;
    }
    frame.Layout = Column{
        Fields{lblCalendar, cboCalendar, lblCalStartDate,
               Row{dtCalStartDate, Gap{}, lblCalEndDate, dtCalEndDate, Stretch{}}},
        Gap{},
        Fields{*lblDay[0], *lblHours[0], *lblDay[1], *lblHours[1], *lblDay[2], *lblHours[2], *lblDay[3],
               *lblHours[3], *lblDay[4], *lblHours[4], *lblDay[5], *lblHours[5], *lblDay[6], *lblHours[6]},
        Gap{},
        lblExceptions,
        lstExceptions};
  }

  Label lblCalendar;
  ComboBox cboCalendar;
  Label lblCalStartDate;
  DateField dtCalStartDate;
  Label lblCalEndDate;
  DateField dtCalEndDate;
  std::array<std::unique_ptr<Label>, kWeekdays> lblDay;
  std::array<std::unique_ptr<Label>, kWeekdays> lblHours;
  Label lblExceptions;
  ListBox lstExceptions;
};

frmSched::frmSched(App& app) : Form(app.windows, "frmSched"), app_(app), ask_(app.global, Name()) {
  Caption = "Booking Calendars";
  Tag = "Calendars";  // holds no work: it closes by itself at a log-off
  for (int index = 0; index < kTabs; ++index) {
    Frame& frame = fraSched.add(*this, kTabRows[index].caption, 0);
    auto& pane = panes_[static_cast<std::size_t>(index)] = std::make_unique<Pane>(frame, index);
    on(pane->cboCalendar.Click, this, &frmSched::cboCalendar_Click, index);
  }
  setVisible(false, txtSTime, txtETime, dtDate);
  std::vector<TabPages::Page> pages;
  for (int index = 0; index < kTabs; ++index)
    pages.push_back({kTabRows[index].caption, fraSched(index), {}, kTabRows[index].toolTip});
  pages_.emplace(tabSched, std::move(pages));
  cmdClose.Cancel = true;
  on(cmdClose.Click, this, &frmSched::cmdClose_Click);
  Layout = Column{tabSched, fraSched(0), fraSched(1), fraSched(2), Row{Stretch{}, cmdClose}};
}

frmSched::~frmSched() = default;

void frmSched::Form_Load() {
  app_.tools.PrepareForm(*this);
  for (int index = 0; index < kTabs; ++index) listCalendars(index);
  for (int index = 0; index < kTabs; ++index) selectCurrent(index);
}

/// A list that fails stays empty and leaves the others usable.
void frmSched::listCalendars(int index) {
  const auto place = static_cast<std::size_t>(index);
  current_[place] = -1;
  if (!ask_(kTabRows[index].code)) return warningBox(app_.desktop, "Could not retrieve calendars.");
  ComboBox& calendars = panes_[place]->cboCalendar;
  while (app_.message.NextRecord(tags::MCID)) {
    if (app_.message.Get(tags::MCCAL) == "Y") current_[place] = calendars.ListCount();
    calendars.AddItem(app_.message.Get(tags::MCDESC), app_.message.Get(tags::MCID));
  }
}

void frmSched::selectCurrent(int index) {
  const auto place = static_cast<std::size_t>(index);
  if (current_[place] >= 0) panes_[place]->cboCalendar.ListIndex = current_[place];
}

void frmSched::cboCalendar_Click(int index) {
  Pane& pane = *panes_[static_cast<std::size_t>(index)];
  const int chosen = pane.cboCalendar.ListIndex;
  if (chosen < 0) return;
  if (!ask_("GCDTL", {{tags::MCID, pane.cboCalendar.ItemData(chosen)}}))
    return warningBox(app_.desktop, "Calendar not found!");
  const std::string id = app_.message.Get(tags::MCID);
  showSpan(pane);
  showHours(pane);
  showExceptions(pane, id);
}

void frmSched::showSpan(Pane& pane) {
  ServerTools::PutControlDate(app_.message.Get(tags::STIME), pane.dtCalStartDate);
  ServerTools::PutControlDate(app_.message.Get(tags::ETIME_), pane.dtCalEndDate);
}

void frmSched::showHours(Pane& pane) {
  const TagMessage& message = app_.message;
  for (std::size_t day = 0; day < kWeekdays; ++day) {
    const WeekdayRow& row = kWeek[day];
    pane.lblHours[day]->Caption =
        hoursText(message.Get(row.open), message.Get(row.opens), message.Get(row.closes));
  }
}

/// An hour of a calendar through the control that shows times; one that is no time of a day stays as it
/// reads.
static std::string openingTime(std::string_view text, TimeField& time) {
  const std::string formatted = FormatClockTime(text);
  time.Value = parseClockTime(formatted);
  return time.isEmpty() ? formatted : time.textAmPm();
}

std::string frmSched::hoursText(std::string_view open, std::string_view opens, std::string_view closes) {
  if (open != "Y") return kClosed;
  return openingTime(opens, txtSTime) + " to " + openingTime(closes, txtETime);
}

void frmSched::showExceptions(Pane& pane, std::string_view id) {
  pane.lstExceptions.Clear();
  if (!ask_("GCALEX", {{tags::MCID, id}})) return;
  const TagMessage& message = app_.message;
  while (app_.message.NextRecord(tags::EXDT)) {
    ServerTools::PutControlDate(message.Get(tags::EXDT), dtDate);
    pane.lstExceptions.AddItem(
        dtDate.shortDate() + ":  " +
        hoursText(message.Get(tags::EXOP), message.Get(tags::EXOPH), message.Get(tags::EXCLH)));
  }
}

void frmSched::cmdClose_Click() {
  Unload();
}

void ShowBookingCalendars(App& app) {
  for (int i = 0; i < app.windows.Count(); ++i) {
    if (auto* standing = dynamic_cast<frmSched*>(&app.windows[i])) {
      standing->WindowState = FormState::Normal;
      return standing->SetFocus();
    }
  }
  app.windows.keep(std::make_unique<frmSched>(app)).Show();
}

}  // namespace vantry

#include "booking/frmErrorReport.h"

#include <algorithm>

#include "booking/modBooking_times.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

/// One report: its caption, and either the captions of its two grids or the tag by which its lines are
/// walked.
struct ErrorReportRow {
  int code;
  std::string_view caption;
  std::string_view generic;
  std::string_view specific;
  std::string_view walk;  ///< of a report in lines; empty for one in two grids
};

namespace {

constexpr ErrorReportRow kReports[] = {
    {codes::NotCharged, "Booking Not Charged", "", "", tags::CHFA},
    {codes::MediaConflict, "Media Items Unavailable for Booking",
     "Generic Media Items:", "Specific Media Items:", ""},
    {codes::EquipmentConflict, "Equipment Unavailable for Booking",
     "Generic Equipment Conflicts:", "Specific Equipment:", ""},
    {codes::CalendarConflict, "Booking Calendar Conflict", "", "", tags::VUF},
};

/// A line of a report. Marks in braces are replaced by values: {D} and {T} for date and time of the boundary,
/// {C} for the clock time in DATE, a tag for its value.
struct LineRow {
  int report;
  int code;
  std::string_view boundary;  ///< the tag of the time that the line is about
  bool onlyWithBoundary;      ///< no line without it
  std::string_view text;
};

constexpr std::string_view kStart = tags::STIME;
constexpr std::string_view kEnd = tags::ETIME_;

constexpr LineRow kLines[] = {
    {codes::CalendarConflict, 164, kStart, false, "{D} not valid for any calendars"},
    {codes::CalendarConflict, 165, kEnd, false, "{D} not valid for any calendars"},
    {codes::CalendarConflict, 166, kStart, true, "Library/Media Center not open on {D} when booking starts"},
    {codes::CalendarConflict, 166, kEnd, true, "Library/Media Center not open on {D} when booking ends"},
    {codes::CalendarConflict, 168, kStart, true,
     "Exception Date:  Library/Media Center not open on {D} at {T} (booking start date/time)"},
    {codes::CalendarConflict, 168, kEnd, true,
     "Exception Date:  Library/Media Center not open on {D} at {T} (booking end date/time)"},
    {codes::CalendarConflict, 169, kStart, false,
     "Booking starts ({T}) before Library/Media Center opens at {C}"},
    {codes::CalendarConflict, 170, kEnd, false,
     "Booking ends ({T}) after Library/Media Center closes at {C}"},
    {codes::CalendarConflict, 171, kStart, false,
     "Booking starts ({T}) after Library/Media Center closes at {C}"},
    {codes::CalendarConflict, 172, kEnd, false,
     "Booking ends ({T}) before Library/Media Center opens at {C}"},

    {codes::NotCharged, 107, "", false, "Room already charged:  {RNM}"},
    {codes::NotCharged, 125, "", false, "Equipment already charged:  {ENO} - {ETY}"},
    {codes::NotCharged, 126, "", false, "Media already charged:  {TITL}"},
    {codes::NotCharged, 127, kStart, false, "Booking charged too early:  cannot charge before {T} on {D}"},
    {codes::NotCharged, 134, "", false, "Generic room could not be assigned"},
    {codes::NotCharged, 135, "", false, "Generic item could not be assigned:  {TITL}"},
    {codes::NotCharged, 136, "", false, "Generic equipment could not be assigned:  {ETY}"},
    {codes::NotCharged, 175, "", false, "Equipment cannot be charged:  {ENO} - {ETY} - Status:  {STY}"},
    // No blank behind this colon; this is deliberate.
    {codes::NotCharged, 176, "", false, "Room cannot be charged:  {RNM} - Status:{STY}"},
    {codes::NotCharged, 177, "", false, "Media cannot be charged:  {TITL} - Status:  {STY}"},
};

constexpr ReplyColumn kErrorColumns[] = {{"Error"}};
constexpr ReplyColumn kGenericColumns[] = {{"Error"},    {"Start Date"},       {"Start Time"},   {"End Date"},
                                           {"End Time"}, {"Number Available"}, {"Number Booked"}};
constexpr ReplyColumn kSpecificColumns[] = {{"Error"},    {"Start Date"}, {"Start Time"},
                                            {"End Date"}, {"End Time"},   {"Conflicting Booking Number"}};

const ErrorReportRow* reportOf(int code) {
  const auto found = std::find_if(std::begin(kReports), std::end(kReports),
                                  [&](const ErrorReportRow& row) { return row.code == code; });
  return found == std::end(kReports) ? nullptr : &*found;
}

}  // namespace

frmErrorReport::frmErrorReport(App& app, int reportCode)
    : Form(app.windows, "frmErrorReport"), ReportCode(reportCode), app_(app) {
  lblHeading.Heading = true;
  dtDate.Visible = false;
  txtTime.Visible = false;
  faErrors.AccessibleName = "Reasons";
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  on(cmdOK.Click, this, &frmErrorReport::cmdOK_Click);
  ReplyLayout sentences = dialogLayout(kErrorColumns);
  sentences.widest = kWidestSentence;
  errors_.build(sentences);
  generic_.build(dialogLayout(kGenericColumns));
  specific_.build(dialogLayout(kSpecificColumns));
  Layout = Column{lblHeading,       Gap{},           faErrors,
                  lblGeneric,       faErrorsGeneric, lblSpecific,
                  faErrorsSpecific, Gap{},           Row{Stretch{}, cmdOK}};
}

void frmErrorReport::Form_Load() {
  app_.tools.PrepareForm(*this);
  const ErrorReportRow* report = reportOf(ReportCode);
  if (!report) {
    Unload();
    return;
  }
  layOut(*report);
  report->walk.empty() ? fillConflicts() : fillLines(*report);
}

void frmErrorReport::layOut(const ErrorReportRow& report) {
  const bool lines = !report.walk.empty();
  Caption = std::string(report.caption);
  lblHeading.Caption = std::string(report.caption);
  lblGeneric.Caption = std::string(report.generic);
  lblSpecific.Caption = std::string(report.specific);
  faErrorsGeneric.AccessibleName = report.generic;
  faErrorsSpecific.AccessibleName = report.specific;
  faErrors.Visible = lines;
  setVisible(!lines, lblGeneric, faErrorsGeneric, lblSpecific, faErrorsSpecific);
}

void frmErrorReport::Form_Activate() {
  cmdOK.SetFocus();
}

void frmErrorReport::cmdOK_Click() {
  Unload();
}

std::string frmErrorReport::dateText(std::string_view serverTime) {
  ServerTools::PutControlDate(serverTime, dtDate);
  return dtDate.shortDate();
}

std::string frmErrorReport::timeText(std::string_view serverTime) {
  ServerTools::PutControlTime(serverTime, txtTime);
  return txtTime.textAmPm();
}

/// The error, the four texts of the record's times, and the values of some tags.
ListRow frmErrorReport::withTimes(std::string error, std::initializer_list<std::string_view> lastTags) {
  const std::string start = app_.message.Get(tags::STIME);
  const std::string end = app_.message.Get(tags::ETIME_);
  ListRow cells = {std::move(error), dateText(start), timeText(start), dateText(end), timeText(end)};
  for (const std::string_view tag : lastTags) cells.push_back(app_.message.Get(tag));
  return cells;
}

void frmErrorReport::fillConflicts() {
  std::vector<ListRow> generic;
  std::vector<ListRow> specific;
  while (app_.message.NextRecord(tags::CNUM)) {
    const std::string error = thingName() + " not available";
    if (isSpecific()) {
      specific.push_back(withTimes(error, {tags::CNUM}));
    } else {
      generic.push_back(withTimes(error, {tags::VD1, tags::VD2}));
    }
  }
  generic_.fill(generic);
  specific_.fill(specific);
  hideEmpty();
}

/// Whether the record is about one thing, or about a wish for any of its kind.
bool frmErrorReport::isSpecific() const {
  if (ReportCode == codes::MediaConflict) return intOf(app_.message.Get(tags::IM)) != 0;
  return !trim(app_.message.Get(tags::CNUM)).empty();
}

std::string frmErrorReport::thingName() const {
  if (ReportCode == codes::MediaConflict) return app_.message.Get(tags::TITL);
  const std::string type = app_.message.Get(tags::ETY);
  if (!isSpecific()) return type;
  const std::string barcode = app_.message.Get(tags::BNO);
  const bool byBarcode = app_.preferences.Barcodes && !trim(barcode).empty();
  return type + " (" + (byBarcode ? barcode : app_.message.Get(tags::ENO)) + ")";
}

void frmErrorReport::fillLines(const ErrorReportRow& report) {
  std::vector<ListRow> lines;
  while (app_.message.NextRecord(report.walk)) addLines(lines, intOf(app_.message.Get(report.walk)));
  errors_.fill(lines);
}

/// A code outside the table adds no line.
void frmErrorReport::addLines(std::vector<ListRow>& lines, int code) {
  for (const LineRow& line : kLines) {
    if (line.report != ReportCode || line.code != code) continue;
    if (line.onlyWithBoundary && app_.message.Get(line.boundary).empty()) continue;
    lines.push_back({lineText(line.text, line.boundary)});
  }
}

std::string frmErrorReport::valueOf(std::string_view mark, std::string_view boundary) {
  if (mark == "D") return dateText(app_.message.Get(boundary));
  if (mark == "T") return timeText(app_.message.Get(boundary));
  if (mark == "C") return FormatClockTime(app_.message.Get(tags::DATE));
  return app_.message.Get(mark);
}

std::string frmErrorReport::lineText(std::string_view text, std::string_view boundary) {
  std::string line;
  while (!text.empty()) {
    const auto open = std::min(text.find('{'), text.size());
    line += text.substr(0, open);
    text.remove_prefix(open);
    if (text.empty()) break;
    const auto close = text.find('}');
    line += valueOf(text.substr(1, close - 1), boundary);
    text.remove_prefix(close + 1);
  }
  return line;
}

/// Hides one of the two grids when it is empty and the other is not.
void frmErrorReport::hideEmpty() {
  if (faErrorsGeneric.hasData() == faErrorsSpecific.hasData()) return;
  const bool generic = faErrorsGeneric.hasData();
  lblGeneric.Visible = generic;
  faErrorsGeneric.Visible = generic;
  lblSpecific.Visible = !generic;
  faErrorsSpecific.Visible = !generic;
}

void ShowErrorReport(App& app, int reportCode) {
  frmErrorReport(app, reportCode).ShowModal();
}

}  // namespace vantry

#include "reports/booking_confirmation.h"

#include "messaging/ask.h"
#include "reports/record_sections.h"
#include "reports/report_page.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr std::string_view kSingleWidths = "1500|2000|1500|2000;";
constexpr std::string_view kMultipleWidths = "2000|2000|2000|2000;";
constexpr std::string_view kMediaWidths = "3200|2000|1800|6500;";
constexpr std::string_view kEquipmentWidths = "2500|3500|1800;";
constexpr std::size_t kEquipmentColumns = 3;
constexpr std::size_t kIndent = 5;
constexpr int kFootBlanks = 4;
constexpr std::string_view kNobody = "(none)";
/// In the order of the options.
constexpr std::string_view kPlaces[] = {"Deliver", "Library / Media Center Scheduled Room", "Pick-Up"};
constexpr int kPickUpPlace = 2;
constexpr std::string_view kAddressLines[] = {tags::A1, tags::A2, tags::A3, tags::A4, tags::A5};

using Lines = std::vector<std::string>;

/// The lines of the patron's address; none where it cannot be read.
Lines addressOf(App& app, const frmBooking& window) {
  const Ask ask(app.global, window.Name());
  if (!ask("PRDTLS", {{tags::BOOKID, window.record.BookingId}, {tags::PID, window.record.RequesterId}}))
    return {};
  const TagMessage& reply = app.message;
  Lines lines;
  for (const std::string_view tag : kAddressLines) {
    const std::string text = reply.Get(tag);
    if (!text.empty()) lines.push_back((lines.empty() ? "Address: " : "") + text);
  }
  lines.push_back("City/State/Zip: " + reply.Get(tags::CY) + ", " + reply.Get(tags::SP) + " " +
                  reply.Get(tags::ZP));
  lines.push_back("Phone Number: " + reply.Get(tags::PH));
  return lines;
}

void printPatron(ReportPage& page, const frmBooking& window, const Lines& address) {
  page.section("Patron Information");
  const RequesterPanel& patrons = window.requester;
  if (patrons.chkAdminBooking.Value) return page.line("Requester: Administrative Booking");
  page.line("Requester: " + patrons.requester.text.Text.get());
  page.line("Pick-up Patron: " + patrons.onBehalfOf.text.Text.get());
  page.line("Patron Group: " + patrons.txtPatronGroup.Text.get());
  for (const std::string& line : address) page.line(line);
}

std::string timeText(const TimeField& field) {
  return field.Value.get() ? hourMinuteAmPm(*field.Value.get()) : std::string();
}

void printSchedule(ReportPage& page, const TimesPanel& times) {
  page.section("Schedule");
  if (times.isMultiple()) {
    page.italic("Multiple Bookings");
    return printGrid(page, kMultipleWidths,
                     {{"Need Date", "Date Needed"},
                      {"Finish Date", "Date Finished"},
                      {"Need Time", "Time Needed"},
                      {"Finish Time", "Time Finished"}},
                     times.faDatesTimes);
  }
  page.italic("Single Booking");
  printFields(page, kSingleWidths,
              {{"Date Needed: ", times.fpdNeedDate.shortDate()},
               {"Date Finished: ", times.fpdFinishDate.shortDate()},
               {"Time Needed: ", timeText(times.txtNeedTime)},
               {"Time Finished: ", timeText(times.txtFinishTime)}});
}

/// The call number, and what tells one volume or copy from the others.
std::string callNumberOf(const Grid& media, int row) {
  std::string text = textUnder(media, row, "Call Number");
  const auto append = [&text](const std::string& part) {
    if (!part.empty()) text += (text.empty() ? "" : "   ") + part;
  };
  for (const char* heading : {"Enumeration", "Chronology", "Year"}) append(textUnder(media, row, heading));
  const std::string copy = textUnder(media, row, "Copy Number");
  append(copy.empty() ? copy : "C." + copy);
  return text;
}

void printMedia(ReportPage& page, const Grid& media) {
  if (!media.hasData()) return;
  page.section("Media");
  page.head(kMediaWidths, {"Title", "Location", "Media Type", "Call Number"});
  for (int row = media.FixedRows; row < media.Rows; ++row) {
    page.row(kMediaWidths, {textUnder(media, row, "Title"), textUnder(media, row, "Location"),
                            textUnder(media, row, "Media Type"), callNumberOf(media, row)});
  }
}

/// The generic room, or the chosen one, which may be beside the list.
std::string roomOf(const PlacePanel& place, int option) {
  if (option == kPickUpPlace) return place.cboPickupLocation.Text();
  const std::string generic = place.txtGenericRoom(option).Text;
  if (!generic.empty()) return generic;
  const std::string listed = (option == 0 ? place.cboDeliveryRoom : place.cboLibSchedRoom).Text();
  return listed.empty() ? place.txtRoom(option).Text.get() : listed;
}

void printPlace(ReportPage& page, const PlacePanel& place) {
  const int option = place.option();
  if (option < 0) return;
  page.line("");
  page.bold(std::string(kPlaces[option]) + ": " + roomOf(place, option));
}

void printNodes(ReportPage& page, const std::vector<TreeNode*>& nodes, std::size_t level) {
  for (const TreeNode* node : nodes) {
    ReportPage::Cells cells = {std::string(level * kIndent, ' ') + node->text};
    cells.insert(cells.end(), node->columns.begin(), node->columns.end());
    cells.resize(kEquipmentColumns);
    page.row(kEquipmentWidths, cells);
    printNodes(page, node->children, level + 1);
  }
}

void printTree(ReportPage& page, const Tree& tree) {
  for (const TreeNode* root : tree.Roots()) {
    if (root->children.empty()) continue;
    page.line(root->text);
    if (!tree.Headings.empty()) {
      ReportPage::Cells headings = tree.Headings;
      headings.resize(kEquipmentColumns);
      page.head(kEquipmentWidths, headings);
    }
    printNodes(page, root->children, 1);
    page.line("");
  }
}

bool hasLines(const Tree& tree) {
  for (const TreeNode* root : tree.Roots()) {
    if (!root->children.empty()) return true;
  }
  return false;
}

void printEquipment(ReportPage& page, const EquipmentPanel& equipment) {
  if (!hasLines(equipment.tvwOtherEquipment) && !hasLines(equipment.tvwEquipment)) return;
  page.section("Equipment");
  printTree(page, equipment.tvwOtherEquipment);
  printTree(page, equipment.tvwEquipment);
}

void printNote(ReportPage& page, const std::string& note) {
  if (note.empty()) return;
  page.section("Notes");
  page.line(note);
}

void printStaff(ReportPage& page, const frmBooking& window) {
  const std::string& setup = window.cboSetupStaff.Text();
  const std::string& cleanup = window.cboCleanupStaff.Text();
  const auto isSomebody = [](const std::string& name) { return !name.empty() && name != kNobody; };
  if (!isSomebody(setup) && !isSomebody(cleanup)) return;
  page.section("Staff");
  page.line("Setup Staff: " + setup);
  page.line("Clean-up Staff: " + cleanup);
}

void printProperties(ReportPage& page, const frmBooking& window) {
  page.section("Properties");
  page.line("Created By: " + window.txtCreateOperator.Text.get());
  page.line("Updated By: " + window.txtUpdateOperator.Text.get());
  page.line("Create Date: " + window.fpdCreateDate.shortDate());
  page.line("Update Date: " + window.fpdUpdateDate.shortDate());
  page.line("Create Location: " + window.txtCreateLocation.Text.get());
  page.line("Update Location: " + window.txtUpdateLocation.Text.get());
}

}  // namespace

PrintResult PrintBookingConfirmation(App& app, const frmBooking& window) {
  const bool administrative = window.requester.chkAdminBooking.Value;
  const Lines address = administrative ? Lines{} : addressOf(app, window);
  ReportPage page(app, window.Caption.get(), kReportFont);
  page.start(window.Caption.get());
  printPatron(page, window, address);
  printSchedule(page, window.times);
  printMedia(page, window.media.faMedia);
  printPlace(page, window.place);
  printEquipment(page, window.equipment);
  printNote(page, window.txtBookingNote.Text);
  printStaff(page, window);
  printProperties(page, window);
  return page.finish(kFootBlanks, "Booked: " + window.fpdCreateDate.shortDate());
}

}  // namespace vantry

#include "reports/record_details.h"

#include "messaging/ask.h"
#include "reports/record_sections.h"
#include "reports/report_page.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr std::string_view kFourColumns = "2000|2000|2000|3000;";
constexpr std::string_view kTwoColumns = "2000|8000;";
constexpr std::string_view kDetailLines = "3000|8000;";
constexpr std::string_view kMembers = "1300|2000|2000|2000|2000;";
constexpr std::string_view kRoomEquipment = "2000|3000|1500|1500;";
constexpr std::string_view kFilled = " +";
constexpr int kFootBlanks = 2;
constexpr std::size_t kThousand = 3;

/// How the notes of a kind of record are asked for.
struct NoteRequest {
  std::string_view code, recordTag, noteTag;
};
constexpr NoteRequest kEquipmentNote{"GETEGN", tags::EID, tags::ENID};
constexpr NoteRequest kRoomNote{"GETRN", tags::RID, tags::RNID};

/// "$1,234.50"; nothing for a missing amount. Amounts below one have no figure before the point.
std::string moneyText(const CurrencyField& field) {
  if (!field.Value.get()) return {};
  std::string digits = field.plain();
  const bool negative = digits.starts_with('-');
  if (negative) digits.erase(0, 1);
  std::size_t point = std::min(digits.find('.'), digits.size());
  if (digits.substr(0, point) == "0") {
    digits.erase(0, point);
    point = 0;
  }
  for (std::size_t place = point; place > kThousand; place -= kThousand)
    digits.insert(place - kThousand, ",");
  return (negative ? "-$" : "$") + digits;
}

std::string yesOrNo(const CheckBox& box) {
  return box.Value ? "Yes" : "No";
}

/// The heading on the screen of the column with numbers, which may hold barcodes.
std::string_view numberColumn(const Grid& grid) {
  for (int col = 0; col < grid.Cols; ++col) {
    if (grid.TextMatrix(0, col) == "Number") return "Number";
  }
  return "Barcode";
}

struct PrintedNote {
  std::string type;
  std::string text;
};

/// A note that cannot be read, which is told, is left out.
std::vector<PrintedNote> notesOf(App& app, const TypedWindow& window, const NoteRequest& request) {
  const Ask ask(app.global, window.Name());
  const ComboBox& types = window.notes.cboNoteType;
  std::vector<PrintedNote> notes;
  for (int i = 0; i < types.ListCount(); ++i) {
    const std::string& name = types.List(i);
    if (types.ItemData(i).empty() || !name.ends_with(kFilled)) continue;
    if (!ask(request.code, {{request.recordTag, window.recordId()}, {request.noteTag, types.ItemData(i)}}))
      continue;
    notes.push_back({name.substr(0, name.size() - kFilled.size()), app.message.Get(tags::MNO)});
  }
  return notes;
}

void printNotes(ReportPage& page, const std::vector<PrintedNote>& notes) {
  if (notes.empty()) return;
  page.section("Notes");
  for (const PrintedNote& note : notes) {
    page.line(note.type + ":");
    page.italic(note.text);
  }
}

void printProperties(ReportPage& page, const PropertiesPanel& properties,
                     const std::vector<PrintedField>& more = {}) {
  page.section("Properties");
  std::vector<PrintedField> fields = {{"Created By: ", properties.txtCR_OPNAME.Text},
                                      {"Updated By: ", properties.txtUP_OPNAME.Text},
                                      {"Create Date: ", properties.dtCR_DATE.shortDate()},
                                      {"Update Date: ", properties.dtUP_DATE.shortDate()},
                                      {"Create Location: ", properties.txtCR_LOC_NAME.Text},
                                      {"Update Location: ", properties.txtUP_LOC_NAME.Text}};
  fields.insert(fields.end(), more.begin(), more.end());
  printFields(page, kFourColumns, fields);
}

void start(ReportPage& page, const Form& window) {
  page.start(window.Caption.get());
  page.section("Details");
}

}  // namespace

PrintResult PrintEquipmentDetail(App& app, const frmEquipment& window) {
  const auto notes = notesOf(app, window, kEquipmentNote);
  ReportPage page(app, window.Caption.get());
  start(page, window);
  printFields(page, kFourColumns,
              {{"Equipment Type: ", window.cboEQUIP_TYPE.Text()},
               {"Status: ", window.txtSTS_TYPE.Text},
               {"Number: ", window.txtEQUIP_NO.Text},
               {"Purchase Value: ", moneyText(window.txtEQUIP_VALUEP)},
               {"Barcode: ", window.txtBARCODE_NO.Text},
               {"Replacement Value: ", moneyText(window.txtEQUIP_VALUER)},
               {"Manufacturer: ", window.txtEQUIP_MANUF.Text},
               {"Dealer: ", window.txtEQUIP_DEALER.Text},
               {"Format: ", window.txtEQUIP_FORMAT.Text},
               {"Acquisition Date: ", window.dtEQUIP_DT_PUR.shortDate()},
               {"Model Number: ", window.txtEQUIP_MODEL.Text},
               {"Location: ", window.place.cboLOC_NAME.Text()},
               {"Serial Number: ", window.txtEQUIP_SERIAL_NO.Text},
               {"Room: ", window.place.cboROOM_NAME.Text()},
               {"Group: ", window.txtGroup.Text},
               {"Currently At: ", window.place.txtTEMP_ROOM_NAME.Text}});
  printNotes(page, notes);
  printProperties(page, window.propertyFields,
                  {{"Historical Bookings: ", window.txtHIST_BKNGS.Text},
                   {"Historical Maintenance: ", window.txtHIST_MAINT.Text}});
  return page.finish(kFootBlanks);
}

PrintResult PrintGroupDetail(App& app, const frmGroup& window) {
  const auto notes = notesOf(app, window, kEquipmentNote);
  ReportPage page(app, window.Caption.get());
  start(page, window);
  printFields(page, kTwoColumns,
              {{"Equipment Type: ", window.cboEQUIP_TYPE.Text()},
               {"Number: ", window.txtEQUIP_NO.Text},
               {"Barcode: ", window.txtBARCODE_NO.Text},
               {"Location: ", window.place.cboLOC_NAME.Text()},
               {"Room: ", window.place.cboROOM_NAME.Text()},
               {"Currently At: ", window.place.txtTEMP_ROOM_NAME.Text},
               {"Status: ", window.txtSTS_TYPE.Text},
               {"Purchase Value: ", moneyText(window.txtEQUIP_VALUER)}});
  const Grid& members = window.members.faMembers;
  page.section("Members");
  printGrid(page, kMembers,
            {{"Number", numberColumn(members)}, {"Manufacturer"}, {"Model"}, {"Serial"}, {"Format"}},
            members);
  printNotes(page, notes);
  printProperties(page, window.propertyFields, {{"Historical Bookings: ", window.txtHIST_BKNGS.Text}});
  return page.finish(kFootBlanks);
}

PrintResult PrintRoomDetail(App& app, const frmRoom& window) {
  const auto notes = notesOf(app, window, kRoomNote);
  ReportPage page(app, window.Caption.get());
  start(page, window);
  printFields(page, kTwoColumns,
              {{"Room Type: ", window.cboROOM_TYPE.Text()},
               {"Location: ", window.cboLOC_NAME.Text()},
               {"Number: ", window.txtROOM_NO.Text},
               {"Room Name: ", window.txtROOM_NAME.Text},
               {"Storage? ", yesOrNo(window.chkSTORAGE)},
               {"Capacity: ", window.txtROOM_CAPACITY.Text()},
               {"Status: ", window.txtSTS_TYPE.Text}});
  page.line("");
  printGrid(page, kDetailLines, {{"Detail Type"}, {"Details"}}, window.details.fa);
  const Grid& equipment = window.equipment.faMembers;
  page.section("Equipment");
  printGrid(page, kRoomEquipment, {{"Number", numberColumn(equipment)}, {"Type"}, {"Status"}}, equipment);
  printNotes(page, notes);
  printProperties(page, window.propertyFields, {{"Historical Bookings: ", window.txtHIST_BKNGS.Text}});
  return page.finish(kFootBlanks);
}

PrintResult PrintMaintenanceDetail(App& app, const frmMaintenance& window) {
  ReportPage page(app, window.Caption.get());
  start(page, window);
  printFields(page, kTwoColumns,
              {{"Number: ", window.txtEQUIP_NO.Text},
               {"Barcode: ", window.txtBARCODE_NO.Text},
               {"In Maintenance? ", yesOrNo(window.chkIN_MAINT)},
               {"Date In: ", window.dtMAINT_DATEIN.shortDate()},
               {"Date Out: ", window.dtMAINT_DATEOUT.shortDate()},
               {"Next Maintenance: ", window.dtEQUIP_NXT_MAINT.shortDate()}});
  page.line("");
  printGrid(page, kDetailLines, {{"Detail Type", "Maintenance Type"}, {"Note", "Details"}},
            window.details.fa);
  const std::string& note = window.txtMEDIA_NOTE.Text;
  if (!note.empty()) page.row(kDetailLines, {"Notes", note});
  page.line("");
  page.line("Maintenance Note:");
  page.line(window.txtMAINTENANCE_NOTE.Text.get());
  printProperties(page, window.propertyFields);
  return page.finish(kFootBlanks);
}

}  // namespace vantry

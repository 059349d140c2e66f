// The print commands of the main window.
#include "records/record_window.h"
#include "records/records.h"
#include "reports/list_report.h"
#include "schedule/frmMain.h"

namespace vantry {

/// The first of every list whose records have a window: the id of the record.
static constexpr int kIdColumn = 0;

void frmMain::mnuFilePrintListing_Click() {
  const ReplyList* list = visibleList();
  if (!list) return;
  const ViewRow& shown = *visibleView();
  const ListReport report{shown.kind, view(shown.id).reportText(), list->grid()};
  shown.subject ? PrintInventoryList(app_, report) : PrintScheduleList(app_, report);
}

void frmMain::mnuFilePrintDetail_Click() {
  const ReplyList* list = visibleList();
  if (list && list->grid().Row >= list->grid().FixedRows)
    printDetails({list->text(list->grid().Row, kIdColumn)});
}

void frmMain::mnuFilePrintDetailAll_Click() {
  const ReplyList* list = visibleList();
  if (!list) return;
  std::vector<std::string> ids;
  for (int row = list->grid().FixedRows; row < list->grid().Rows; ++row)
    ids.push_back(list->text(row, kIdColumn));
  printDetails(ids);
}

/// Each record prints itself from a window that nobody sees.
void frmMain::printDetails(const std::vector<std::string>& ids) {
  const ViewRow& shown = *visibleView();
  RecordOpening opening(shown.subject ? shown.kind : kBooking, "", kSourceMainWindow);
  opening.hidden = true;
  int number = 0;
  for (const std::string& id : ids) {
    showStatus(2,
               "Printing " + std::to_string(++number) + " of " + std::to_string(ids.size()) + " record(s)");
    opening.id = id;
    auto* window = dynamic_cast<RecordWindow*>(OpenRecordWindow(app_, opening));
    if (!window) continue;  // it could not be read, which has been told
    window->commands.print.run();
    window->Unload();
    if (!app_.reports().goesOn()) return;
  }
}

}  // namespace vantry

#include "inventory/maintenance_page.h"

#include "inventory/inventory_removal.h"
#include "inventory/month_names.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "records/records.h"
#include "words/tags.h"

namespace vantry {

namespace {

enum Columns { kId, kMonthNumber, kMonth };
constexpr ReplyColumn kColumns[] = {
    {"ID", tags::MID, CellKind::Plain, 0},
    {"Month No", {}, CellKind::Own, 900},
    {"Month", {}, CellKind::Own, 1400},
    {.heading = "Date In", .tag = tags::MDYI, .kind = CellKind::Date, .sort = SortKind::ShortDate},
    {.heading = "Date Out", .tag = tags::MDYO, .kind = CellKind::Date, .sort = SortKind::ShortDate},
    {"Name", tags::ON, CellKind::Plain, 2200},
    {"Maintenance Type", tags::MTY, CellKind::Plain, 2200}};

constexpr int kMonths = static_cast<int>(kMonthNames.size());
constexpr std::string_view kYearNode = "|YEAR";
constexpr std::size_t kYearLength = 4;

/// The first day of a month, as its list is asked for.
std::string monthStart(const std::string& year, int month) {
  return year + '-' + std::to_string(month) + "-01";
}

}  // namespace

MaintenancePage::MaintenancePage(App& app, const Ask& ask, Frame& frame, std::function<std::string()> pieceId)
    : tvwMaint(frame, "tvwMaint"),
      fa(frame, "fa(1)"),
      cmdNewMaint(frame, "cmdNewMaint", "&New"),
      cmdEditMaint(frame, "cmdEditMaint", "&Edit"),
      cmdDeleteMaint(frame, "cmdDeleteMaint", "De&lete"),
      mnuPopupMaintenance(frame.form(), "mnuPopupMaintenance", "Popup Maintenance"),
      mnuPopupMaintNew(mnuPopupMaintenance, "mnuPopupMaintNew", "New"),
      mnuPopupMaintEdit(mnuPopupMaintenance, "mnuPopupMaintEdit", "Edit"),
      mnuPopupMaintDelete(mnuPopupMaintenance, "mnuPopupMaintDelete", "Delete"),
      mnuPopupMaintSort(mnuPopupMaintenance, "mnuPopupMaintSort", "Sort"),
      mnuPopupMaintSortAscending(mnuPopupMaintSort, "mnuPopupMaintSortAscending", "Ascending"),
      mnuPopupMaintSortDescending(mnuPopupMaintSort, "mnuPopupMaintSortDescending", "Descending"),
      dtMaintDate(frame, "dtMaintDate"),
      dtMaintTime(frame, "dtMaintTime"),
      app_(app),
      ask_(ask),
      pieceId_(std::move(pieceId)),
      list_(app, fa, MomentFields{dtMaintDate, dtMaintTime}) {
  tvwMaint.AccessibleName = "Years of maintenance";
  fa.AccessibleName = "Maintenance records";
  mnuPopupMaintenance.Visible = false;
  setVisible(false, dtMaintDate, dtMaintTime);
  list_.build({.columns = kColumns, .walk = tags::MID, .uniqueKey = tags::MID});
  frame.Layout =
      Row{LayoutNode(tvwMaint).share(1),
          LayoutNode(Column{fa, Row{cmdNewMaint, cmdEditMaint, cmdDeleteMaint, Stretch{}}}).share(3)};
  connect();
}

void MaintenancePage::connect() {
  newMaint.Run = [this] { raise(create); };
  on(editMaint.Run, this, &MaintenancePage::cmdEditMaint_Click);
  on(deleteMaint.Run, this, &MaintenancePage::mnuPopupMaintDelete_Click);
  newMaint.link(cmdNewMaint);
  newMaint.link(mnuPopupMaintNew);
  editMaint.link(cmdEditMaint);
  editMaint.link(mnuPopupMaintEdit);
  deleteMaint.link(cmdDeleteMaint);
  deleteMaint.link(mnuPopupMaintDelete);
  on(mnuPopupMaintSortAscending.Click, this, &MaintenancePage::mnuPopupMaintSortAscending_Click);
  on(mnuPopupMaintSortDescending.Click, this, &MaintenancePage::mnuPopupMaintSortDescending_Click);
  on(tvwMaint.Click, this, &MaintenancePage::tvwMaint_NodeClick);
  on(fa.Click, this, &MaintenancePage::fa_Click);
  on(fa.DblClick, this, &MaintenancePage::cmdEditMaint_Click);
  fa.RightClick = [this] { app_.desktop.popupMenu(mnuPopupMaintenance, nullptr); };
  list_.hooks.ownText = [this](const ReplyColumn& column) {
    const auto place = static_cast<std::size_t>(month_ - 1);
    return &column == &kColumns[kMonthNumber] ? std::to_string(month_) : std::string(kMonthNames[place]);
  };
  fa_Click();
}

// Years

void MaintenancePage::BuildMaintenanceTab() {
  const std::string thisYear = std::to_string(app_.clock.now().date.year);
  tvwMaint.Clear();
  list_.clear();
  fa_Click();
  if (pieceId_().empty() || !ask_("GETMYER")) return;  // a failure leaves the page empty
  while (app_.message.NextRecord(tags::MYE)) {
    const std::string year = app_.message.Get(tags::MYE).substr(0, kYearLength);
    static_cast<void>(tvwMaint.Add({}, year + std::string(kYearNode), year));
  }
  if (tvwMaint.Count() == 0) addYear(thisYear);
  for (TreeNode* root : tvwMaint.Roots()) root->expanded = true;
  tvwMaint.changed();
  const std::string current = thisYear + std::string(kYearNode);
  if (!tvwMaint.find(current)) return;
  tvwMaint.SelectedKey = current;
  tvwMaint_NodeClick();
}

/// The year with its months, where there are no records at all.
void MaintenancePage::addYear(const std::string& year) {
  const std::string key = year + std::string(kYearNode);
  static_cast<void>(tvwMaint.Add({}, key, year));
  for (int month = 1; month <= kMonths; ++month) {
    static_cast<void>(tvwMaint.Add(key, monthStart(year, month) + '|' + year,
                                   std::string(kMonthNames[static_cast<std::size_t>(month - 1)])));
  }
}

/// A year shows its twelve months, a month itself.
void MaintenancePage::tvwMaint_NodeClick() {
  const std::string key = tvwMaint.SelectedKey;
  if (key.empty()) return;
  const std::string year = key.substr(0, kYearLength);
  list_.clear();
  if (key.ends_with(kYearNode)) {
    for (int month = 1; month <= kMonths && readMonth(year, month);) ++month;
  } else {
    static_cast<void>(readMonth(year, intOf(key.substr(kYearLength + 1))));
  }
  fa_Click();
}

bool MaintenancePage::readMonth(const std::string& year, int month) {
  month_ = month;
  return ask_("GETMITM", {{tags::MSD, monthStart(year, month)}, {tags::EID, pieceId_()}},
              [this] { list_.add(); });
}

// Records

void MaintenancePage::fa_Click() {
  setEnabled(fa.Row >= fa.FixedRows && !locked_, editMaint, deleteMaint);
  mnuPopupMaintSort.Enabled = fa.hasData();
}

void MaintenancePage::sort(SortOrder order) {
  list_.sort(order);
  fa_Click();
}

void MaintenancePage::cmdEditMaint_Click() {
  if (editMaint.usable() && fa.Row >= fa.FixedRows)
    OpenRecordWindow(app_, {kMaintenance, list_.text(fa.Row, kId), kSourceEquipment});
}

void MaintenancePage::mnuPopupMaintDelete_Click() {
  if (!RemoveInventoryRecord(app_, ask_, kMaintenance, list_.text(fa.Row, kId))) return;
  const int month = intOf(list_.text(fa.Row, kMonthNumber));
  fa.RemoveItem(fa.Row);
  fa_Click();
  const std::string year = tvwMaint.SelectedKey.get().substr(0, kYearLength);
  app_.main().refillInventory(kMaintenance, monthCategory(year, month));
}

// Rights

void MaintenancePage::lock() {
  newMaint.Enabled = false;
  locked_ = true;
  fa_Click();
}

void MaintenancePage::unlock() {
  newMaint.Enabled = true;
  locked_ = false;
  list_.clear();
  fa_Click();
}

void MaintenancePage::secure(const Rights& rights) {
  const bool views = viewOnly(rights, Subject::Maintenance);
  newMaint.Allowed = rights.has(Right::EQMADD);
  editMaint.Allowed = rights.has(Right::EQMUPD) || views;
  deleteMaint.Allowed = rights.has(Right::EQMUPD);
  cmdEditMaint.Caption = views ? "Vie&w" : "&Edit";
  mnuPopupMaintEdit.Caption = views ? "View" : "Edit";
}

}  // namespace vantry

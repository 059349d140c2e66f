#include "inventory/frmStatus.h"

#include <algorithm>
#include <array>

#include "inventory/frmNotes.h"
#include "inventory/record_refusals.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

/// What the kinds of records differ in.
struct StatusKind {
  const char* caption;
  std::string_view types;
  std::string_view applied;
  std::string_view apply;
  std::string_view remove;
  std::string_view id;
};

namespace {

/// By `RecordKind`.
constexpr std::array<StatusKind, 4> kKinds = {{
    {"Equipment Status", "GETEGSTY", "GETEGSTS", "NEWEGSTS", "REMEGSTS", tags::EID},
    {"Group Status", "GETEGSTY", "GETEGSTS", "NEWEGSTS", "REMEGSTS", tags::EID},
    {"Room Status", "GETRSTY", "GETRSTS", "NEWRMSTS", "REMRMSTS", tags::RID},
    {"Maintenance Status", "GETEGSTY", "GETEGSTS", "NEWEGSTS", "REMEGSTS", tags::MID},
}};

enum Lists { kAvailable, kApplied };
enum Columns { kId, kPriority, kName, kDate, kNote };

constexpr ReplyColumn kIdColumn = {.heading = "Id", .tag = tags::SID, .width = 0};
constexpr ReplyColumn kPriorityColumn = {.heading = "Priority", .tag = tags::SPR, .width = 900};
constexpr ReplyColumn kAvailableColumns[] = {
    kIdColumn,
    kPriorityColumn,
    {.heading = "Status", .tag = tags::STY, .width = 1400, .align = Align::Center}};
constexpr ReplyColumn kAppliedColumns[] = {
    kIdColumn,
    kPriorityColumn,
    {.heading = "Status", .kind = CellKind::Own, .width = 2200},
    {.heading = "Applied Date", .tag = tags::SDT, .kind = CellKind::Date, .sort = SortKind::ShortDate},
    {.heading = "Notes", .tag = tags::SNO, .width = 2800}};

constexpr std::string_view kNotCharged = "Not Charged";

/// The statuses that the system sets itself.
bool isSystemStatus(std::string_view name) {
  return name == "Available" || name == kNotCharged || name == "Charged";
}

}  // namespace

frmStatus::frmStatus(App& app, RecordKind kind, std::string id)
    : Form(app.windows, "frmStatus"),
      app_(app),
      ask_(app.global, Name()),
      kind_(kKinds.at(static_cast<std::size_t>(kind))),
      id_(std::move(id)),
      available_(app, fa.add(*this)),
      applied_(app, fa.add(*this), MomentFields{dtAppliedDate, txtAppliedTime}) {
  Caption = kind_.caption;
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  fa(kAvailable).AccessibleName = "Available statuses";
  fa(kApplied).AccessibleName = "Applied statuses";
  applied_.hooks.ownText = [this](const ReplyColumn&) {
    const StatusType* type = typeOf(app_.message.Get(tags::SPR), app_.message.Get(tags::SID));
    return type ? type->name : std::string();
  };
  fa(kAvailable).Click = [this] { fa_Click(kAvailable); };
  fa(kApplied).Click = [this] { fa_Click(kApplied); };
  on(cmdAddStatus.Click, this, &frmStatus::cmdAddStatus_Click);
  on(cmdRemoveStatus.Click, this, &frmStatus::cmdRemoveStatus_Click);
  on(cmdOK.Click, this, &frmStatus::cmdOK_Click);
  const LayoutNode left = Column{lblAvailable, fa(kAvailable)};
  const LayoutNode right = Column{lblApplied, fa(kApplied)};
  Layout =
      Column{Row{left.share(2), Column{Stretch{}, cmdAddStatus, cmdRemoveStatus, Stretch{}}, right.share(3)},
             Row{Stretch{}, cmdOK}};
}

void frmStatus::Form_Load() {
  app_.tools.PrepareForm(*this);
  available_.build({.columns = kAvailableColumns, .walk = tags::SID});
  applied_.build({.columns = kAppliedColumns, .walk = tags::SID});
  disable(cmdAddStatus, cmdRemoveStatus);
  if (!readTypes()) return;
  id_.empty() ? showNew() : readApplied();
  fillAvailable();
  SortData();
  selectSystemStatus();
}

void frmStatus::Form_Activate() {
  fa(kAvailable).SetFocus();
}

bool frmStatus::readTypes() {
  return ask_(kind_.types, {}, [this] {
    const TagMessage& message = app_.message;
    while (app_.message.NextRecord(tags::SID))
      types_.push_back({message.Get(tags::SID), message.Get(tags::SPR), message.Get(tags::STY)});
  });
}

/// A type has its priority for itself. Where the server breaks that rule, the id decides.
const frmStatus::StatusType* frmStatus::typeOf(std::string_view priority, std::string_view id) const {
  const StatusType* found = nullptr;
  for (const StatusType& type : types_) {
    if (type.priority == priority && (!found || type.id == id)) found = &type;
  }
  return found;
}

void frmStatus::showNew() {
  dtAppliedDate.Value = app_.clock.now().date;
  const auto type = std::find_if(types_.begin(), types_.end(),
                                 [](const StatusType& each) { return each.name == kNotCharged; });
  const StatusType none;
  const StatusType& shown = type == types_.end() ? none : *type;
  applied_.addRow({shown.id, shown.priority, std::string(kNotCharged), dtAppliedDate.shortDate(), ""});
}

void frmStatus::readApplied() {
  ask_(kind_.applied, {{kind_.id, id_}}, [this] { applied_.fill(); });
}

int frmStatus::appliedRow(int column, std::string_view text) const {
  const Grid& grid = applied_.grid();
  for (int row = grid.FixedRows; row < grid.Rows; ++row) {
    if (applied_.text(row, column) == text) return row;
  }
  return 0;
}

void frmStatus::fillAvailable() {
  for (const StatusType& type : types_) {
    if (appliedRow(kId, type.id) == 0) available_.addRow({type.id, type.priority, type.name});
  }
}

void frmStatus::SortData() {
  available_.sortBy(kId, kId);
  applied_.sortBy(kPriority, kNote);
}

void frmStatus::selectSystemStatus() {
  Grid& grid = fa(kApplied);
  for (int row = grid.FixedRows; row < grid.Rows; ++row) {
    if (isSystemStatus(applied_.text(row, kName))) grid.Row = row;
  }
}

/// A new record has nothing yet that a status could be applied to.
void frmStatus::fa_Click(int index) {
  const ReplyList& list = index == kAvailable ? available_ : applied_;
  const int row = fa(index).Row;
  disable(cmdAddStatus, cmdRemoveStatus);
  if (row < fa(index).FixedRows || id_.empty() || isSystemStatus(list.text(row, kName))) return;
  (index == kAvailable ? cmdAddStatus : cmdRemoveStatus).Enabled = true;
}

void frmStatus::cmdAddStatus_Click() {
  const int row = fa(kAvailable).Row;
  const StatusType type = {available_.text(row, kId), available_.text(row, kPriority),
                           available_.text(row, kName)};
  if (appliedRow(kName, type.name) > 0) return disable(cmdAddStatus, cmdRemoveStatus);
  frmNotes notes(app_, "Status Note", "Enter a note for this status.");
  notes.ShowModal();
  // A cancelled note is an empty one: the status is applied all the same.
  if (!askForRecord(ask_, kind_.apply,
                    {{kind_.id, id_},
                     {tags::SID, type.id},
                     {tags::SNO, notes.note},
                     {tags::ULI, app_.context.locationId}}))
    return;
  ServerTools::PutControlDate(app_.message.Get(tags::UDT), dtAppliedDate);
  applied_.addRow({type.id, type.priority, type.name, dtAppliedDate.shortDate(), notes.note});
  fa(kAvailable).RemoveItem(row);
  statusChanged();
}

void frmStatus::cmdRemoveStatus_Click() {
  const int row = fa(kApplied).Row;
  const StatusType type = {applied_.text(row, kId), applied_.text(row, kPriority), applied_.text(row, kName)};
  if (!ask_(kind_.remove, {{kind_.id, id_}, {tags::SID, type.id}, {tags::ULI, app_.context.locationId}}))
    return;
  available_.addRow({type.id, type.priority, type.name});
  fa(kApplied).RemoveItem(row);
  statusChanged();
}

void frmStatus::statusChanged() {
  changed = true;
  SortData();
  disable(cmdAddStatus, cmdRemoveStatus);
}

bool frmStatus::Form_Unload() {
  if (fa(kApplied).hasData()) status = applied_.text(fa(kApplied).FixedRows, kName);
  return true;
}

}  // namespace vantry

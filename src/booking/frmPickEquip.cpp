#include "booking/frmPickEquip.h"

#include <algorithm>

#include "booking/equipment_types_tree.h"
#include "booking/modBooking_ask.h"
#include "frame/app.h"
#include "lists/grids.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {
namespace {

constexpr int kIdColumn = 0;

/// Fills a new last row; the id is kept in the row's data as well, so that moved columns do not matter.
void addRow(Grid& grid, std::initializer_list<std::string> texts) {
  const int row = grid.Rows;
  grid.Rows = row + 1;
  int data = 0;
  for (const std::string& text : texts) grid.TextMatrix(row, grid.columnOfData(data++), text);
  grid.RowData(row, *texts.begin());
}

void layOut(Grid& grid, std::string_view format) {
  grid.Rows = 1;
  grid.FormatString = std::string(format);
  for (int col = 0; col < grid.Cols; ++col) {
    grid.ColData(col, col);
    grid.ColWidth(col, col == kIdColumn ? 0 : 1500);
  }
}

bool holds(const Grid& grid, int row, std::string_view wanted) {
  for (int col = 0; col < grid.Cols; ++col) {
    if (grid.ColWidth(col) != 0 && lower(grid.TextMatrix(row, col)).find(wanted) != std::string::npos)
      return true;
  }
  return false;
}

}  // namespace

frmPickEquip::frmPickEquip(App& app, const BookingRecord& record)
    : Form(app.windows, "frmPickEquip"), app_(app), record_(record) {
  Caption = "Select Equipment For Booking";
  mnuPopupTools.Visible = false;
  tvwEquip.BoldRoots = true;
  tvwEquip.AccessibleName = "Types of equipment and groups";
  fa.AccessibleName = "Equipment of the type";
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  buildGrids();
  connect();
  Layout = Column{lblPicked,
                  LayoutNode(faPicked).share(2),
                  Row{Stretch{}, cmdRemove},
                  Gap{},
                  Row{LayoutNode(tvwEquip).share(2), LayoutNode(fa).share(3)}.share(3),
                  Row{Stretch{}, cmdAdd},
                  Gap{},
                  Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmPickEquip::buildGrids() {
  // The picks say "Number" also above barcodes; this is deliberate.
  layOut(faPicked, "<ID|<Number|<Type|<Status");
  layOut(fa, app_.preferences.Barcodes ? "<ID|<Barcode|<Location|<Room|<Status|<Notes"
                                       : "<ID|<Number|<Location|<Room|<Status|<Notes");
}

void frmPickEquip::connect() {
  on(tvwEquip.Click, this, &frmPickEquip::tvwEquip_Click);
  for (Grid* grid : {&faPicked, &fa}) {
    on(grid->Click, this, &frmPickEquip::enableCommands);
    grid->RightClick = [this, grid] { openTools(*grid); };
  }
  on(fa.DblClick, this, &frmPickEquip::cmdAdd_Click);
  on(faPicked.DblClick, this, &frmPickEquip::cmdRemove_Click);
  on(cmdAdd.Click, this, &frmPickEquip::cmdAdd_Click);
  on(cmdRemove.Click, this, &frmPickEquip::cmdRemove_Click);
  on(cmdOK.Click, this, &frmPickEquip::cmdOK_Click);
  on(cmdCancel.Click, this, &frmPickEquip::cmdCancel_Click);
  on(mnuPopupToolsAdd.Click, this, &frmPickEquip::cmdAdd_Click);
  on(mnuPopupToolsRemove.Click, this, &frmPickEquip::cmdRemove_Click);
  on(mnuPopupToolsFind.Click, this, &frmPickEquip::mnuPopupToolsFind_Click);
  on(mnuPopupToolsSortAscending.Click, this, &frmPickEquip::mnuPopupToolsSortAscending_Click);
  on(mnuPopupToolsSortDescending.Click, this, &frmPickEquip::mnuPopupToolsSortDescending_Click);
}

void frmPickEquip::Form_Load() {
  app_.tools.PrepareForm(*this);
  FillTypesTree(app_, tvwEquip, "EquipTree");
  enableCommands();
}

void frmPickEquip::enableCommands() {
  cmdAdd.Enabled = fa.Row >= fa.FixedRows;
  cmdRemove.Enabled = faPicked.Row >= faPicked.FixedRows;
}

void frmPickEquip::tvwEquip_Click() {
  const TreeNode* node = tvwEquip.find(tvwEquip.SelectedKey.get());
  if (!node) return;
  shown_.clear();
  fa.Rows = 1;
  if (node->parent) loadType(*node);
  enableCommands();
}

void frmPickEquip::loadType(const TreeNode& type) {
  if (!Ask(app_.global, Name())("GETGITM", {{tags::ETI, typeIdOf(type.key)}})) return;
  fa.Redraw = false;
  while (app_.message.NextRecord(tags::EID)) {
    Candidate candidate = readCandidate(type);
    if (isPicked(candidate.piece.EID)) continue;
    addCandidateRow(candidate);
    shown_.push_back(std::move(candidate));
  }
  fa.Redraw = true;
  SetGridAutoSize(app_, fa);
}

frmPickEquip::Candidate frmPickEquip::readCandidate(const TreeNode& type) const {
  const TagMessage& message = app_.message;
  Candidate candidate;
  candidate.piece = {message.Get(tags::EID),
                     PieceNumber(app_, message.Get(tags::ENO), message.Get(tags::BNO)), type.tag,
                     message.Get(tags::EIU), message.Get(tags::STY)};
  // The list of a type need not say which of its rows are groups.
  if (candidate.piece.EIU.empty() && isGroupType(type)) candidate.piece.EIU = "Y";
  candidate.location = message.Get(tags::LNA);
  candidate.room = message.Get(tags::RNM);
  candidate.notes = message.Get(tags::MNC);
  candidate.typeKey = type.key;
  return candidate;
}

void frmPickEquip::addCandidateRow(const Candidate& candidate) {
  const EquipmentPiece& piece = candidate.piece;
  addRow(fa, {piece.EID, piece.number, candidate.location, candidate.room, piece.status, candidate.notes});
}

void frmPickEquip::addPickedRow(const Candidate& candidate) {
  const EquipmentPiece& piece = candidate.piece;
  addRow(faPicked, {piece.EID, piece.number, piece.ETY, piece.status});
}

bool frmPickEquip::isPicked(std::string_view eid) const {
  return std::any_of(picked_.begin(), picked_.end(),
                     [&](const Candidate& candidate) { return candidate.piece.EID == eid; });
}

frmPickEquip::Candidate* frmPickEquip::find(std::vector<Candidate>& list, const Grid& grid) {
  if (grid.Row < grid.FixedRows) return nullptr;
  const std::string& eid = grid.RowData(grid.Row);
  const auto found =
      std::find_if(list.begin(), list.end(), [&](const Candidate& c) { return c.piece.EID == eid; });
  return found == list.end() ? nullptr : &*found;
}

void frmPickEquip::cmdAdd_Click() {
  Candidate* selected = find(shown_, fa);
  if (!selected || !MayUsePiece(app_, record_, selected->piece.EID)) return;
  addPickedRow(*selected);
  picked_.push_back(std::move(*selected));
  shown_.erase(shown_.begin() + (selected - shown_.data()));
  fa.RemoveItem(fa.Row);
  enableCommands();
}

void frmPickEquip::cmdRemove_Click() {
  Candidate* selected = find(picked_, faPicked);
  if (!selected) return;
  // Below it shows only with its own type.
  if (selected->typeKey == tvwEquip.SelectedKey.get()) {
    addCandidateRow(*selected);
    shown_.push_back(*selected);
  }
  picked_.erase(picked_.begin() + (selected - picked_.data()));
  faPicked.RemoveItem(faPicked.Row);
  enableCommands();
}

void frmPickEquip::openTools(Grid& grid) {
  tools_ = &grid;
  enableCommands();
  mnuPopupToolsAdd.Enabled = &grid == &fa && cmdAdd.Enabled;
  mnuPopupToolsRemove.Enabled = &grid == &faPicked && cmdRemove.Enabled;
  for (MenuItem* item : {&mnuPopupToolsFind, &mnuPopupToolsSortAscending, &mnuPopupToolsSortDescending})
    item->Enabled = grid.hasData();
  app_.desktop.popupMenu(mnuPopupTools, nullptr);
}

void frmPickEquip::mnuPopupToolsFind_Click() {
  if (!tools_) return;
  const std::optional<std::string> text = app_.desktop.inputBox("Find:", Caption.get(), "");
  if (!text || trim(*text).empty()) return;
  const std::string wanted = lower(trim(*text));
  // From behind the selected row to the end, then from the top.
  const int rows = tools_->Rows - tools_->FixedRows;
  const int start = std::max(0, tools_->Row - tools_->FixedRows + 1);
  for (int step = 0; step < rows; ++step) {
    const int row = tools_->FixedRows + (start + step) % rows;
    if (!holds(*tools_, row, wanted)) continue;
    tools_->Row = row;
    return enableCommands();
  }
  informationBox(app_.desktop, "\"" + std::string(trim(*text)) + "\" not found.");
}

void frmPickEquip::sort(SortOrder order) {
  if (!tools_ || tools_->MouseCol < 0) return;
  tools_->ColSort(tools_->MouseCol, order);
  tools_->Sort();
}

void frmPickEquip::cmdOK_Click() {
  for (const Candidate& candidate : picked_) picked.push_back(candidate.piece);
  Hide();
}

void frmPickEquip::cmdCancel_Click() {
  picked.clear();
  Hide();
}

}  // namespace vantry

#include "booking/frmPickEquip.h"

#include <algorithm>

#include "booking/equipment_types_tree.h"
#include "booking/modBooking_ask.h"
#include "frame/app.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {
namespace {

constexpr int kIdColumn = 0;

constexpr ReplyColumn kPieceColumns[] = {{"ID", tags::EID, CellKind::Plain, 0},
                                         {"Barcode", {}, CellKind::Piece},
                                         {"Location", tags::LNA},
                                         {"Room", tags::RNM},
                                         {"Status", tags::STY},
                                         {"Notes", tags::MNC}};
// The picks say "Number" also above barcodes; this is deliberate.
constexpr ReplyColumn kPickedColumns[] = {{"ID", {}, CellKind::Plain, 0}, {"Number"}, {"Type"}, {"Status"}};

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
  buildLists();
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

void frmPickEquip::buildLists() {
  picks_.build({.columns = kPickedColumns, .fit = ColumnFit::Never, .merges = false});
  pieces_.build({.columns = kPieceColumns, .walk = tags::EID, .merges = false});
  pieces_.hooks.accepts = [this] { return !isPicked(app_.message.Get(tags::EID)); };
}

void frmPickEquip::connect() {
  on(tvwEquip.Click, this, &frmPickEquip::tvwEquip_Click);
  for (ReplyList* list : {&picks_, &pieces_}) {
    on(list->grid().Click, this, &frmPickEquip::enableCommands);
    list->grid().RightClick = [this, list] { openTools(*list); };
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
  pieces_.clear();
  if (node->parent) loadType(*node);
  enableCommands();
}

void frmPickEquip::loadType(const TreeNode& type) {
  if (!Ask(app_.global, Name())("GETGITM", {{tags::ETI, typeIdOf(type.key)}})) return;
  pieces_.hooks.filled = [this, &type](int row) { shown_.push_back(readCandidate(type, row)); };
  pieces_.fill();
}

frmPickEquip::Candidate frmPickEquip::readCandidate(const TreeNode& type, int row) const {
  const TagMessage& message = app_.message;
  Candidate candidate;
  candidate.piece = {message.Get(tags::EID),
                     PieceNumber(app_, message.Get(tags::ENO), message.Get(tags::BNO)), type.tag,
                     message.Get(tags::EIU), message.Get(tags::STY)};
  // The list of a type need not say which of its rows are groups.
  if (candidate.piece.EIU.empty() && isGroupType(type)) candidate.piece.EIU = "Y";
  candidate.texts = pieces_.row(row);
  candidate.typeKey = type.key;
  return candidate;
}

bool frmPickEquip::isPicked(std::string_view eid) const {
  return std::any_of(picked_.begin(), picked_.end(),
                     [&](const Candidate& candidate) { return candidate.piece.EID == eid; });
}

frmPickEquip::Candidate* frmPickEquip::selected(std::vector<Candidate>& candidates, const ReplyList& list) {
  const Grid& grid = list.grid();
  if (grid.Row < grid.FixedRows) return nullptr;
  const std::string& eid = list.text(grid.Row, kIdColumn);
  const auto found = std::find_if(candidates.begin(), candidates.end(),
                                  [&](const Candidate& each) { return each.piece.EID == eid; });
  return found == candidates.end() ? nullptr : &*found;
}

void frmPickEquip::cmdAdd_Click() {
  Candidate* chosen = selected(shown_, pieces_);
  if (!chosen || !MayUsePiece(app_, record_, chosen->piece.EID)) return;
  const EquipmentPiece& piece = chosen->piece;
  picks_.addRow({piece.EID, piece.number, piece.ETY, piece.status});
  picked_.push_back(std::move(*chosen));
  shown_.erase(shown_.begin() + (chosen - shown_.data()));
  fa.RemoveItem(fa.Row);
  enableCommands();
}

void frmPickEquip::cmdRemove_Click() {
  Candidate* chosen = selected(picked_, picks_);
  if (!chosen) return;
  // The lower list shows it only with its own type.
  if (chosen->typeKey == tvwEquip.SelectedKey.get()) {
    pieces_.addRow(chosen->texts);
    shown_.push_back(*chosen);
  }
  picked_.erase(picked_.begin() + (chosen - picked_.data()));
  faPicked.RemoveItem(faPicked.Row);
  enableCommands();
}

void frmPickEquip::openTools(ReplyList& list) {
  tools_ = &list;
  enableCommands();
  mnuPopupToolsAdd.Enabled = &list == &pieces_ && cmdAdd.Enabled;
  mnuPopupToolsRemove.Enabled = &list == &picks_ && cmdRemove.Enabled;
  for (MenuItem* item : {&mnuPopupToolsFind, &mnuPopupToolsSortAscending, &mnuPopupToolsSortDescending})
    item->Enabled = list.grid().hasData();
  app_.desktop.popupMenu(mnuPopupTools, nullptr);
}

void frmPickEquip::mnuPopupToolsFind_Click() {
  if (!tools_) return;
  const std::optional<std::string> text = app_.desktop.inputBox("Find:", Caption.get(), "");
  if (!text || trim(*text).empty()) return;
  const std::string wanted = lower(trim(*text));
  // From behind the selected row to the end, then from the top.
  Grid& grid = tools_->grid();
  const int rows = grid.Rows - grid.FixedRows;
  const int start = std::max(0, grid.Row - grid.FixedRows + 1);
  for (int step = 0; step < rows; ++step) {
    const int row = grid.FixedRows + (start + step) % rows;
    if (!holds(grid, row, wanted)) continue;
    grid.Row = row;
    return enableCommands();
  }
  informationBox(app_.desktop, "\"" + std::string(trim(*text)) + "\" not found.");
}

void frmPickEquip::sort(SortOrder order) {
  if (!tools_) return;
  tools_->sort(order);
  enableCommands();
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

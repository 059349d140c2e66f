#include "inventory/inventory_view.h"

#include <algorithm>

#include "frame/secured_commands.h"
#include "inventory/inventory_removal.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "records/records.h"
#include "words/tags.h"

namespace vantry {

/// What makes the lists differ.
struct InventoryKind {
  int kind;  ///< a `RecordKind`
  Subject subject;
  std::vector<Category> CategoryLists::*categories;  ///< nullptr: the tree is made of something else
  std::string_view code;                             ///< of the request for a list
  std::string_view category;                         ///< tag that the list is asked by
  ReplyLayout layout;
  Command MainCommands::*create;
  const char* cmdSearch;
  const char* treeName;
  const char* listName;
};

namespace {

constexpr ReplyColumn text(std::string_view heading, std::string_view tag, int width = 1500) {
  return {.heading = heading, .tag = tag, .width = width};
}
constexpr ReplyColumn kPiece = {.heading = "Barcode", .kind = CellKind::Piece};

// clang-format off
constexpr ReplyColumn kEquipmentColumns[] = {
    text("ID", tags::EID, 0), kPiece, text("Location", tags::LNA), text("Room", tags::RNM), text("Status", tags::STY),
    text("Manufacturer", tags::EMA), text("Model", tags::EMO), text("Serial", tags::ESN),
    text("Group Name", tags::GRPNO) /* groups have numbers; no window gives them a name */, text("Format", tags::EFO)};
constexpr ReplyColumn kGroupColumns[] = {
    text("ID", tags::EID, 0), {.heading = "Members?", .tag = tags::ECNT, .kind = CellKind::Own, .width = 1000},
    text("Equipment Number", tags::ENO), kPiece, text("Location", tags::LNA), text("Room", tags::RNM),
    text("Status", tags::STY)};
constexpr ReplyColumn kRoomColumns[] = {
    text("ID", tags::RID, 0), text("Number", tags::RNO), text("Room Name", tags::RNM, 2800),
    text("Room Location", tags::LNA), text("Status", tags::STY), text("Capacity", tags::RCA, 1000)};
constexpr ReplyColumn kMaintenanceColumns[] = {
    text("ID", tags::MID, 0),
    {.heading = "Day", .tag = tags::MDYI, .kind = CellKind::Date, .width = 1200, .sort = SortKind::ShortDate},
    text("Equipment Type", tags::ETY, 2200), text("Number", tags::ENO), text("Staff", tags::ON, 2200)};

using C = MainCommands;
constexpr InventoryKind kKinds[] = {
    {kEquipment, Subject::Equipment, &CategoryLists::equipment, "GETEITM", tags::ETI, {kEquipmentColumns, tags::EID}, &C::newEquipment, "cmdSearchEquip", "Types of equipment", "Equipment"},
    {kGroup, Subject::Equipment, &CategoryLists::groups, "GETGITM", tags::ETI, {kGroupColumns, tags::EID}, &C::newGroup, "cmdSearchGroup", "Types of groups", "Groups"},
    {kRoom, Subject::Rooms, &CategoryLists::rooms, "GETRITM", tags::RTI, {kRoomColumns, tags::RID}, &C::newRoom, "cmdSearchRooms", "Types of rooms", "Rooms"},
    {kMaintenance, Subject::Maintenance, nullptr, "GETMITM", tags::MSD, {kMaintenanceColumns, tags::MID}, &C::newMaintenance, "cmdSearchMaint", "Years and months", "Maintenance"},
};
// clang-format on

std::string indexed(std::string_view name, int kind) {
  return std::string(name) + '(' + std::to_string(kind) + ')';
}

std::string_view upToBar(std::string_view key) {
  return key.substr(0, key.find('|'));
}

std::string keyOf(const Category& category) {
  return category.id + '|' + category.name;
}

std::string nodeText(const Category& category) {
  return category.name + " (" + category.count + ')';
}

}  // namespace

InventoryView::InventoryView(const MainParts& parts, Frame& frame, int kind, MenuItem& popup)
    : MainView(parts, frame),
      tvwDB(frame, indexed("tvwDB", kind)),
      lblDetails(frame, indexed("lblDetails", kind)),
      fa(frame, indexed("fa", kind)),
      cmdNewInv(frame, indexed("cmdNewInv", kind), "&New"),
      cmdEditInv(frame, indexed("cmdEditInv", kind), "&Edit"),
      cmdDeleteInv(frame, indexed("cmdDeleteInv", kind), "&Delete"),
      cmdPrintInv(frame, indexed("cmdPrintInv", kind), "&Print"),
      cmdSearch(frame, kKinds[kind].cmdSearch, "&Search..."),
      kind_(kKinds[kind]),
      popup_(popup),
      list_(parts, fa) {
  tvwDB.AccessibleName = kind_.treeName;
  fa.AccessibleName = kind_.listName;
  lblDetails.Literal = true;
  frame.Layout = beside(Row{cmdNewInv, cmdEditInv, cmdDeleteInv, Stretch{}, cmdSearch, cmdPrintInv});
  connect();
}

LayoutNode InventoryView::beside(LayoutNode below) {
  const LayoutNode right = Column{lblDetails, fa, std::move(below)};
  return Row{LayoutNode(tvwDB).share(1), right.share(3)};
}

void InventoryView::connect() {
  on(tvwDB.Click, this, &InventoryView::tvwDB_NodeClick);
  on(fa.Click, this, &InventoryView::fa_Click);
  on(fa.DblClick, this, &InventoryView::fa_DblClick);
  on(fa.RightClick, this, &InventoryView::fa_MouseDown);
  on(create.Run, &(parts().commands.*kind_.create), &Command::run);
  on(edit.Run, this, &InventoryView::cmdEditInv_Click);
  on(remove.Run, this, &InventoryView::cmdDeleteInv_Click);
  create.Enabled = true;
  create.link(cmdNewInv);
  edit.link(cmdEditInv);
  remove.link(cmdDeleteInv);
  parts().commands.search.link(cmdSearch);
  parts().commands.printListing.link(cmdPrintInv);
  list_.hooks.progress = [this](int row, int total) { parts().showProgress(row, total); };
}

void InventoryView::secure(const Rights& rights) {
  const SubjectRights needed = rightsOf(kind_.subject);
  vantry::secure(rights, {{create, needed.add}, {remove, needed.remove}});
  cmdEditInv.Caption = viewOnly(rights, kind_.subject) ? "Vie&w" : "&Edit";
}

// Columns and tree

void InventoryView::load() {
  tvwDB.Clear();
  BuildInventoryFlexArray();
  clearList();
}

void InventoryView::BuildInventoryFlexArray() {
  showsBarcodes_ = app().preferences.Barcodes;
  list_.build(kind_.layout);
}

void InventoryView::takePreferences(Applies what) {
  MainView::takePreferences(what);
  if (what != Applies::Searches || showsBarcodes_ == app().preferences.Barcodes) return;
  BuildInventoryFlexArray();
  clearList();
  if (isVisible()) refresh();
}

void InventoryView::BuildMainTrees() {
  const std::string selected = tvwDB.SelectedKey;
  tvwDB.Clear();
  fillTree();
  const TreeNode* node = tvwDB.find(selected);
  if (!node) return clearList();
  if (node->parent) node->parent->expanded = true;
  tvwDB.SelectedKey = selected;
}

void InventoryView::fillTree() {
  for (const Category& category : app().context.categories.*kind_.categories)
    static_cast<void>(tvwDB.Add({}, keyOf(category), nodeText(category)));
}

std::string_view InventoryView::selectedCategory() const {
  return upToBar(tvwDB.SelectedKey.get());
}

// The list of a node

std::string InventoryView::reportText() const {
  const TreeNode* node = tvwDB.find(listedKey_);
  return node ? node->text : std::string();
}

void InventoryView::tvwDB_NodeClick() {
  refresh();
  fa.ScrollToTop();
}

void InventoryView::refresh() {
  TreeNode* node = tvwDB.find(tvwDB.SelectedKey.get());
  if (!node) return;
  if (node->children.empty()) return readList(*node);
  // The list stays, and with it the node that it shows.
  allowListing(false);
  allowDetail(false);
  allowAllDetails(false);
  node->expanded = true;
  tvwDB.changed();
}

void InventoryView::readList(const TreeNode& node) {
  clearList();
  listedKey_ = node.key;
  lblDetails.Caption = heading(node);
  rememberType(node);
  parts().showMessage("Requesting Data From Server...");
  const bool read = askFor(upToBar(node.key), [this] {
    list_.fill();
    rowsChanged();
  });
  if (!read) parts().showMessage("");  // a failure leaves no promise behind
}

/// A new record has the type that was looked at last.
void InventoryView::rememberType(const TreeNode& node) {
  if (!kind_.categories) return;
  const auto slot = static_cast<std::size_t>(kind_.kind);
  app().slots.typeIds[slot] = upToBar(node.key);
  app().slots.typeNames[slot] = node.key.substr(node.key.find('|') + 1);
}

void InventoryView::refill(std::string_view category) {
  if (isVisible() && category == selectedCategory()) refresh();
}

bool InventoryView::askFor(std::string_view category, const std::function<void()>& read) {
  return ask()(kind_.code, {{kind_.category, category}}, read);
}

std::string InventoryView::heading(const TreeNode& node) const {
  return node.text.substr(0, node.text.rfind('(')) + "List";
}

void InventoryView::clearList() {
  list_.clear();
  listedKey_.clear();
  fa.Row = 0;
  lblDetails.Caption = "";
  fa_Click();
}

void InventoryView::rowsChanged() {
  const int rows = fa.Rows - fa.FixedRows;
  parts().showProgress(rows, rows);
  fa_Click();
}

// Rows

void InventoryView::fa_Click() {
  allowCommands();
  rowSelected();
}

void InventoryView::allowCommands() {
  setEnabled(hasSelectedRow(), edit, remove);
  allowDetail(hasSelectedRow());
  sort.Enabled = fa.hasData();
  allowListing(fa.hasData());
  allowAllDetails(fa.hasData());
}

void InventoryView::fa_MouseDown() {
  app().desktop.popupMenu(popup_, nullptr);
}

void InventoryView::fa_DblClick() {
  if (fa.MouseRow >= fa.FixedRows) cmdEditInv_Click();
}

void InventoryView::cmdEditInv_Click() {
  if (hasSelectedRow()) OpenRecordWindow(app(), {kind_.kind, selectedId(), kSourceMainWindow});
}

void InventoryView::cmdDeleteInv_Click() {
  if (!RemoveInventoryRecord(app(), ask(), kind_.kind, selectedId())) return;
  dropSelectedRow(selectedCategory());
  fa.SetFocus();  // the button is off now, and the focus would jump to the next one
}

void InventoryView::dropSelectedRow(std::string_view category) {
  if (hasSelectedRow()) {
    fa.RemoveItem(fa.Row);
    rowsChanged();
  } else {
    refill(category);  // after a save the list may have no row selected
  }
  lowerCount([category](const Category& each) { return each.id == category; });
}

void InventoryView::dropRecord(std::string_view id, std::string_view category) {
  for (int row = fa.FixedRows; row < fa.Rows; ++row) {
    if (list_.text(row, 0) != id) continue;
    fa.RemoveItem(row);
    break;
  }
  lowerCount([&](const Category& each) { return each.name == category; });
}

/// The count is kept with the categories, from which the tree is built again.
void InventoryView::lowerCount(const std::function<bool(const Category&)>& isMeant) {
  if (!kind_.categories) return;
  std::vector<Category>& categories = app().context.categories.*kind_.categories;
  const auto found = std::find_if(categories.begin(), categories.end(), isMeant);
  if (found == categories.end()) return;
  found->count = std::to_string(std::max(0, intOf(found->count) - 1));
  if (TreeNode* node = tvwDB.find(keyOf(*found))) node->text = nodeText(*found);
  tvwDB.changed();
}

}  // namespace vantry

#include "inventory/members_page.h"

#include <algorithm>

#include "frame/app.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "records/look_up.h"
#include "records/records.h"
#include "words/tags.h"

namespace vantry {

static constexpr std::string_view kGroupMark = "Y";

static std::string_view typeOf(std::string_view key) {
  return key.substr(key.find('|') + 1);
}

MembersPage::MembersPage(App& app, const Ask& ask, Frame& frame, const MembersKind& kind,
                         std::function<std::string()> recordId)
    : tree(frame, kind.tree),
      faCandidates(frame, "fa(0)"),
      cmdAdd(frame, kind.add, "&Add"),
      cmdRemove(frame, kind.remove, "&Remove"),
      txtBarOrNumber(frame, "txtBarOrNumber"),
      cmdAddByBarcode(frame, "cmdAddByBarcode", "Add By Barcode"),
      cmdAddByNumber(frame, "cmdAddByNumber", "Add By Number"),
      cmdUndo(frame, "cmdUndo", "&Undo"),
      lblMembers(frame, "lblMembers", kind.caption),
      faMembers(frame, "fa(1)"),
      mnuPopup(frame.form(), "mnuPopupEquipment", "Popup Equipment"),
      app_(app),
      ask_(ask),
      candidates_(app, faCandidates),
      members_(app, faMembers),
      kind_(kind),
      recordId_(std::move(recordId)) {
  tree.AccessibleName = "Types of what can be added";
  faCandidates.AccessibleName = "What can be added";
  faMembers.AccessibleName = kind.caption;
  txtBarOrNumber.AccessibleName = "Barcode or number";
  txtBarOrNumber.TakesScans = true;
  mnuPopup.Visible = false;
  buildCandidates(kind_.sources.back());
  members_.build({.columns = kind_.columns, .walk = tags::EID});
  // The groups of a type are listed wherever they are; what is in the room already is no choice for it.
  candidates_.hooks.accepts = [this] {
    return kind_.recordTag != tags::RID || app_.message.Get(tags::RID) != recordId_();
  };
  makePopup();
  connect();
  const LayoutNode buttons = Row{cmdAdd,          cmdRemove,      Gap{}, LayoutNode(txtBarOrNumber).share(1),
                                 cmdAddByBarcode, cmdAddByNumber, Gap{}, cmdUndo};
  const LayoutNode lists =
      Column{LayoutNode(faCandidates).share(1), buttons, lblMembers, LayoutNode(faMembers).share(1)};
  frame.Layout = Row{LayoutNode(tree).share(1), lists.share(3)};
}

void MembersPage::makePopup() {
  for (const MembersEntry& entry : kind_.entries) {
    mnuEntries.push_back(std::make_unique<MenuItem>(mnuPopup, entry.name, entry.caption));
    if (entry.command) (this->*entry.command).link(*mnuEntries.back());
  }
}

void MembersPage::connect() {
  on(add.Run, this, &MembersPage::addSelected);
  on(remove.Run, this, &MembersPage::removeSelected);
  on(addByBarcode.Run, this, &MembersPage::cmdAddByBarcode_Click);
  on(addByNumber.Run, this, &MembersPage::cmdAddByNumber_Click);
  on(undo.Run, this, &MembersPage::cmdUndo_Click);
  on(editPiece.Run, this, &MembersPage::edit);
  on(editGroup.Run, this, &MembersPage::edit);
  on(newPiece.Run, this, &MembersPage::openNew, kEquipment);
  on(newGroup.Run, this, &MembersPage::openNew, kGroup);
  on(sortAscending.Run, this, &MembersPage::sort, SortOrder::Ascending);
  on(sortDescending.Run, this, &MembersPage::sort, SortOrder::Descending);
  add.link(cmdAdd);
  remove.link(cmdRemove);
  addByBarcode.link(cmdAddByBarcode);
  addByNumber.link(cmdAddByNumber);
  undo.link(cmdUndo);
  on(tree.Click, this, &MembersPage::tree_NodeClick);
  on(txtBarOrNumber.Enter, &addByBarcode, &Command::run);
  connectList(faCandidates);
  connectList(faMembers);
  disable(undo);
  DisableButtons();
}

void MembersPage::connectList(Grid& grid) {
  grid.Click = [this, &grid] { fa_Click(grid); };
  grid.DblClick = [this, &grid] {
    fa_Click(grid);
    (editPiece.usable() ? editPiece : editGroup).run();
  };
  grid.RightClick = [this] { app_.desktop.popupMenu(mnuPopup, nullptr); };
}

// The first visit, copies

void MembersPage::load() {
  loaded_ = true;
  if (recordId_().empty()) return;  // a refused record has none
  readMembers();
  buildTree();
}

void MembersPage::lock() {
  locked_ = true;
  disable(addByBarcode, addByNumber, newPiece, newGroup);
  DisableButtons();
}

void MembersPage::unlock() {
  locked_ = false;
  setEnabled(true, addByBarcode, addByNumber, newPiece, newGroup);
  tree.Clear();
  candidates_.clear();
  members_.clear();
  if (loaded_) load();
}

// Selection

void MembersPage::DisableButtons() {
  disable(add, remove, editPiece, editGroup);
  setEnabled(active_ && active_->hasData(), sortAscending, sortDescending);
}

void MembersPage::fa_Click(Grid& grid) {
  active_ = &grid;
  DisableButtons();
  if (grid.Row < grid.FixedRows) return;
  const bool isGroup = thingOf(activeList(), grid.Row).isGroup;
  (isGroup ? editGroup : editPiece).Enabled = true;
  (&grid == &faCandidates ? add : remove).Enabled = !locked_;
}

const ReplyList& MembersPage::activeList() const {
  return active_ == &faMembers ? members_ : candidates_;
}

MemberThing MembersPage::thingOf(const ReplyList& list, int row) {
  const std::string status = list.valueOf(row, tags::STY);
  return {list.valueOf(row, tags::EID), status.empty() ? list.valueOf(row, tags::ESDS) : status,
          list.valueOf(row, tags::RID), list.valueOf(row, tags::EIU) == kGroupMark};
}

static int rowOf(const ReplyList& list, std::string_view id) {
  const Grid& grid = list.grid();
  for (int row = grid.FixedRows; row < grid.Rows; ++row) {
    if (list.valueOf(row, tags::EID) == id) return row;
  }
  return 0;
}

std::optional<MemberThing> MembersPage::memberOf(std::string_view id) const {
  const int row = rowOf(members_, id);
  return row > 0 ? std::optional(thingOf(members_, row)) : std::nullopt;
}

void MembersPage::dropRow(const ReplyList& list, std::string_view id) {
  if (const int row = rowOf(list, id)) list.grid().RemoveItem(row);
}

void MembersPage::sort(SortOrder order) {
  (active_ == &faMembers ? members_ : candidates_).sort(order);
  DisableButtons();
}

// Members and types

void MembersPage::readMembers() {
  ask_(kind_.members, {{kind_.recordTag, recordId_()}}, [this] { members_.fill(); });
  DisableButtons();
}

std::string MembersPage::keyOf(const MemberSource& source, std::string_view typeId) {
  return std::string(source.name) + '|' + std::string(typeId);
}

void MembersPage::buildTree() {
  const std::string selected = tree.SelectedKey;
  std::vector<std::string> closed;
  for (const MemberSource& source : kind_.sources) {
    if (const TreeNode* root = tree.find(source.key); root && !root->expanded) closed.emplace_back(root->key);
  }
  tree.Clear();
  for (const MemberSource& source : kind_.sources) addTypes(source);
  for (TreeNode* root : tree.Roots())
    root->expanded = std::find(closed.begin(), closed.end(), root->key) == closed.end();
  tree.changed();
  if (tree.find(selected)) {
    tree.SelectedKey = selected;
  } else {
    candidates_.clear();
  }
}

void MembersPage::addTypes(const MemberSource& source) {
  static_cast<void>(tree.Add({}, source.key, source.name));
  if (source.typesOfRecord) app_.message.Add(kind_.recordTag, recordId_());
  ask_(source.types, {}, [this, &source] {
    const TagMessage& message = app_.message;
    while (app_.message.NextRecord(tags::ETI)) {
      const std::string type = message.Get(tags::ETY);
      TreeNode* node = tree.Add(source.key, keyOf(source, message.Get(tags::ETI)),
                                type + " (" + message.Get(tags::MIC) + ')');
      if (node) node->tag = type;
    }
  });
}

const MemberSource* MembersPage::sourceOf(std::string_view key) const {
  for (const MemberSource& source : kind_.sources) {
    if (key.substr(0, key.find('|')) == source.name) return &source;
  }
  return nullptr;
}

void MembersPage::buildCandidates(const MemberSource& source) {
  candidates_.build({.columns = source.columns, .walk = tags::EID});
}

void MembersPage::showType(const std::string& key) {
  if (tree.find(key)) tree.SelectedKey = key;
  tree_NodeClick();
}

void MembersPage::tree_NodeClick() {
  const TreeNode* node = tree.find(tree.SelectedKey.get());
  const MemberSource* source = node && node->parent ? sourceOf(node->key) : nullptr;
  candidates_.clear();
  DisableButtons();
  if (!source) return;
  buildCandidates(*source);
  app_.message.Add(tags::ETI, typeOf(node->key));
  if (source->thingsOfRecord) app_.message.Add(kind_.recordTag, recordId_());
  ask_(source->things, {}, [this] { candidates_.fill(); });
  faCandidates.ScrollToTop();
  DisableButtons();
}

// Adding and removing

void MembersPage::addSelected() {
  if (faCandidates.Row < faCandidates.FixedRows) return;
  const MemberThing thing = thingOf(candidates_, faCandidates.Row);
  if (put(thing, false)) wasAdded(thing.id);
  faCandidates.SetFocus();  // the button may be off now, and the focus would jump to the next one
}

void MembersPage::cmdAddByBarcode_Click() {
  addFound(FindEquipmentByBarcode);
}

void MembersPage::cmdAddByNumber_Click() {
  addFound(FindEquipmentByNumber);
}

/// The text stays selected after a failure, so that the next one replaces it.
void MembersPage::addFound(void (*find)(App&)) {
  app_.lookUp.text = trim(txtBarOrNumber.Text.get());
  if (app_.lookUp.text.empty()) return;
  app_.message.Add(tags::EPT, kind_.purpose);
  find(app_);
  txtBarOrNumber.SetFocus();
  txtBarOrNumber.SelectText();
  if (!app_.lookUp.LookupStatus.empty()) return;  // it has told what it did not find
  const LookUpRow& found = app_.lookUp.LookupRows.front();
  const MemberThing thing{found.EID, found.STY, found.RID, found.EIU == kGroupMark};
  if (!put(thing, true)) return;
  txtBarOrNumber.Text = "";
  wasAdded(thing.id);
}

void MembersPage::wasAdded(const std::string& id) {
  readMembers();
  dropRow(candidates_, id);
  buildTree();
  DisableButtons();
  membersChanged();
}

void MembersPage::removeSelected() {
  if (faMembers.Row < faMembers.FixedRows) return;
  take(thingOf(members_, faMembers.Row));
  faMembers.SetFocus();
}

// Other windows

void MembersPage::edit() {
  if (!active_ || active_->Row < active_->FixedRows) return;
  const MemberThing thing = thingOf(activeList(), active_->Row);
  fillSlots();
  OpenRecordWindow(app_, {thing.isGroup ? kGroup : kEquipment, thing.id, kind_.source});
}

/// The new record has the type that is selected in the tree.
void MembersPage::openNew(int recordKind) {
  const TreeNode* node = tree.find(tree.SelectedKey.get());
  const MemberSource* source = node && node->parent ? sourceOf(node->key) : nullptr;
  if (source && source->kind == recordKind) {
    const auto slot = static_cast<std::size_t>(recordKind);
    app_.slots.typeIds[slot] = typeOf(node->key);
    app_.slots.typeNames[slot] = node->tag;
  }
  fillSlots();
  OpenRecordWindow(app_, {recordKind, "", kind_.source});
}

}  // namespace vantry

#include "messaging/frmBibSearch.h"

#include "messaging/marc_viewer.h"
#include "platform/desktop.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {
namespace {

/// What can be searched by; its place in this list is the list's index, its number the request's.
struct SearchField {
  std::string_view name;
  std::string_view number;
};
constexpr SearchField kFields[] = {
    {"Title", "1"}, {"Author", "2"}, {"Subject", "3"}, {"Call Number", "4"}, {"Keyword", "5"}};
constexpr int kKeyword = 4;

constexpr int kMostTitles = 500;

// Keys of nodes: a title's is "B" and its id, that of holdings "M", of an item "I". A title that was not
// opened yet has one node below it, so that it can be.
constexpr std::string_view kUnread = "?";
// Pictures of the tree, counted from 1.
constexpr int kTitlePicture = 1;
constexpr int kHoldingsPicture = 2;
constexpr int kItemPicture = 3;

/// The parts that are there, with a comma between them.
std::string listed(std::initializer_list<std::string> parts) {
  std::string text;
  for (const std::string& part : parts) {
    if (part.empty()) continue;
    if (!text.empty()) text += ", ";
    text += part;
  }
  return text;
}

std::string copyText(const std::string& number) {
  return number.empty() ? std::string() : "copy " + number;
}

const TreeNode& rootOf(const TreeNode& node) {
  return node.parent ? rootOf(*node.parent) : node;
}

}  // namespace

frmBibSearch::frmBibSearch(Windows& windows, const Services& services, Manner manner)
    : Form(windows, "frmBibSearch"),
      services_(services),
      ask_(services.global, Name()),
      manner_(std::move(manner)) {
  Caption.put("Catalogue Search");
  tvwTitles.AccessibleName = "Titles found";
  tvwTitles.LongTexts = true;
  tvwTitles.Pictures = {"item-list", "folder-closed", "booking"};
  cmdSearch.Default = true;
  cmdCancel.Cancel = true;
  on(cboSearchBy.Click, this, &frmBibSearch::cboSearchBy_Click);
  on(txtSearch.Change, this, &frmBibSearch::txtSearch_Change);
  on(txtSearch.Enter, this, &frmBibSearch::txtSearch_Enter);
  on(cmdSearch.Click, this, &frmBibSearch::cmdSearch_Click);
  on(tvwTitles.Expand, this, &frmBibSearch::tvwTitles_Expand);
  on(tvwTitles.Click, this, &frmBibSearch::tvwTitles_Click);
  on(tvwTitles.DblClick, this, &frmBibSearch::tvwTitles_DblClick);
  on(lstChosen.Click, this, &frmBibSearch::lstChosen_Click);
  on(lstChosen.DblClick, this, &frmBibSearch::lstChosen_DblClick);
  on(cmdAdd.Click, this, &frmBibSearch::cmdAdd_Click);
  on(cmdRemove.Click, this, &frmBibSearch::cmdRemove_Click);
  on(cmdView.Click, this, &frmBibSearch::cmdView_Click);
  on(cmdOK.Click, this, &frmBibSearch::cmdOK_Click);
  on(cmdCancel.Click, this, &frmBibSearch::cmdCancel_Click);
  Layout = Column{Fields{lblSearchBy, Row{cboSearchBy, Gap{}, chkHoldings, Stretch{}}, lblSearch,
                         Row{LayoutNode(txtSearch).share(1), cmdSearch}},
                  lblCount,
                  LayoutNode(tvwTitles).share(3),
                  Row{cmdAdd, cmdRemove, Stretch{}, cmdView},
                  lblChosen,
                  LayoutNode(lstChosen).share(1),
                  Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmBibSearch::Form_Load() {
  services_.tools.PrepareForm(*this);
  cboSearchBy.Clear();
  for (const SearchField& field : kFields)
    cboSearchBy.AddItem(std::string(field.name), std::string(field.number));
  cboSearchBy.ListIndex = manner_.criteria.field;
  txtSearch.Text = manner_.criteria.text;
  chkHoldings.Value = manner_.criteria.holdings;
  chkHoldings.Visible = manner_.allowHoldingsKeyword;
  cboSearchBy_Click();
  txtSearch_Change();
  enableButtons();
}

void frmBibSearch::Form_Activate() {
  if (tvwTitles.Count() > 0) return;
  txtSearch.SetFocus();
  txtSearch.SelectText();
}

bool frmBibSearch::isKeyword() const {
  return cboSearchBy.ListIndex == kKeyword;
}

BibCriteria frmBibSearch::criteria() const {
  return {cboSearchBy.ListIndex, txtSearch.Text, chkHoldings.Value};
}

void frmBibSearch::cboSearchBy_Click() {
  chkHoldings.Enabled = isKeyword();
}

void frmBibSearch::txtSearch_Change() {
  cmdSearch.Enabled = !trim(txtSearch.Text.get()).empty();
}

void frmBibSearch::txtSearch_Enter() {
  cmdSearch.press();
}

std::string frmBibSearch::searchText() const {
  std::string text(trim(txtSearch.Text.get()));
  if (manner_.autoTruncate && !isKeyword() && !text.ends_with('?')) text += '?';
  return text;
}

void frmBibSearch::cmdSearch_Click() {
  TagMessage& message = services_.message;
  tvwTitles.Clear();
  lblCount.Caption = "Searching...";
  Refresh();
  message.Add(tags::SRCHTAG, cboSearchBy.ItemData(cboSearchBy.ListIndex));
  message.Add(tags::SRCHVAL, searchText());
  if (isKeyword() && manner_.allowHoldingsKeyword) message.Add(tags::KWHO, chkHoldings.Value ? "Y" : "N");
  const int rc = ask_.codeOf("CATFIND");
  lblCount.Caption = "";
  if (ask_.succeeded(rc, "CATFIND")) showTitles();
  enableButtons();
}

void frmBibSearch::showTitles() {
  TagMessage& message = services_.message;
  const int found = message.Count(tags::BI);
  const bool more = message.Get(tags::SRCHCNT) != std::to_string(found);
  lblCount.Caption = more ? "More than " + std::to_string(kMostTitles) + " titles; here are the first."
                     : found == 0 ? "No titles found."
                     : found == 1 ? "1 title"
                                  : std::to_string(found) + " titles";
  std::string first;
  while (message.NextRecord(tags::BI)) {
    const std::string id = message.Get(tags::BI);
    const std::string key = "B" + id;
    TreeNode* node = tvwTitles.Add(
        {}, key, listed({message.Get(tags::TITL), message.Get(tags::AUTH), message.Get(tags::YR)}),
        kTitlePicture);
    if (!node) continue;
    node->tag = id;
    (void)tvwTitles.Add(key, std::string(kUnread) + key, {});
    if (first.empty()) first = key;
  }
  if (first.empty()) return;
  // The titles are at hand for the arrow keys at once.
  tvwTitles.SelectedKey = first;
  tvwTitles.SetFocus();
}

void frmBibSearch::tvwTitles_Expand() {
  for (TreeNode* title : tvwTitles.Roots()) {
    const bool unread = title->children.size() == 1 && title->children[0]->key.starts_with(kUnread);
    if (title->expanded && unread) return loadHoldings(*title);
  }
}

void frmBibSearch::loadHoldings(TreeNode& title) {
  TagMessage& message = services_.message;
  const int rc = ask_.codeOf("GBHI", {{tags::BI, title.tag}, {tags::MI, "0"}});
  if (rc != 0) {
    title.expanded = false;
    tvwTitles.changed();
  }
  if (!ask_.succeeded(rc, "GBHI")) return;
  tvwTitles.Remove(std::string(kUnread) + title.key);
  while (message.NextRecord(tags::BI)) {
    const std::string holdings = message.Get(tags::MI);
    const std::string key = "M" + holdings;
    TreeNode* node = tvwTitles.Add(title.key, key, listed({message.Get(tags::LO), message.Get(tags::CN)}),
                                   kHoldingsPicture);
    if (node) {
      node->tag = holdings;
      node->expanded = true;
    }
    const std::string item = message.Get(tags::IM);
    if (item.empty()) continue;
    TreeNode* leaf = tvwTitles.Add(key, "I" + item,
                                   listed({message.Get(tags::MTY), message.Get(tags::EN),
                                           message.Get(tags::CH), copyText(message.Get(tags::CP))}),
                                   kItemPicture);
    if (leaf) leaf->tag = holdings;
  }
}

void frmBibSearch::tvwTitles_Click() {
  enableButtons();
}

void frmBibSearch::tvwTitles_DblClick() {
  cmdAdd.press();
}

void frmBibSearch::lstChosen_Click() {
  enableButtons();
}

void frmBibSearch::lstChosen_DblClick() {
  cmdRemove.press();
}

/// A title is chosen as a title; holdings, and an item of holdings, as holdings.
frmBibSearch::Choice frmBibSearch::choiceOf(const TreeNode& node) const {
  const TreeNode& title = rootOf(node);
  if (&node == &title) return {{title.tag, "0"}, title.text};
  const TreeNode& holdings = node.parent == &title ? node : *node.parent;
  return {{title.tag, holdings.tag}, title.text + "; " + holdings.text};
}

void frmBibSearch::cmdAdd_Click() {
  const TreeNode* node = tvwTitles.find(tvwTitles.SelectedKey.get());
  if (!node) return;
  Choice fresh = choiceOf(*node);
  for (std::size_t i = 0; i < chosen_.size(); ++i) {
    if (chosen_[i].selection == fresh.selection) return showChosen(static_cast<int>(i));
  }
  chosen_.push_back(std::move(fresh));
  showChosen(static_cast<int>(chosen_.size()) - 1);
}

void frmBibSearch::cmdRemove_Click() {
  const int at = lstChosen.ListIndex;
  if (at < 0) return;
  chosen_.erase(chosen_.begin() + at);
  showChosen(std::min(at, static_cast<int>(chosen_.size()) - 1));
}

void frmBibSearch::showChosen(int selected) {
  lstChosen.Clear();
  for (const Choice& choice : chosen_) lstChosen.AddItem(choice.text);
  lstChosen.ListIndex = selected;
  enableButtons();
}

void frmBibSearch::enableButtons() {
  const TreeNode* node = tvwTitles.find(tvwTitles.SelectedKey.get());
  cmdAdd.Enabled = node != nullptr;
  cmdView.Enabled = node != nullptr;
  cmdRemove.Enabled = lstChosen.ListIndex >= 0;
  cmdOK.Enabled = node != nullptr || !chosen_.empty();
}

void frmBibSearch::cmdView_Click() {
  const TreeNode* node = tvwTitles.find(tvwTitles.SelectedKey.get());
  if (!node) return;
  const BibSelection record = choiceOf(*node).selection;
  const bool title = record.MI == "0";
  showMarcRecord(windows(), services_.message, services_.global, title ? MarcKind::Bib : MarcKind::Holdings,
                 title ? record.BI : record.MI);
}

/// Where nothing was put onto the list, the selected record is meant.
void frmBibSearch::cmdOK_Click() {
  if (chosen_.empty()) cmdAdd_Click();
  for (const Choice& choice : chosen_) result_.push_back(choice.selection);
  Unload();
}

void frmBibSearch::cmdCancel_Click() {
  Unload();
}

}  // namespace vantry

#include "booking/frmMultItems.h"

#include "messaging/marc_viewer.h"
#include "platform/text.h"
#include "platform/wiring.h"

namespace vantry {
namespace {

constexpr std::string_view kNone = "0";

constexpr std::string_view kInstruction =
    "Select items for booking:\n"
    "- any item for the bib by selecting a bibliographic record\n"
    "- any item for a holdings record by selecting a holdings record\n"
    "- a particular item by selecting an item record";

std::string keyOf(const MediaThing& thing) {
  return thing.BI + "|" + thing.MI + "|" + thing.IM;
}

/// The wish for any item of the match's title.
MediaThing titleOf(const MediaThing& match) {
  MediaThing title;
  title.BI = match.BI;
  title.MI = kNone;
  title.IM = kNone;
  title.title = match.title;
  return title;
}

/// The wish for any item of the match's holdings.
MediaThing holdingsOf(const MediaThing& match) {
  MediaThing holdings = titleOf(match);
  holdings.MI = match.MI;
  holdings.location = match.location;
  holdings.callNumber = match.callNumber;
  return holdings;
}

}  // namespace

frmMultItems::frmMultItems(App& app, const ItemMatches& matches)
    : Form(app.windows, "frmMultItems"), app_(app), matches_(matches) {
  Caption = "Select Media Items";
  lblInstruct.Caption = std::string(kInstruction);
  tvwMediaItems.AccessibleName = "Titles, holdings and items";
  tvwMediaItems.Headings = {"Title", "Location", "Call Number", "Media Type",
                            "Enum",  "Chron",    "Copy",        "Location"};
  tvwMediaItems.LongTexts = true;
  tvwMediaItems.MultiSelect = true;
  tvwMediaItems.BoldRoots = true;
  cmdSelect.Default = true;
  cmdCancel.Cancel = true;
  on(tvwMediaItems.Click, this, &frmMultItems::enableCommands);
  on(cmdSelect.Click, this, &frmMultItems::cmdSelect_Click);
  on(cmdView.Click, this, &frmMultItems::cmdView_Click);
  on(cmdCancel.Click, this, &frmMultItems::cmdCancel_Click);
  Layout = Column{lblInstruct, tvwMediaItems, Gap{}, Row{cmdView, Stretch{}, cmdSelect, cmdCancel}};
}

void frmMultItems::Form_Load() {
  app_.tools.PrepareForm(*this);
  for (const MediaThing& match : matches_) addMatch(match);
  for (auto& [key, thing] : things_) takeCommonType(thing);
  tvwMediaItems.changed();
  // The one title that the search found need not be looked for again.
  const auto titles = tvwMediaItems.Roots();
  if (titles.size() == 1) tvwMediaItems.selectKeys({titles.front()->key});
  enableCommands();
}

void frmMultItems::addMatch(const MediaThing& match) {
  const MediaThing title = titleOf(match);
  const MediaThing holdings = holdingsOf(match);
  addNode({}, title, match.title, {});
  if (match.MI == kNone) return;
  addNode(keyOf(title), holdings, "Holdings", {match.location, match.callNumber});
  if (match.IM == kNone) return;
  addNode(keyOf(holdings), match, "Item",
          {"", "", match.type.name, match.enumeration, match.chronology, match.copy, match.location});
}

void frmMultItems::addNode(std::string_view parent, const MediaThing& thing, std::string text,
                           std::vector<std::string> columns) {
  TreeNode* node = tvwMediaItems.Add(parent, keyOf(thing), std::move(text));
  if (!node) return;  // each record brings its title and its holdings along
  node->columns = std::move(columns);
  node->expanded = true;
  things_[node->key] = thing;
}

/// A wish takes the media type of its items where all have the same.
void frmMultItems::takeCommonType(MediaThing& wish) const {
  if (wish.IM != kNone) return;
  MediaType common;
  for (const MediaThing& match : matches_) {
    const bool below = match.BI == wish.BI && (wish.MI == kNone || match.MI == wish.MI);
    if (!below || match.IM == kNone) continue;
    if (match.type.id == kNone || (common.id != kNone && match.type.id != common.id)) return;
    common = match.type;
  }
  wish.type = common;
}

void frmMultItems::enableCommands() {
  const bool any = !tvwMediaItems.SelectedKeys().empty();
  cmdSelect.Enabled = any;
  cmdView.Enabled = any;
}

void frmMultItems::cmdSelect_Click() {
  for (const std::string& key : tvwMediaItems.SelectedKeys()) chosen.push_back(things_.at(key));
  Tag = "1";
  Hide();
}

void frmMultItems::cmdView_Click() {
  const auto found = things_.find(tvwMediaItems.SelectedKey.get());
  if (found == things_.end()) return;
  const MediaThing& thing = found->second;
  const bool title = thing.MI == kNone;
  showMarcRecord(app_.windows, app_.message, app_.global, title ? MarcKind::Bib : MarcKind::Holdings,
                 title ? thing.BI : thing.MI);
}

void frmMultItems::cmdCancel_Click() {
  Tag = "";
  Hide();
}

}  // namespace vantry

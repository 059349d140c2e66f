#include "search/frmFind.h"

#include <algorithm>

#include "inventory/modRoom.h"
#include "messaging/return_codes.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "records/records.h"
#include "records/search_failure.h"
#include "records/search_window.h"
#include "search/result_layouts.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr std::string_view kTerms[] = {"Single Term", "AND terms", "OR terms"};
constexpr std::string_view kOperators[] = {"", "AND", "OR"};
constexpr std::string_view kAdvancedCaption = "Advanced >>";
constexpr std::string_view kPlainCaption = "<< Advanced";

/// A list of criteria that the server keeps.
struct ServerList {
  ListSource source;
  std::string_view code;
  std::string_view id;
  std::string_view name;
};
constexpr ServerList kServerLists[] = {
    {ListSource::RoomDetails, "GETRDTLTY", tags::RDI, tags::RDTY},
    {ListSource::EquipmentStatuses, "GETEGSTY", tags::SID, tags::STY},
    {ListSource::RoomStatuses, "GETRSTY", tags::SID, tags::STY},
    {ListSource::MaintenanceDetails, "GETMDTY", tags::MTI, tags::MTY},
};

template <class Row>
std::vector<ListEntry> entriesOf(const std::vector<Row>& rows) {
  std::vector<ListEntry> entries;
  entries.reserve(rows.size());
  for (const Row& row : rows) entries.push_back({row.name, row.id});
  return entries;
}

/// The name in a column of patrons. A missing first name leaves the middle one behind the comma, and a
/// missing middle name leaves the blank before it, on purpose.
std::string listedName(const TagMessage& message) {
  std::string name;
  if (const std::string last = message.Get(tags::PLN); !last.empty()) name = last + ", ";
  if (const std::string first = message.Get(tags::PFN); !first.empty()) name += first + " ";
  return name + message.Get(tags::PMN);
}

}  // namespace

frmFind::frmFind(App& app)
    : Form(app.windows, std::string(kSearchWindow)),
      chkHistBookings(criteria(kFindBookings).fraSearch, "chkHistBookings", "Include historical boo&kings"),
      results(app, faResults, MomentFields{dtServerDate, txtServerTime}),
      app_(app) {
  Caption = "Find";
  Icon = "search";
  for (const SearchCategoryRow& row : searchCategories()) cboSearchFor.AddItem(std::string(row.caption));
  for (const std::string_view term : kTerms) optTerms.add(fraTerms, std::string(term));
  optTerms(0).Value = true;
  faResults.AccessibleName = "Results";
  mnuPopupTools.Visible = false;
  cmdAdvancedSearch.Tag = "0";
  cmdFindNow.Default = true;
  cmdClose.Cancel = true;
  setVisible(false, fraAdvanced, faResults, sbFind);
  disable(lstCriteria, cboSearchFields, cboOperator, cboValue, cmdAddCriteria, cmdRemoveCriteria);
  results.hooks.ownText = [&app](const ReplyColumn&) { return listedName(app.message); };
  results.hooks.filled = [this](int row) { showCount(row); };
  connect();
  connectCommands();
  arrange();
}

std::vector<std::unique_ptr<CriteriaPages>> frmFind::makeCategories() {
  std::vector<std::unique_ptr<CriteriaPages>> all;
  for (std::size_t i = 0; i < searchCategories().size(); ++i)
    all.push_back(std::make_unique<CriteriaPages>(*this, static_cast<int>(i)));
  return all;
}

void frmFind::connect() {
  for (const auto& category : categories_) {
    category->roomsOf = [this](const std::string& location) { return roomsOf(location); };
    category->onEnter([this] { cmdFindNow_Click(); });
  }
  on(cboSearchFor.Click, this, &frmFind::cboSearchFor_Click);
  on(cmdAdvancedSearch.Click, this, &frmFind::cmdAdvancedSearch_Click);
  on(cmdSearchMedia.Click, this, &frmFind::cmdSearchMedia_Click);
  on(cmdClose.Click, this, &frmFind::cmdClose_Click);
  const auto exclude = [](TextBox& typed, TextBox& other) {
    typed.Change = [&] {
      if (!typed.Text.get().empty()) other.Text = "";
    };
  };
  exclude(txtBibIDs, txtBookingMediaBarcode);
  exclude(txtBookingMediaBarcode, txtBibIDs);
  on(faResults.RowColChange, this, &frmFind::rowChanged);
  on(faResults.DblClick, this, &frmFind::faResults_DblClick);
  on(faResults.RightClick, this, &frmFind::faResults_RightClick);
}

void frmFind::connectCommands() {
  on(findNow.Run, this, &frmFind::cmdFindNow_Click);
  on(newSearch.Run, this, &frmFind::cmdNewSearch_Click);
  on(open.Run, this, &frmFind::cmdOK_Click);
  on(sortAscending.Run, this, &frmFind::mnuPopupSortAscending_Click);
  on(sortDescending.Run, this, &frmFind::mnuPopupSortDescending_Click);
  on(mnuFileClose.Click, this, &frmFind::cmdClose_Click);
  on(mnuHelpTopics.Click, this, &frmFind::mnuHelpTopics_Click);
  on(mnuHelpAbout.Click, this, &frmFind::mnuHelpAbout_Click);
  mnuHelpTopics.Shortcut = "F1";
  findNow.link(cmdFindNow);
  findNow.link(mnuToolsFindNow, "F5");
  newSearch.link(cmdNewSearch);
  newSearch.link(mnuToolsNewSearch);
  newSearch.link(mnuPopupNewSearch);
  open.link(cmdOK);
  open.link(mnuFileOpen);
  sortAscending.link(mnuPopupSortAscending);
  sortDescending.link(mnuPopupSortDescending);
  disable(open, sortAscending, sortDescending);
}

void frmFind::arrange() {
  fraTerms.Layout = Row{optTerms(0), optTerms(1), optTerms(2), Stretch{}};
  fraAdvanced.Layout = Column{lblAdvanced, Row{cboSearchFields, cboOperator, cboValue, Stretch{}},
                              lstCriteria, Row{cmdAddCriteria, cmdRemoveCriteria, Stretch{}}};
  LayoutNode known =
      Column{Row{lblSearchFor, cboSearchFor, Gap{}, lblSearchWhere, cboSearchWhere, Stretch{}}};
  for (const auto& category : categories_) {
    category == categories_[kFindBookings] ? category->arrange({chkHistBookings}) : category->arrange({});
    known.children.emplace_back(category->fraSearch);
  }
  known.children.emplace_back(fraAdvanced);
  known.children.emplace_back(fraTerms);
  known.children.push_back(Stretch{});
  const LayoutNode top = Row{known.share(1), Column{cmdFindNow, cmdNewSearch, cmdAdvancedSearch, Stretch{}}};
  Layout = Column{top.share(0), LayoutNode(faResults).share(1), Row{Stretch{}, cmdOK, cmdClose}};
}

// Opening

void frmFind::Form_Load() {
  app_.tools.PrepareForm(*this);
  fillLists();
  fillServerLists();
  chkHistBookings.Visible = app_.context.rights.has(Right::BKVHI);
  chkHistBookings.Value = chkHistBookings.Visible && app_.preferences.Historical;
  cmdNewSearch_Click();
  takeTag();
}

void frmFind::Form_Activate() {
  takeTag();
  if (!picker_ || hasFocus_) return;
  hasFocus_ = true;
  criteria(picker_->category).focus();
  if (picker_->findsAtOnce) cmdFindNow_Click();
}

void frmFind::takeTag() {
  if (picker_) return;
  if (const PickerMode* mode = pickerModeOf(Tag.get())) return becomePicker(*mode);
  cboSearchFor.ListIndex = std::clamp<int>(intOf(Tag.get()), kFindBookings, kFindPatrons);
}

void frmFind::becomePicker(const PickerMode& mode) {
  picker_ = &mode;
  Caption = mode.caption;
  cboSearchFor.ListIndex = mode.category;
  const auto scopes = searchCategories()[static_cast<std::size_t>(mode.category)].scopes;
  for (std::size_t i = 0; i < scopes.size(); ++i) {
    if (scopes[i].location == mode.location) cboSearchWhere.ListIndex = static_cast<int>(i);
  }
  disable(cboSearchFor, cboSearchWhere, cmdAdvancedSearch);
  setVisible(false, mnuFile, mnuTools, mnuHelp);
  cmdClose.Caption = "&Cancel";
  if (mode.category == kFindPatrons) ScanReceived = [this](std::string_view card) { findByCard(card); };
  // A dialog keeps its size, and so has its list from the start.
  results.build(resultLayout(mode.results).list);
  faResults.Visible = true;
}

/// Whoever looks for a patron scans nothing but cards, whatever has the focus.
void frmFind::findByCard(std::string_view card) {
  CriteriaPages& pages = criteria(kFindPatrons);
  pages.showField(kSearchCard);
  pages.field<TextBox>("txtBarcode").type(card);
  optTerms(0).Value = true;
  find(CriteriaPages::Terms::Scanned);
}

void frmFind::fillLists() {
  const OperatorContext& context = app_.context;
  fillAll(ListSource::EquipmentTypes, entriesOf(context.categories.equipment));
  fillAll(ListSource::GroupTypes, entriesOf(context.categories.groups));
  fillAll(ListSource::RoomTypes, entriesOf(context.categories.rooms));
  fillAll(ListSource::Locations, entriesOf(context.allLocations));
  fillAll(ListSource::RoomsOfLocation, {});
  fillAll(ListSource::Staff, entriesOf(context.staff));
  fillAll(ListSource::Comparisons, {{">=", ""}, {"<=", ""}});
}

/// A list that cannot be read has no entry but the one for no choice.
void frmFind::fillServerLists() {
  for (const ServerList& list : kServerLists) {
    std::vector<ListEntry> entries;
    ask()(list.code, {}, [&] {
      while (app_.message.NextRecord(list.id))
        entries.push_back({app_.message.Get(list.name), app_.message.Get(list.id)});
    });
    fillAll(list.source, entries);
  }
}

void frmFind::fillAll(ListSource source, const std::vector<ListEntry>& entries) {
  for (const auto& category : categories_) category->fill(source, entries);
}

std::vector<ListEntry> frmFind::roomsOf(const std::string& location) {
  std::vector<ListEntry> rooms;
  ask()("GETARLOC", {{tags::LOC, location}}, [&] {
    while (app_.message.NextRecord(tags::RID))
      rooms.push_back(
          {RoomEntry(app_.message.Get(tags::RNO), app_.message.Get(tags::RNM)), app_.message.Get(tags::RID)});
  });
  return rooms;
}

// Criteria

void frmFind::cboSearchFor_Click() {
  // A free window that is activated again keeps what was chosen since.
  if (!picker_) Tag = std::to_string(cboSearchFor.ListIndex);
  const auto scopes = searchCategories()[static_cast<std::size_t>(cboSearchFor.ListIndex)].scopes;
  cboSearchWhere.Clear();
  for (const SearchScope& scope : scopes) cboSearchWhere.AddItem(std::string(scope.where));
  cboSearchWhere.ListIndex = 0;
  setVisible(scopes.size() > 1, lblSearchWhere, cboSearchWhere);
  showCategory();
}

void frmFind::showCategory() {
  // What shows is hidden first: a window that has to hold two pages grows.
  const CriteriaPages* shown = isAdvanced() ? nullptr : &criteria(cboSearchFor.ListIndex);
  for (const auto& category : categories_) {
    if (category.get() != shown) category->fraSearch.Visible = false;
  }
  fraAdvanced.Visible = isAdvanced();
  if (!isAdvanced()) criteria(cboSearchFor.ListIndex).fraSearch.Visible = true;
}

void frmFind::cmdSearchMedia_Click() {
  const std::vector<BibSelection> found = app_.bibSearch.Search();
  if (found.empty()) return;
  // A search is by holdings or by titles: titles among the holdings make it one by titles.
  const bool holdings =
      std::none_of(found.begin(), found.end(), [](const BibSelection& each) { return intOf(each.MI) == 0; });
  std::string ids;
  for (const BibSelection& each : found) ids += (ids.empty() ? "" : ", ") + (holdings ? each.MI : each.BI);
  criteria(kFindBookings).titleNumber = holdings ? kSearchHoldings : kSearchTitles;
  txtBibIDs.Text = ids;
  if (app_.preferences.AutoFindNow) cmdFindNow_Click();
}

void frmFind::cmdNewSearch_Click() {
  emptyResults();
  faResults.Visible = IsModal();
  showStatus("");
  sbFind.Visible = false;
  optTerms(0).Value = true;
  for (const auto& category : categories_) category->reset(app_.clock.now());
  if (isShown() && !isAdvanced()) criteria(cboSearchFor.ListIndex).focus();
}

void frmFind::cmdAdvancedSearch_Click() {
  const bool advanced = !isAdvanced();
  cmdAdvancedSearch.Tag = advanced ? "1" : "0";
  cmdAdvancedSearch.Caption = std::string(advanced ? kPlainCaption : kAdvancedCaption);
  showCategory();
  if (advanced) cmdNewSearch_Click();
}

// Searching

Ask frmFind::ask() {
  return picker_ ? Ask(app_.global, *this) : Ask(app_.global, Name());
}

std::string_view frmFind::termsOperator() const {
  for (std::size_t i = 0; i < std::size(kOperators); ++i) {
    if (optTerms(static_cast<int>(i)).Value) return kOperators[i];
  }
  return {};
}

frmFind::Target frmFind::addCriteria(CriteriaPages::Terms terms) {
  // The advanced state deliberately sends no criterion and searches nowhere.
  if (isAdvanced()) return {};
  const int chosen = cboSearchFor.ListIndex;
  const SearchCategoryRow& category = searchCategories()[static_cast<std::size_t>(chosen)];
  const SearchScope& scope = category.scopes[static_cast<std::size_t>(cboSearchWhere.ListIndex)];
  if (chosen == kFindBookings && chkHistBookings.Value)
    app_.message.Add(tags::SRCHTAG, std::to_string(kSearchHistory));
  criteria(chosen).addTags(app_, terms);
  ResultGrid = picker_ ? picker_->results : scope.results;
  return {category.sought, picker_ ? picker_->location : scope.location};
}

void frmFind::cmdFindNow_Click() {
  find(optTerms(0).Value ? CriteriaPages::Terms::OfPage : CriteriaPages::Terms::OfAllPages);
}

void frmFind::find(CriteriaPages::Terms terms) {
  const bool allPages = terms == CriteriaPages::Terms::OfAllPages;
  if (!isAdvanced() && !criteria(cboSearchFor.ListIndex).entriesAreReadable(allPages)) return;
  emptyResults();
  const Target target = addCriteria(terms);
  sbFind.Visible = true;
  showStatus("Searching...");
  RecordCount = 0;
  const int rc = ask().codeOf(
      "FIND",
      {{tags::SRCHFOR, target.sought}, {tags::SRCHLOC, target.location}, {tags::SRCHOP, termsOperator()}},
      [this] {
        RecordCount = intOf(app_.message.Get(tags::SRCHCNT));
        if (RecordCount > 0) FormatSearchResultsGrid();
      });
  if (rc != 0) return tellFailure(rc);
  if (RecordCount < 1) {
    showStatus("No Records Found");
    return warningBox(app_.desktop, "No matches found.");
  }
  faResults.SetFocus();
}

void frmFind::tellFailure(int rc) {
  showStatus("Search failed!");
  const int number = rc == codes::TagMissing ? intOf(app_.message.Get(tags::SRCHTAG)) : 0;
  const std::string field = number == 0 ? "" : criteria(cboSearchFor.ListIndex).showField(number);
  if (field.empty()) return criticalBox(app_.desktop, searchFailure(app_.message, rc));
  warningBox(app_.desktop, "The search cannot use what was entered for " + field + ".\n\n" +
                               std::string(wrongValue(number)));
}

void frmFind::FormatSearchResultsGrid() {
  showCount(0);
  const ReplyLayout& layout = resultLayout(ResultGrid).list;
  results.build(layout);
  const int rows = results.fill();
  showCount(rows);
  // The server may send fewer records than it has found.
  if (app_.message.Count(layout.walk) < RecordCount)
    showStatus(sbFind.Panels(2).Text.get() + ". The list has been cut: please narrow the search.");
  if (rows > 0) faResults.Row = 1;
  faResults.ScrollToTop();
  faResults.Visible = true;
  setEnabled(true, sortAscending, sortDescending);
}

// Results

void frmFind::emptyResults() {
  results.clear();
  faResults.Row = 0;
  disable(open, sortAscending, sortDescending);
}

void frmFind::rowChanged() {
  open.Enabled = faResults.Row >= faResults.FixedRows;
  SelectedId = open.Enabled ? results.text(faResults.Row, 0) : "";
}

void frmFind::showStatus(std::string text, bool atOnce) {
  sbFind.Panels(2).Text = std::move(text);
  sbFind.Refresh(atOnce);
}

void frmFind::showCount(int rows) {
  showStatus(std::to_string(rows) + " of " + std::to_string(RecordCount) + " record(s) processed", false);
}

void frmFind::faResults_DblClick() {
  if (faResults.MouseRow >= faResults.FixedRows) cmdOK_Click();
}

void frmFind::faResults_RightClick() {
  app_.desktop.popupMenu(mnuPopupTools, nullptr);
}

std::string frmFind::answer() const {
  const auto text = [this](int column) { return results.text(faResults.Row, column); };
  switch (picker_->answer) {
    case PickerAnswer::NameAndId:
      return text(1) + "|" + SelectedId;
    case PickerAnswer::IdAndRoom:
      return SelectedId + "|" + text(2) + " - " + text(3) + " - " + text(1);
    case PickerAnswer::Nothing:
      break;
  }
  return Tag;
}

void frmFind::cmdOK_Click() {
  if (!open.Enabled) return;
  if (picker_) {
    Tag = answer();
    return Hide();
  }
  const int kind = resultLayout(ResultGrid).record;
  if (kind == kNoRecord)
    return informationBox(app_.desktop, "Please use Corvane Circulation for Patron Maintenance");
  OpenRecordWindow(app_, {kind, SelectedId, kSourceMainWindow});
}

/// A picker that is cancelled leaves its tag as it was given.
void frmFind::cmdClose_Click() {
  picker_ ? Hide() : static_cast<void>(Unload());
}

void frmFind::mnuHelpTopics_Click() {
  app_.desktop.showHelp("find");
}

void frmFind::mnuHelpAbout_Click() {
  app_.makers.run("About", app_);
}

void ShowSearch(App& app, SearchCategory category) {
  frmFind* window = nullptr;
  for (int i = 0; i < app.windows.Count(); ++i) {
    auto* found = dynamic_cast<frmFind*>(&app.windows[i]);
    if (found && !found->IsModal()) window = found;
  }
  const bool isOpen = window != nullptr;
  if (!window) window = &app.windows.keep(std::make_unique<frmFind>(app));
  window->Tag = std::to_string(category);
  if (!isOpen) return window->Show();
  window->WindowState = FormState::Normal;
  window->SetFocus();
}

}  // namespace vantry

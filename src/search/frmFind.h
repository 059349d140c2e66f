#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "frame/app.h"
#include "lists/reply_list.h"
#include "messaging/ask.h"
#include "platform/bars.h"
#include "platform/command.h"
#include "search/criteria_pages.h"
#include "search/picker_modes.h"

namespace vantry {

/// The search window. Free, it looks for bookings, inventory and patrons, and opens the records that it
/// finds. With the tag of a picker it is modal and hands back one row in its tag.
class frmFind : public Form {
 public:
  explicit frmFind(App& app);
  void Form_Load() override;
  void Form_Activate() override;

  void cboSearchFor_Click();
  void cmdFindNow_Click();
  void cmdNewSearch_Click();
  void cmdAdvancedSearch_Click();
  void cmdSearchMedia_Click();
  void cmdOK_Click();
  void cmdClose_Click();
  void faResults_DblClick();
  void faResults_RightClick();
  void mnuPopupSortAscending_Click() { results.sortWhole(SortOrder::Ascending); }
  void mnuPopupSortDescending_Click() { results.sortWhole(SortOrder::Descending); }
  void mnuHelpTopics_Click();
  void mnuHelpAbout_Click();

  /// Lists the reply of a search.
  void FormatSearchResultsGrid();

  [[nodiscard]] bool IsModal() const { return picker_ != nullptr; }
  int ResultGrid = 1;      ///< number of the layout of the results
  int RecordCount = 0;     ///< hits of the last search, also those that are not listed
  std::string SelectedId;  ///< of the selected row

  Command findNow, newSearch, open, sortAscending, sortDescending;

  MenuItem mnuFile{*this, "mnuFile", "&File"};
  MenuItem mnuFileOpen{mnuFile, "mnuFileOpen", "&Open"};
  MenuItem mnuFileLine1{mnuFile, "mnuFileLine1", "-"};
  MenuItem mnuFileClose{mnuFile, "mnuFileClose", "&Close"};
  MenuItem mnuTools{*this, "mnuTools", "&Tools"};
  MenuItem mnuToolsFindNow{mnuTools, "mnuToolsFindNow", "&Find Now"};
  MenuItem mnuToolsNewSearch{mnuTools, "mnuToolsNewSearch", "&New Search"};
  MenuItem mnuHelp{*this, "mnuHelp", "&Help"};
  MenuItem mnuHelpTopics{mnuHelp, "mnuHelpTopics", "&Help Topics"};
  MenuItem mnuHelpAbout{mnuHelp, "mnuHelpAbout", "&About Vantry..."};
  MenuItem mnuPopupTools{*this, "mnuPopupTools", ""};
  MenuItem mnuPopupSort{mnuPopupTools, "mnuPopupSort", "Sort"};
  MenuItem mnuPopupSortAscending{mnuPopupSort, "mnuPopupSortAscending", "Ascending"};
  MenuItem mnuPopupSortDescending{mnuPopupSort, "mnuPopupSortDescending", "Descending"};
  MenuItem mnuPopupNewSearch{mnuPopupTools, "mnuPopupNewSearch", "New Search"};

  Label lblSearchFor{*this, "lblSearchFor", "&Search for:"};
  ComboBox cboSearchFor{*this, "cboSearchFor"};
  Label lblSearchWhere{*this, "lblSearchWhere", "&Where:"};
  ComboBox cboSearchWhere{*this, "cboSearchWhere"};

 private:
  std::vector<std::unique_ptr<CriteriaPages>> categories_ = makeCategories();

 public:
  CheckBox chkHistBookings;
  /// The advanced search. It has no effect in this version.
  Frame fraAdvanced{*this, "fraAdvanced", "Advanced"};
  Label lblAdvanced{fraAdvanced, "lblAdvanced", "Conditions cannot be combined in this version."};
  ListBox lstCriteria{fraAdvanced, "lstCriteria"};
  ComboBox cboSearchFields{fraAdvanced, "cboSearchFields"};
  ComboBox cboOperator{fraAdvanced, "cboOperator"};
  ComboBox cboValue{fraAdvanced, "cboValue"};
  Button cmdAddCriteria{fraAdvanced, "cmdAddCriteria", "Add"};
  Button cmdRemoveCriteria{fraAdvanced, "cmdRemoveCriteria", "Remove"};
  Frame fraTerms{*this, "fraTerms", "", 0};
  ControlArray<OptionButton> optTerms{"optTerms"};
  Button cmdFindNow{*this, "cmdFindNow", "Fin&d Now"};
  Button cmdNewSearch{*this, "cmdNewSearch", "New Se&arch"};
  Button cmdAdvancedSearch{*this, "cmdAdvancedSearch", "Advanced >>"};
  Grid faResults{*this, "faResults"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdClose{*this, "cmdClose", "&Close"};
  StatusBar sbFind{*this, "sbFind"};
  DateField dtServerDate{*this, "dtServerDate"};
  TimeField txtServerTime{*this, "txtServerTime"};
  ReplyList results;

  /// The criteria of a category.
  CriteriaPages& criteria(int category) { return *categories_.at(static_cast<std::size_t>(category)); }

  // The fields that act on each other.
  TextBox& txtBookingMediaBarcode = criteria(kFindBookings).field<TextBox>("txtBookingMediaBarcode");
  TextBox& txtBibIDs = criteria(kFindBookings).field<TextBox>("txtBibIDs");
  Button& cmdSearchMedia = criteria(kFindBookings).field<Button>("cmdSearchMedia");

 private:
  std::vector<std::unique_ptr<CriteriaPages>> makeCategories();
  void connect();
  void connectCommands();
  void arrange();
  void fillLists();
  void fillServerLists();
  void fillAll(ListSource source, const std::vector<ListEntry>& entries);
  std::vector<ListEntry> roomsOf(const std::string& location);
  /// Becomes what the tag asks for: a picker for good, or a free window on a category.
  void takeTag();
  void becomePicker(const PickerMode& mode);
  void findByCard(std::string_view card);
  void showCategory();
  [[nodiscard]] bool isAdvanced() const { return cmdAdvancedSearch.Tag == "1"; }
  /// Adds the criteria and says where is searched; nothing of it in the advanced state.
  struct Target {
    int sought = 0;
    int location = 0;
  };
  void find(CriteriaPages::Terms terms);
  [[nodiscard]] Target addCriteria(CriteriaPages::Terms terms);
  [[nodiscard]] std::string_view termsOperator() const;
  void tellFailure(int rc);
  void emptyResults();
  void rowChanged();
  void showStatus(std::string text, bool atOnce = true);
  void showCount(int rows);
  [[nodiscard]] std::string answer() const;
  /// Asks in a way that keeps still what must not be used meanwhile: a picker only itself.
  [[nodiscard]] Ask ask();

  App& app_;
  const PickerMode* picker_ = nullptr;
  bool hasFocus_ = false;  ///< a picker has put the focus into its first field
};

/// Opens the free search window on a category, or brings the one that is open to the front.
void ShowSearch(App& app, SearchCategory category);

}  // namespace vantry

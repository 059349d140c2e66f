#pragma once

#include <vector>

#include "messaging/ask.h"
#include "messaging/dialogs.h"
#include "platform/tree.h"

namespace vantry {

/// The window of the catalogue search: what is searched, the titles found with their holdings and items, and
/// what has been chosen of them.
class frmBibSearch : public Form {
 public:
  struct Services {
    ServerTools& tools;
    modGlobal& global;
    TagMessage& message;
  };
  struct Manner {
    bool allowHoldingsKeyword = false;
    bool autoTruncate = false;
    BibCriteria criteria;  ///< what the window begins with
  };
  frmBibSearch(Windows& windows, const Services& services, Manner manner);
  void Form_Load() override;
  void Form_Activate() override;
  void cboSearchBy_Click();
  void txtSearch_Change();
  void txtSearch_Enter();
  void cmdSearch_Click();
  void tvwTitles_Expand();
  void tvwTitles_Click();
  void tvwTitles_DblClick();
  void lstChosen_Click();
  void lstChosen_DblClick();
  void cmdAdd_Click();
  void cmdRemove_Click();
  void cmdView_Click();
  void cmdOK_Click();
  void cmdCancel_Click();

  /// Empty unless the operator ended the window with OK.
  const std::vector<BibSelection>& result() const { return result_; }
  BibCriteria criteria() const;

  Label lblSearchBy{*this, "lblSearchBy", "Search &by:"};
  ComboBox cboSearchBy{*this, "cboSearchBy"};
  Label lblSearch{*this, "lblSearch", "Search &for:"};
  TextBox txtSearch{*this, "txtSearch"};
  CheckBox chkHoldings{*this, "chkHoldings", "In &holdings too"};
  Button cmdSearch{*this, "cmdSearch", "&Search"};
  Label lblCount{*this, "lblCount"};
  Tree tvwTitles{*this, "tvwTitles"};
  Button cmdAdd{*this, "cmdAdd", "&Add"};
  Button cmdRemove{*this, "cmdRemove", "&Remove"};
  Button cmdView{*this, "cmdView", "&View Record"};
  Label lblChosen{*this, "lblChosen", "Ch&osen:"};
  ListBox lstChosen{*this, "lstChosen"};
  Button cmdOK{*this, "cmdOK", "OK"};
  Button cmdCancel{*this, "cmdCancel", "Cancel"};

 private:
  struct Choice {
    BibSelection selection;
    std::string text;
  };
  bool isKeyword() const;
  std::string searchText() const;
  void showTitles();
  void loadHoldings(TreeNode& title);
  void showChosen(int selected);
  void enableButtons();
  Choice choiceOf(const TreeNode& node) const;

  Services services_;
  Ask ask_;
  Manner manner_;
  std::vector<Choice> chosen_;
  std::vector<BibSelection> result_;
};

}  // namespace vantry

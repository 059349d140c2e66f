#pragma once

#include <functional>

#include "lists/main_view.h"
#include "platform/tree.h"

namespace vantry {

struct InventoryKind;

/// A list of the inventory beside the tree of its categories. The controls are numbered by the kind of their
/// records.
class InventoryView : public MainView {
 public:
  /// `popup` is the menu of the list's rows.
  InventoryView(const MainParts& parts, Frame& frame, int kind, MenuItem& popup);

  Tree tvwDB;
  Label lblDetails;
  Grid fa;
  Button cmdNewInv, cmdEditInv, cmdDeleteInv, cmdPrintInv;
  Button cmdSearch;  ///< named by its list: cmdSearchEquip, cmdSearchGroup, cmdSearchRooms, cmdSearchMaint

  void load() override;
  /// Reads the list of the selected node.
  void refresh() override;
  ReplyList* list() override { return &list_; }
  std::string reportText() const override;
  void sorted() override { fa_Click(); }
  void takePreferences(Applies what) override;
  void secure(const Rights& rights) override;

  virtual void BuildInventoryFlexArray();
  /// Shows the categories that were read last; the selected node stays selected.
  void BuildMainTrees() override;
  void tvwDB_NodeClick();
  void fa_Click();
  void fa_MouseDown();
  void fa_DblClick();
  void cmdEditInv_Click();
  void cmdDeleteInv_Click();

  /// Reads the list anew if the view shows and its node is of this category; a view that does not show reads
  /// when it is opened.
  void refill(std::string_view category) override;
  /// What the selected node's list is asked by; empty without a node.
  [[nodiscard]] std::string_view selectedCategory() const;
  /// Takes the selected row away, or reads the list anew where none is selected, and lowers the count of this
  /// category, since a record of it was deleted.
  void dropSelectedRow(std::string_view category) override;
  /// Does the same with the row of a record, if the list shows it. The category is given by its name.
  void dropRecord(std::string_view id, std::string_view category) override;

 protected:
  /// Adds the nodes to the empty tree. The key of a node is what its list is asked by, "|" and its name.
  virtual void fillTree();
  /// Asks for the list of a category; `read` fills it.
  virtual bool askFor(std::string_view category, const std::function<void()>& read);
  /// The heading of a node's list.
  virtual std::string heading(const TreeNode& node) const;
  /// Another row is selected, or none.
  virtual void rowSelected() {}
  ReplyHooks& hooks() { return list_.hooks; }
  void setText(int row, int column, std::string text) { list_.setText(row, column, std::move(text)); }
  [[nodiscard]] const std::string& text(int row, int column) const { return list_.text(row, column); }

  [[nodiscard]] bool hasSelectedRow() const { return fa.Row >= fa.FixedRows; }
  [[nodiscard]] const std::string& selectedId() const { return list_.text(fa.Row, 0); }
  /// The tree at the left, and the list with its heading above what is given.
  LayoutNode beside(LayoutNode below);

 private:
  void connect();
  void readList(const TreeNode& node);
  void rememberType(const TreeNode& node);
  void clearList();
  void rowsChanged();
  void allowCommands();
  void lowerCount(const std::function<bool(const Category&)>& isMeant);

  const InventoryKind& kind_;
  MenuItem& popup_;
  ReplyList list_;
  std::string listedKey_;      ///< of the node whose records are listed; empty when nothing is
  bool showsBarcodes_ = true;  ///< by the preference when the columns were built
};

}  // namespace vantry

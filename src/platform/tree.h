#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/control.h"

namespace vantry {

/// One node of a tree.
struct TreeNode {
  std::string key;
  std::string text;
  std::string tag;    ///< the window's own data
  int image = 0;      ///< place in the tree's pictures, counted from 1; 0 for none
  int openImage = 0;  ///< shown instead while the node is expanded; 0 for the same
  bool expanded = false;
  TreeNode* parent = nullptr;
  std::vector<TreeNode*> children;
  std::vector<std::string> columns;  ///< texts beside the node's own
};

/// Keyed nodes below each other.
class Tree : public Control {
 public:
  Tree(Container& parent, std::string name) : Control(parent, std::move(name), ControlKind::Tree) {}

  std::vector<std::string> Pictures;  ///< names of icons of the program's set
  std::vector<std::string> Headings;  ///< above the nodes' texts and columns; empty: no headings
  bool LongTexts = false;             ///< titles or several columns: shown wider than a list of names
  bool BoldRoots = false;             ///< roots are drawn as headings of what is below them
  /// Pictures that are drawn as boxes to tick; 0 for none. The window answers `Check` and sets the pictures.
  int TickedImage = 0;
  int UntickedImage = 0;
  bool MultiSelect = false;
  /// The node that has the operator's attention.
  Property<std::string> SelectedKey{*this, Aspect::Selection};
  Event Click;
  Event DblClick;
  Event Expand;
  Event Check;       ///< the operator ticks the selected node on or off
  Event RightClick;  ///< on the selected node, if there is one

  /// Adds a node below the parent (empty: a root). Nothing when the key is taken or the parent is unknown.
  [[nodiscard]] TreeNode* Add(std::string_view parentKey, std::string key, std::string text, int image = 0);
  void Remove(std::string_view key);
  void Clear();
  TreeNode* find(std::string_view key) const;
  const std::vector<TreeNode*>& Roots() const { return roots_; }
  /// Where several can be selected: their keys, in the order in which they were.
  const std::vector<std::string>& SelectedKeys() const { return selected_; }
  /// Whether a node is drawn with a box to tick. Only those without children can be ticked by the operator.
  bool isTickable(const TreeNode& node) const {
    return node.image > 0 && (node.image == TickedImage || node.image == UntickedImage);
  }
  int Count() const { return static_cast<int>(nodes_.size()); }
  /// Tells the shower after nodes were changed in place.
  void changed() const { tell(Aspect::List); }

  // The operator's actions.
  void click(std::string_view key);
  void doubleClick(std::string_view key);
  void rightClick(std::string_view key);
  void setExpanded(std::string_view key, bool expanded);
  void check(std::string_view key);
  /// All that are selected now, where several can be; the last new one gets the attention.
  void selectKeys(const std::vector<std::string>& keys);

 private:
  void drop(TreeNode& node);
  std::unordered_map<std::string, std::unique_ptr<TreeNode>> nodes_;
  std::vector<TreeNode*> roots_;
  std::vector<std::string> selected_;
};

}  // namespace vantry

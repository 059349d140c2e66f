#include "platform/tree.h"

#include <algorithm>

namespace vantry {

TreeNode* Tree::find(std::string_view key) const {
  const auto found = nodes_.find(std::string(key));
  return found == nodes_.end() ? nullptr : found->second.get();
}

TreeNode* Tree::Add(std::string_view parentKey, std::string key, std::string text, int image) {
  TreeNode* parent = parentKey.empty() ? nullptr : find(parentKey);
  if ((!parent && !parentKey.empty()) || find(key)) return nullptr;
  auto node = std::make_unique<TreeNode>();
  node->key = key;
  node->text = std::move(text);
  node->image = image;
  node->parent = parent;
  TreeNode* added = node.get();
  (parent ? parent->children : roots_).push_back(added);
  nodes_.emplace(std::move(key), std::move(node));
  tell(Aspect::List);
  return added;
}

void Tree::drop(TreeNode& node) {
  for (TreeNode* child : node.children) drop(*child);
  if (SelectedKey == node.key) SelectedKey.put({});
  std::erase(selected_, node.key);
  nodes_.erase(std::string(node.key));
}

void Tree::Remove(std::string_view key) {
  TreeNode* node = find(key);
  if (!node) return;
  std::erase(node->parent ? node->parent->children : roots_, node);
  drop(*node);
  tell(Aspect::List);
}

void Tree::Clear() {
  nodes_.clear();
  roots_.clear();
  selected_.clear();
  SelectedKey.put({});
  tell(Aspect::List);
}

void Tree::click(std::string_view key) {
  if (!usable() || !find(key)) return;
  const bool isSelected = std::find(selected_.begin(), selected_.end(), key) != selected_.end();
  if (MultiSelect && !isSelected) selected_.assign(1, std::string(key));
  SelectedKey = std::string(key);
  raise(Click);
}

void Tree::check(std::string_view key) {
  const TreeNode* node = find(key);
  if (!usable() || !node || !isTickable(*node) || !node->children.empty()) return;
  click(key);
  raise(Check);
}

void Tree::selectKeys(const std::vector<std::string>& keys) {
  if (!usable() || !MultiSelect) return;
  const auto isIn = [](const std::vector<std::string>& list, const std::string& key) {
    return std::find(list.begin(), list.end(), key) != list.end();
  };
  std::erase_if(selected_, [&](const std::string& key) { return !isIn(keys, key); });
  for (const std::string& key : keys) {
    if (find(key) && !isIn(selected_, key)) selected_.push_back(key);
  }
  SelectedKey.put(selected_.empty() ? std::string() : selected_.back());
  raise(Click);
}

void Tree::doubleClick(std::string_view key) {
  if (!usable() || !find(key)) return;
  click(key);
  raise(DblClick);
}

void Tree::rightClick(std::string_view key) {
  if (!usable()) return;
  const bool among = MultiSelect && std::find(selected_.begin(), selected_.end(), key) != selected_.end();
  if (find(key) && !among) click(key);  // several that are selected stay so
  raise(RightClick);
}

void Tree::setExpanded(std::string_view key, bool expanded) {
  TreeNode* node = find(key);
  if (!node || node->expanded == expanded) return;
  node->expanded = expanded;
  if (expanded) raise(Expand);
}

}  // namespace vantry

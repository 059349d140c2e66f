#include "booking/equipment_types_tree.h"

#include "booking/modBooking_ask.h"
#include "words/tags.h"

namespace vantry {
namespace {

struct RootRow {
  std::string_view name;
  std::string_view code;
};
constexpr std::string_view kGroups = "Groups";
constexpr RootRow kRoots[] = {{"Equipment", "GETEAVC"}, {kGroups, "GETGCAT"}};

std::string keyOf(std::string_view root, std::string_view id, std::string_view ending) {
  return std::string(root) + "|" + std::string(id) + "|" + std::string(ending);
}

void fillRoot(App& app, Tree& tree, const RootRow& row, std::string_view ending) {
  const std::string rootKey = keyOf(row.name, "0", ending);
  TreeNode* root = tree.Add({}, rootKey, std::string(row.name));
  if (!root) return;
  root->expanded = true;
  if (!askForBooking(app)(row.code)) return;
  TagMessage& message = app.message;
  while (message.NextRecord(tags::ETI)) {
    const std::string name = message.Get(tags::ETY);
    TreeNode* node = tree.Add(rootKey, keyOf(row.name, message.Get(tags::ETI), ending),
                              name + " (" + message.Get(tags::MIC) + ")");
    if (node) node->tag = name;
  }
}

}  // namespace

void FillTypesTree(App& app, Tree& tree, std::string_view ending) {
  tree.Clear();
  for (const RootRow& row : kRoots) fillRoot(app, tree, row, ending);
  tree.changed();
}

bool isGroupType(const TreeNode& type) {
  return type.parent && type.parent->text == kGroups;
}

std::string typeIdOf(std::string_view key) {
  const auto first = key.find('|');
  const auto last = key.rfind('|');
  return first == last ? "0" : std::string(key.substr(first + 1, last - first - 1));
}

}  // namespace vantry

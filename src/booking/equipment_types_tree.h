#pragma once

#include <string>
#include <string_view>

#include "frame/app.h"
#include "platform/tree.h"

namespace vantry {

/// The tree of equipment types and group types from which dialogs choose.
///
/// Keys are three fields joined by "|": the root's name, the type's id ("0" for the root itself) and
/// `ending`, which tells the trees apart. A type's node shows its name and how many there are of it; its tag
/// is the bare name.
void FillTypesTree(App& app, Tree& tree, std::string_view ending);

/// Whether a type's node is one of the groups.
[[nodiscard]] bool isGroupType(const TreeNode& type);

/// The type's id in a node's key; "0" for a root.
[[nodiscard]] std::string typeIdOf(std::string_view key);

}  // namespace vantry

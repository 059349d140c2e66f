#pragma once

#include <initializer_list>
#include <vector>

namespace vantry {

class Control;

/// How controls are placed: a tree of columns and rows whose leaves are controls or free space. The front end
/// chooses the distances.
struct LayoutNode {
  enum class Kind { Empty, Column, Row, Fields, Item, Stretch, Gap };

  LayoutNode() = default;
  LayoutNode(Control& leaf)
      : kind(Kind::Item), control(&leaf) {}  // NOLINT: a layout names its controls as they are

  /// The same node with another share of the free space.
  LayoutNode share(int weight) const {
    LayoutNode copy = *this;
    copy.stretch = weight;
    return copy;
  }

  Kind kind = Kind::Empty;
  Control* control = nullptr;
  std::vector<LayoutNode> children;
  int stretch = -1;  ///< share of the free space; -1: what the control's kind takes by itself

 protected:
  LayoutNode(Kind k, std::initializer_list<LayoutNode> nodes) : kind(k), children(nodes) {}
  explicit LayoutNode(Kind k) : kind(k) {}
};

/// From top to bottom.
struct Column : LayoutNode {
  Column(std::initializer_list<LayoutNode> nodes) : LayoutNode(Kind::Column, nodes) {}
};

/// From left to right.
struct Row : LayoutNode {
  Row(std::initializer_list<LayoutNode> nodes) : LayoutNode(Kind::Row, nodes) {}
};

/// Labels and their fields in turn, in two aligned columns; the label names its field for screen readers.
struct Fields : LayoutNode {
  Fields(std::initializer_list<LayoutNode> nodes) : LayoutNode(Kind::Fields, nodes) {}
};

/// Free space that pushes its neighbours apart.
struct Stretch : LayoutNode {
  Stretch() : LayoutNode(Kind::Stretch) {}
};

/// A distance of two units between groups.
struct Gap : LayoutNode {
  Gap() : LayoutNode(Kind::Gap) {}
};

}  // namespace vantry

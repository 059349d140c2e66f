#pragma once

#include <functional>

class QLayout;
class QWidget;

namespace vantry {

class Control;
struct LayoutNode;

/// The widget that shows a control, or nullptr for one that has its place outside of the layout.
using WidgetOf = std::function<QWidget*(Control&)>;

/// Turns a description into layouts without margins of their own.
QLayout* buildLayout(const LayoutNode& node, const WidgetOf& widgetOf);

/// Whether what it holds can make use of more height, or width.
bool growsDown(const LayoutNode& node);
bool growsAcross(const LayoutNode& node);

}  // namespace vantry

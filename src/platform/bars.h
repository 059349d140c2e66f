#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls.h"

namespace vantry {

/// One panel of a status bar.
class Panel : public Element {
 public:
  enum class Style { Text, Date, Time, Picture };
  Property<std::string> Text{*this, Aspect::Text};
  Property<bool> Visible{*this, Aspect::Visible, true};
  Style style = Style::Text;  ///< date and time are kept by the front end
  std::string Picture;
};

/// The line at the bottom of a window; its panels count from 1, the second one takes the free space.
class StatusBar : public Control {
 public:
  StatusBar(Container& parent, std::string name) : Control(parent, std::move(name), ControlKind::StatusBar) {}
  static constexpr int kPanels = 6;
  Panel& Panels(int number) { return panels_.at(static_cast<std::size_t>(number - 1)); }
  const Panel& Panels(int number) const { return panels_.at(static_cast<std::size_t>(number - 1)); }
  /// Paints the bar, some 25 times a second at most; `atOnce` paints it now, before something that takes
  /// long.
  void Refresh(bool atOnce = false);

 private:
  std::array<Panel, kPanels> panels_;
};

/// One tool of a tool bar: a button, a button with a menu, a combo list, or a line between groups.
class Tool : public Element {
 public:
  enum class Kind { Button, Combo, Line };
  Kind kind = Kind::Button;
  int id = 0;
  std::string name;
  std::string picture;
  std::string toolTip;
  ComboBox* combo = nullptr;   ///< of a combo tool
  std::vector<Tool*> choices;  ///< what the arrow beside a button offers
  Property<std::string> Caption{*this, Aspect::Caption};
  Property<bool> Enabled{*this, Aspect::Enabled, true};
  Property<bool> Visible{*this, Aspect::Visible, true};
  Event Click;
};

/// The row of tools at the top of a window.
class ToolBar : public Control {
 public:
  ToolBar(Container& parent, std::string name) : Control(parent, std::move(name), ControlKind::ToolBar) {}

  Tool& addButton(int id, std::string name, std::string caption, std::string picture);
  /// A tool in the menu that opens beside another one.
  Tool& addChoice(Tool& button, int id, std::string caption, std::string picture);
  Tool& addCombo(std::string name, std::string caption, ComboBox& combo);
  void addLine();

  const std::vector<Tool*>& Tools() const { return shown_; }
  /// By id or name; the tool must exist.
  Tool& tool(int id) const;
  Tool& tool(std::string_view name) const;

  /// Raised with the tool that the operator chose, after its own `Click`.
  std::function<void(const Tool&)> ToolClick;
  /// Whether tool tips show.
  Property<bool> ToolTips{*this, Aspect::ToolTip, true};

  void choose(const Tool& tool);

 private:
  Tool& make(int id, std::string name, std::string caption, std::string picture);
  std::vector<std::unique_ptr<Tool>> tools_;
  std::vector<Tool*> shown_;
};

/// An entry of a list bar.
struct BarEntry {
  std::string key;
  std::string caption;
  std::string picture;
};

struct BarGroup {
  std::string caption;
  std::vector<BarEntry> entries;
};

/// The bar at a window's side: groups of entries with pictures, of which one group is open.
class ListBar : public Control {
 public:
  ListBar(Container& parent, std::string name) : Control(parent, std::move(name), ControlKind::ListBar) {}
  Property<int> CurrentGroup{*this, Aspect::Selection, 0};
  /// Key of the marked entry, whose view is shown; empty for none.
  Property<std::string> CurrentItem{*this, Aspect::State};
  Property<std::string> BackgroundPicture{*this, Aspect::Picture};  ///< path of an image file; empty for none
  /// Raised with the key of the entry that the operator clicked.
  std::function<void(std::string_view)> ItemClick;
  /// Raised when the operator opens a group.
  Event GroupClick;

  void setGroups(std::vector<BarGroup> groups);
  const std::vector<BarGroup>& Groups() const { return groups_; }
  bool has(std::string_view key) const;
  void click(std::string_view key);
  void clickGroup(int group);

 private:
  std::vector<BarGroup> groups_;
};

}  // namespace vantry

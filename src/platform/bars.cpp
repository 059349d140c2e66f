#include "platform/bars.h"

#include <algorithm>
#include <stdexcept>

#include "platform/desktop.h"
#include "platform/form.h"
#include "platform/windows.h"

namespace vantry {

void StatusBar::Refresh(bool atOnce) {
  form().windows().desktop().repaint(form(), atOnce);
}

Tool& ToolBar::make(int id, std::string name, std::string caption, std::string picture) {
  auto tool = std::make_unique<Tool>();
  tool->id = id;
  tool->name = std::move(name);
  tool->picture = std::move(picture);
  tool->Caption.put(std::move(caption));
  tools_.push_back(std::move(tool));
  return *tools_.back();
}

Tool& ToolBar::addButton(int id, std::string name, std::string caption, std::string picture) {
  Tool& tool = make(id, std::move(name), std::move(caption), std::move(picture));
  shown_.push_back(&tool);
  return tool;
}

Tool& ToolBar::addChoice(Tool& button, int id, std::string caption, std::string picture) {
  Tool& tool = make(id, {}, std::move(caption), std::move(picture));
  button.choices.push_back(&tool);
  return tool;
}

Tool& ToolBar::addCombo(std::string name, std::string caption, ComboBox& combo) {
  Tool& tool = addButton(0, std::move(name), std::move(caption), {});
  tool.kind = Tool::Kind::Combo;
  tool.combo = &combo;
  return tool;
}

void ToolBar::addLine() {
  addButton(0, {}, {}, {}).kind = Tool::Kind::Line;
}

Tool& ToolBar::tool(int id) const {
  for (const auto& tool : tools_) {
    if (tool->id == id) return *tool;
  }
  throw std::out_of_range(Name() + ": no tool " + std::to_string(id));
}

Tool& ToolBar::tool(std::string_view name) const {
  for (const auto& tool : tools_) {
    if (tool->name == name) return *tool;
  }
  throw std::out_of_range(Name() + ": no tool " + std::string(name));
}

void ToolBar::choose(const Tool& tool) {
  if (!usable() || !tool.Enabled || !tool.Visible) return;
  raise(tool.Click);
  if (ToolClick) ToolClick(tool);
}

void ListBar::setGroups(std::vector<BarGroup> groups) {
  groups_ = std::move(groups);
  if (CurrentGroup >= static_cast<int>(groups_.size())) CurrentGroup = 0;
  tell(Aspect::List);
}

bool ListBar::has(std::string_view key) const {
  return std::any_of(groups_.begin(), groups_.end(), [&](const BarGroup& group) {
    return std::any_of(group.entries.begin(), group.entries.end(),
                       [&](const BarEntry& entry) { return entry.key == key; });
  });
}

void ListBar::click(std::string_view key) {
  if (usable() && has(key) && ItemClick) ItemClick(key);
}

void ListBar::clickGroup(int group) {
  CurrentGroup = group;
  if (usable() && GroupClick) GroupClick();
}

}  // namespace vantry

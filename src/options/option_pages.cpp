#include "options/option_pages.h"

#include <algorithm>
#include <stdexcept>

#include "platform/form.h"
#include "platform/number_fields.h"
#include "platform/text.h"

namespace vantry {

namespace {

std::vector<std::string> parts(std::string_view joined) {
  std::vector<std::string> texts;
  while (true) {
    const auto bar = joined.find('|');
    texts.emplace_back(joined.substr(0, bar));
    if (bar == std::string_view::npos) return texts;
    joined.remove_prefix(bar + 1);
  }
}

const PreferenceRow& preferenceOf(std::string_view key) {
  for (const PreferenceRow& row : preferenceTable()) {
    if (row.key == key) return row;
  }
  throw std::logic_error("no preference " + std::string(key));
}

/// A box or an option by itself.
template <class Toggle>
OptionField toggleField(std::string_view key, Toggle& toggle) {
  return {key, [&toggle](const std::string& text) { toggle.Value = text == "true"; },
          [&toggle] { return std::optional<std::string>(toggle.Value ? "true" : "false"); }};
}

OptionField colourField(const std::string& key, Property<Colour>& colour) {
  return {preferenceOf(key).key,
          [&colour](const std::string& text) { colour = static_cast<Colour>(std::stoul(text)); },
          [&colour] { return std::optional(std::to_string(colour.get())); }};
}

}  // namespace

OptionPages::OptionPages(Form& form, Event changed)
    : tabOptions(form, "tabOptions"), form_(form), changed_(std::move(changed)) {
  tabOptions.AccessibleName = "Pages of options";
  std::vector<TabPages::Page> tabs;
  for (const OptionPage& page : optionPages()) {
    Frame& frame = fraOpt.add(form, "", 0);
    LayoutNode groups = Column{};
    for (const OptionGroup& group : page.groups) groups.children.push_back(makeGroup(frame, group));
    groups.children.push_back(Stretch{});
    frame.Layout = groups;
    tabs.push_back({std::string(page.tab), frame, {}, std::string(page.tip)});
  }
  pages_ = std::make_unique<TabPages>(tabOptions, std::move(tabs));
}

template <class T, class... Args>
T& OptionPages::make(Container& parent, std::string name, Args&&... args) {
  auto control = std::make_unique<T>(parent, std::move(name), std::forward<Args>(args)...);
  T& made = *control;
  controls_.push_back(std::move(control));
  return made;
}

/// Boxes and options are below each other, and fields in aligned columns below them.
LayoutNode OptionPages::makeGroup(Frame& page, const OptionGroup& group) {
  Frame* frame = group.frame.empty()
                     ? nullptr
                     : &make<Frame>(page, std::string(group.frame), std::string(group.caption));
  Container& parent = frame ? static_cast<Container&>(*frame) : page;
  LayoutNode rows = Column{};
  LayoutNode fields = Fields{};
  for (const OptionRow& row : group.rows) makeRow(parent, row, rows, fields);
  if (!fields.children.empty()) rows.children.push_back(fields);
  if (!frame) return rows;
  frame->Layout = rows;
  return *frame;
}

void OptionPages::makeRow(Container& parent, const OptionRow& row, LayoutNode& rows, LayoutNode& fields) {
  switch (row.kind) {
    case OptionKind::Check:
      return makeCheck(parent, row, rows);
    case OptionKind::Option:
      return makeOption(parent, row, rows);
    case OptionKind::Choices:
      return makeChoices(parent, row, rows);
    case OptionKind::Number:
      return makeNumber(parent, row, fields);
    case OptionKind::List:
      return makeList(parent, row, fields);
    case OptionKind::RowColour:
    case OptionKind::GroundColour:
      return makeColour(parent, row, fields);
    case OptionKind::Picture:
      return makePicture(parent, row, fields);
  }
}

void OptionPages::makeCheck(Container& parent, const OptionRow& row, LayoutNode& rows) {
  auto& box = make<CheckBox>(parent, std::string(row.control), std::string(row.caption));
  box.Click = changed_;
  rows.children.emplace_back(box);
  add(toggleField(row.key, box));
}

void OptionPages::makeOption(Container& parent, const OptionRow& row, LayoutNode& rows) {
  auto& option = make<OptionButton>(parent, std::string(row.control), std::string(row.caption));
  option.Click = changed_;
  rows.children.emplace_back(option);
  add(toggleField(row.key, option));
}

/// Each heading begins another column.
void OptionPages::makeChoices(Container& parent, const OptionRow& row, LayoutNode& rows) {
  struct Choice {
    std::string value;
    OptionButton* button;
  };
  std::vector<Choice> choices;
  const auto captions = parts(row.caption);
  const auto values = parts(row.values);
  LayoutNode columns = Row{};
  LayoutNode column = row.across ? LayoutNode(Row{}) : LayoutNode(Column{});
  for (std::size_t i = 0; i < captions.size(); ++i) {
    if (values[i].empty()) {
      columns.children.push_back(std::exchange(column, Column{}));
      columns.children.push_back(Gap{});
      column.children.emplace_back(make<Label>(parent, "lblMonitorViews", captions[i]));
      continue;
    }
    auto& button =
        make<OptionButton>(parent, arrayName(row.control, static_cast<int>(choices.size())), captions[i]);
    button.Click = changed_;
    column.children.emplace_back(button);
    if (row.across) column.children.push_back(Gap{});
    choices.push_back({values[i], &button});
  }
  if (row.across) column.children.push_back(Stretch{});
  columns.children.push_back(column);
  rows.children.push_back(columns);
  add({row.key,
       [choices](const std::string& text) {
         for (const Choice& choice : choices) choice.button->Value = choice.value == text;
       },
       [choices]() -> std::optional<std::string> {
         for (const Choice& choice : choices) {
           if (choice.button->Value) return choice.value;
         }
         return std::nullopt;
       }});
}

Label& OptionPages::makeLabel(Container& parent, const OptionRow& row) {
  const std::string name =
      row.label.empty() ? "lbl" + std::string(row.control.substr(3)) : std::string(row.label);
  return make<Label>(parent, name, std::string(row.caption));
}

void OptionPages::makeNumber(Container& parent, const OptionRow& row, LayoutNode& fields) {
  const PreferenceRow& preference = preferenceOf(row.key);
  const bool own = row.most > 0;
  Label& label = makeLabel(parent, row);
  auto& number = make<NumberField>(parent, std::string(row.control), own ? row.least : preference.least,
                                   own ? row.most : preference.most);
  const std::string unitName = row.unitLabel.empty() ? label.Name() + "Unit" : std::string(row.unitLabel);
  auto& unit = make<Label>(parent, unitName, std::string(row.unit));
  number.Change = changed_;
  fields.children.emplace_back(label);
  fields.children.push_back(Row{number, unit, Stretch{}});
  add({row.key,
       [&number](const std::string& text) {
         if (!isNumber(text)) return number.clear();
         number.Value = intOf(text);
       },
       [&number]() -> std::optional<std::string> {
         if (!number.Value.get()) return std::nullopt;
         return number.Text();
       }});
}

void OptionPages::makeList(Container& parent, const OptionRow& row, LayoutNode& fields) {
  Label& label = makeLabel(parent, row);
  auto& list = make<ComboBox>(parent, std::string(row.control));
  if (!row.entries.empty()) {
    for (std::string& entry : parts(row.entries)) list.AddItem(std::move(entry));
  }
  list.Click = changed_;
  fields.children.emplace_back(label);
  fields.children.emplace_back(list);
  add({row.key, [&list](const std::string& text) { list.ListIndex = intOf(text); },
       [&list]() -> std::optional<std::string> {
         if (list.ListIndex < 0) return std::nullopt;
         return std::to_string(list.ListIndex.get());
       }});
}

void OptionPages::makeColour(Container& parent, const OptionRow& row, LayoutNode& fields) {
  auto& button = make<Button>(parent, "cmdSchedColor" + std::string(row.control), std::string(row.caption));
  auto& sample = make<Label>(parent, "lblSchedColor" + std::string(row.control), "Sample");
  button.AccessibleName = "Colors of " + std::string(row.caption);
  (row.kind == OptionKind::RowColour ? sample.RowSample : sample.Swatch) = true;
  const int place = intOf(row.control.substr(1));
  samples_.at(static_cast<std::size_t>(place)) = &sample;
  button.Click = [this, place] {
    if (colourWanted) colourWanted(place);
  };
  fields.children.emplace_back(button);
  fields.children.push_back(Row{sample, Stretch{}});
  add(colourField(std::string(row.key) + "B", sample.BackColor));
  add(colourField(std::string(row.key) + "F", sample.ForeColor));
}

void OptionPages::makePicture(Container& parent, const OptionRow& row, LayoutNode& fields) {
  Label& label = makeLabel(parent, row);
  auto& path = make<TextBox>(parent, std::string(row.control));
  auto& browse = make<Button>(parent, "cmdBrowse(0)", "Bro&wse...");
  path.Change = changed_;
  browse.Click = [this, &path] {
    if (pictureWanted) pictureWanted(path);
  };
  fields.children.emplace_back(label);
  fields.children.push_back(Row{LayoutNode(path).share(1), browse});
  add({row.key, [&path](const std::string& text) { path.Text = text; },
       [&path] { return std::optional(std::string(trim(path.Text.get()))); }});
}

void OptionPages::fillList(std::string_view name, const std::vector<std::string>& entries) {
  auto& list = dynamic_cast<ListControl&>(*form_.findControl(name));
  list.Clear();
  for (const std::string& entry : entries) list.AddItem(entry);
}

void OptionPages::arrangeBelow(int page, const LayoutNode& below) {
  LayoutNode& layout = fraOpt(page).Layout;
  layout.children.back() = below;  // in place of the free space
}

void OptionPages::show(const Preferences& preferences) const {
  for (const OptionField& field : fields_) field.show(storedText(preferenceOf(field.key), preferences));
}

void OptionPages::take(Preferences& preferences) const {
  for (const OptionField& field : fields_) {
    if (const auto text = field.text())
      static_cast<void>(setPreference(preferenceOf(field.key), *text, preferences));
  }
}

}  // namespace vantry

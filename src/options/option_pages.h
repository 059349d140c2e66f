#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/preferences.h"
#include "options/option_table.h"
#include "platform/controls.h"
#include "platform/tab_pages.h"

namespace vantry {

/// One key of the preferences and the control that edits it, as texts of the store.
struct OptionField {
  std::string_view key;
  std::function<void(const std::string&)> show;
  /// Nothing when the control has no value: the preference stays as it is.
  std::function<std::optional<std::string>()> text;
};

/// The pages of the options: a tab strip, and the controls of the table's rows behind each tab. It is the one
/// way between the controls and the preferences.
class OptionPages {
 public:
  /// `changed` runs whenever a control takes another value.
  OptionPages(Form& form, Event changed);
  OptionPages(const OptionPages&) = delete;

  TabStrip tabOptions;
  ControlArray<Frame> fraOpt{"fraOpt"};
  /// Asked for new colours, with the colour's place in the lists.
  std::function<void(int)> colourWanted;
  /// Asked for the path of a picture.
  std::function<void(TextBox&)> pictureWanted;

  /// Adds what another part of the window edits.
  void add(OptionField field) { fields_.push_back(std::move(field)); }
  void fillList(std::string_view name, const std::vector<std::string>& entries);
  /// Places further controls below the rows of a page.
  void arrangeBelow(int page, const LayoutNode& below);

  void show(const Preferences& preferences) const;
  /// Takes all values over.
  void take(Preferences& preferences) const;
  const std::vector<OptionField>& fields() const { return fields_; }
  /// The sample of a colour.
  Label& lblSchedColor(int place) const { return *samples_.at(static_cast<std::size_t>(place)); }

 private:
  template <class T, class... Args>
  T& make(Container& parent, std::string name, Args&&... args);
  LayoutNode makeGroup(Frame& page, const OptionGroup& group);
  void makeRow(Container& parent, const OptionRow& row, LayoutNode& rows, LayoutNode& fields);
  void makeCheck(Container& parent, const OptionRow& row, LayoutNode& rows);
  void makeOption(Container& parent, const OptionRow& row, LayoutNode& rows);
  void makeChoices(Container& parent, const OptionRow& row, LayoutNode& rows);
  void makeNumber(Container& parent, const OptionRow& row, LayoutNode& fields);
  void makeList(Container& parent, const OptionRow& row, LayoutNode& fields);
  void makeColour(Container& parent, const OptionRow& row, LayoutNode& fields);
  void makePicture(Container& parent, const OptionRow& row, LayoutNode& fields);
  Label& makeLabel(Container& parent, const OptionRow& row);

  Form& form_;
  Event changed_;
  std::vector<std::unique_ptr<Control>> controls_;
  std::vector<OptionField> fields_;
  std::array<Label*, kListColours> samples_{};
  std::unique_ptr<TabPages> pages_;
};

}  // namespace vantry

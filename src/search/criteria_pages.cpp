#include "search/criteria_pages.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "frame/app.h"
#include "frame/auto_truncate.h"
#include "platform/entry_check.h"
#include "platform/form.h"
#include "platform/number_fields.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr const char* kNone = "(none)";
constexpr const char* kSsnMask = "###-##-####";
constexpr int kMostSeats = 99999;
/// Of a text that is searched for. Lists of ids have no limit.
constexpr int kLongestText = 255;

std::string indexed(std::string_view name, int index) {
  return std::string(name) + "(" + std::to_string(index) + ")";
}

std::unique_ptr<Control> makeField(Frame& page, const Criterion& criterion) {
  std::string name(criterion.control);
  switch (criterion.kind) {
    case ControlKind::ComboBox:
      return std::make_unique<ComboBox>(page, name);
    case ControlKind::DateField:
      return std::make_unique<DateField>(page, name);
    case ControlKind::TimeField:
      return std::make_unique<TimeField>(page, name);
    case ControlKind::NumberField:
      return std::make_unique<NumberField>(page, name, 0, kMostSeats);
    case ControlKind::MaskedField:
      return std::make_unique<MaskedField>(page, name, kSsnMask);
    case ControlKind::Button:
      return std::make_unique<Button>(page, name, std::string(criterion.label));
    case ControlKind::TextBox: {
      auto box = std::make_unique<TextBox>(page, name);
      if (criterion.form != CriterionForm::Titles) box->MaxLength = kLongestText;
      return box;
    }
    default:
      throw std::logic_error("no field of a search: " + name);
  }
}

template <class T>
const T& as(const Control& control) {
  return static_cast<const T&>(control);
}
template <class T>
T& as(Control& control) {
  return static_cast<T&>(control);
}

/// A label without the marks that it has on a page.
std::string plainName(std::string_view label) {
  std::string name;
  std::copy_if(label.begin(), label.end(), std::back_inserter(name),
               [](char each) { return each != '&' && each != ':'; });
  return name;
}

/// What was typed into a field, without blanks around it.
std::string typedText(const Control& control) {
  switch (control.kind()) {
    case ControlKind::NumberField:
      return as<NumberField>(control).Text();
    case ControlKind::MaskedField:
      return as<MaskedField>(control).Text;
    default:
      return std::string(trim(as<TextBox>(control).Text.get()));
  }
}

void fillList(ComboBox& list, const Criterion& criterion, const std::vector<ListEntry>& entries) {
  list.Clear();
  if (criterion.source != ListSource::Comparisons) list.AddItem(kNone, "0");
  for (const ListEntry& entry : entries) list.AddItem(entry.text, entry.id);
  list.ListIndex = 0;
}

void resetField(Control& control, const DateTime& now) {
  switch (control.kind()) {
    case ControlKind::ComboBox:
      as<ComboBox>(control).ListIndex = 0;
      break;
    case ControlKind::DateField:
      as<DateField>(control).Value = now.date;
      break;
    case ControlKind::TimeField:
      as<TimeField>(control).Value = Time{now.time.hour, now.time.minute, 0};
      break;
    case ControlKind::NumberField:
      as<NumberField>(control).Value = 0;
      break;
    case ControlKind::MaskedField:
      as<MaskedField>(control).Text = "";
      break;
    case ControlKind::TextBox:
      as<TextBox>(control).Text = "";
      break;
    default:
      break;
  }
}

}  // namespace

// Making

CriteriaPages::CriteriaPages(Form& form, int number)
    : fraSearch(form, indexed("fraSearch", number), "", 0),
      tabSearch(fraSearch, indexed("tabSearch", number)),
      row_(searchCategories()[static_cast<std::size_t>(number)]) {
  tabSearch.AccessibleName = "What is known";
  std::vector<TabPages::Page> tabs;
  pages_.reserve(row_.pages.size());
  for (const CriteriaPage& row : row_.pages) {
    Page& page = pages_.emplace_back(makePage(fraSearch, row));
    tabs.push_back({std::string(row.caption), *page.frame});
  }
  for (Page& page : pages_) {
    connect(page);
    arrangePage(page);
  }
  tabs_ = std::make_unique<TabPages>(tabSearch, std::move(tabs));
}

/// Controls are made in the order of the tab key: each option before its fields.
CriteriaPages::Page CriteriaPages::makePage(Frame& parent, const CriteriaPage& row) {
  Page page{row, std::make_unique<Frame>(parent, std::string(row.name)), {}, {}};
  int option = kNoOption;
  for (const Criterion& criterion : row.criteria) {
    std::unique_ptr<Label> label;
    if (criterion.option > option) {
      option = criterion.option;
      page.options.push_back(
          std::make_unique<OptionButton>(*page.frame, indexed(row.optionGroup, option),
                                         std::string(row.options[static_cast<std::size_t>(option)])));
    } else if (criterion.kind != ControlKind::Button) {
      const std::string name(criterion.control.substr(3));
      label = std::make_unique<Label>(*page.frame, "lbl" + name,
                                      option == kNoOption ? std::string(criterion.label) : "and");
    }
    page.fields.push_back({criterion, std::move(label), makeField(*page.frame, criterion)});
    if (option != kNoOption) page.fields.back().control->AccessibleName = criterion.label;
  }
  return page;
}

void CriteriaPages::connect(Page& page) {
  for (const auto& option : page.options) option->Click = [&page] { enableFields(page); };
  if (!page.options.empty()) page.options.front()->Value = true;
  for (std::size_t i = 1; i < page.fields.size(); ++i) {
    if (page.fields[i - 1].criterion.form == CriterionForm::DayOrTime) {
      auto& date = as<DateField>(*page.fields[i - 1].control);
      date.Change = [&date, &time = page.fields[i]] {
        setEnabled(!date.isEmpty(), *time.control, *time.label);
      };
    }
    if (page.fields[i].criterion.source != ListSource::RoomsOfLocation) continue;
    auto& locations = as<ComboBox>(*page.fields[i - 1].control);
    locations.Click = [this, &locations, &rooms = page.fields[i]] {
      const bool chosen = locations.ListIndex > 0;
      fillList(
          as<ComboBox>(*rooms.control), rooms.criterion,
          chosen && roomsOf ? roomsOf(locations.ItemData(locations.ListIndex)) : std::vector<ListEntry>{});
    };
  }
}

void CriteriaPages::arrangePage(Page& page) {
  LayoutNode fields = Fields{};
  LayoutNode all = Column{};
  for (Field& field : page.fields) {
    if (field.criterion.kind == ControlKind::Button) {
      all.children.push_back(Row{*field.control, Stretch{}});
    } else if (field.criterion.option == kNoOption) {
      fields.children.emplace_back(*field.label);
      fields.children.emplace_back(*field.control);
    } else if (!field.label) {
      fields.children.emplace_back(*page.options[static_cast<std::size_t>(field.criterion.option)]);
      fields.children.push_back(Row{*field.control});
    } else {
      auto& row = fields.children.back().children;
      row.emplace_back(*field.label);
      row.emplace_back(*field.control);
    }
  }
  all.children.insert(all.children.begin(), fields);
  page.frame->Layout = Row{all.share(2), Stretch{}};
}

void CriteriaPages::arrange(std::initializer_list<LayoutNode> below) {
  LayoutNode all = Column{tabSearch};
  for (Page& page : pages_) all.children.emplace_back(*page.frame);
  all.children.insert(all.children.end(), below);
  fraSearch.Layout = all;
}

// Using

Control& CriteriaPages::control(std::string_view name) {
  for (Page& page : pages_) {
    for (Field& field : page.fields) {
      if (field.criterion.control == name) return *field.control;
    }
  }
  throw std::logic_error("no such field of a search: " + std::string(name));
}

int CriteriaPages::chosenOption(const Page& page) {
  for (std::size_t i = 0; i < page.options.size(); ++i) {
    if (page.options[i]->Value) return static_cast<int>(i);
  }
  return kNoOption;
}

void CriteriaPages::enableFields(Page& page) {
  const int chosen = chosenOption(page);
  for (Field& field : page.fields) {
    field.control->Enabled = field.criterion.option == chosen;
    if (field.label) field.label->Enabled = field.criterion.option == chosen;
  }
}

void CriteriaPages::fill(ListSource source, const std::vector<ListEntry>& entries) {
  for (Page& page : pages_) {
    for (Field& field : page.fields) {
      if (field.criterion.kind == ControlKind::ComboBox && field.criterion.source == source)
        fillList(as<ComboBox>(*field.control), field.criterion, entries);
    }
  }
}

void CriteriaPages::reset(const DateTime& now) {
  titleNumber = kSearchHoldings;
  for (Page& page : pages_) {
    if (!page.options.empty()) page.options.front()->Value = true;
    for (Field& field : page.fields) resetField(*field.control, now);
  }
}

void CriteriaPages::focus() {
  const Page& page = pages_[static_cast<std::size_t>(tabs_->selected())];
  for (const Field& field : page.fields) {
    if (field.control->usable()) return field.control->SetFocus();
  }
}

void CriteriaPages::onEnter(const Event& search) {
  for (Page& page : pages_) {
    for (Field& field : page.fields) {
      if (field.criterion.kind == ControlKind::TextBox) as<TextBox>(*field.control).Enter = search;
    }
  }
}

bool CriteriaPages::entriesAreReadable(bool allPages) const {
  const Frame& shown = *pages_[static_cast<std::size_t>(tabs_->selected())].frame;
  return vantry::entriesAreReadable(allPages ? fraSearch : shown);
}

bool CriteriaPages::isOfNumber(const Field& field, int number) const {
  return field.control->Enabled &&
         (field.criterion.form == CriterionForm::Titles ? titleNumber : field.criterion.number) == number;
}

std::string CriteriaPages::showField(int number) {
  for (int i = 0; i < tabs_->count(); ++i) {
    for (const Field& field : pages_[static_cast<std::size_t>(i)].fields) {
      if (!isOfNumber(field, number)) continue;
      tabs_->select(i);
      field.control->SetFocus();
      return plainName(field.criterion.label);
    }
  }
  return {};
}

// Writing

/// Adds the criteria of pages to the message.
class CriteriaPages::Writer {
 public:
  Writer(App& app, int titleNumber, bool asTyped) : app_(app), titleNumber_(titleNumber), asTyped_(asTyped) {}

  void add(const Page& page) {
    added_ = false;
    const int chosen = chosenOption(page);
    for (std::size_t i = 0; i < page.fields.size(); ++i) {
      if (page.fields[i].criterion.option == chosen) addField(page, i);
    }
  }

 private:
  void addField(const Page& page, std::size_t place) {
    const auto& [criterion, label, control] = page.fields[place];
    switch (criterion.form) {
      case CriterionForm::None:
        return;
      case CriterionForm::List: {
        const auto& list = as<ComboBox>(*control);
        return addValue(criterion.number, list.ListIndex > 0 ? list.ItemData(list.ListIndex) : "");
      }
      case CriterionForm::Text:
        return WriteSearchValue(criterion.number, typedText(*control));
      case CriterionForm::PlainText:
        return addValue(criterion.number, typedText(*control));
      case CriterionForm::Titles:
        if (!added_) addValue(titleNumber_, typedText(*control));
        return;
      case CriterionForm::Day:
        return addValue(criterion.number, ServerTools::GetControlDate(as<DateField>(*control), nullptr));
      case CriterionForm::DayOrTime: {
        const Field& next = page.fields.at(place + 1);
        const auto& time = as<TimeField>(*next.control);
        return addValue(
            time.isEmpty() ? criterion.number : next.criterion.number,
            ServerTools::GetControlDate(as<DateField>(*control), time.isEmpty() ? nullptr : &time));
      }
      case CriterionForm::Compared: {
        const auto& number = as<NumberField>(*control);
        const auto& comparison = as<ComboBox>(*page.fields.at(place - 1).control);
        return addValue(criterion.number, number.number() > 0 ? comparison.Text() + number.Text() : "");
      }
    }
  }

  void WriteSearchValue(int number, const std::string& text) {
    addValue(number, text.empty() || asTyped_ ? text : ApplyAutoTruncate(app_.preferences, text));
  }

  void addValue(int number, const std::string& value) {
    if (value.empty()) return;
    app_.message.Add(tags::SRCHTAG, std::to_string(number));
    app_.message.Add(tags::SRCHVAL, value);
    added_ = true;
  }

  App& app_;
  int titleNumber_;
  bool asTyped_;
  bool added_ = false;  ///< by the page
};

void CriteriaPages::addTags(App& app, Terms terms) const {
  Writer writer(app, titleNumber, terms == Terms::Scanned);
  if (terms != Terms::OfAllPages) return writer.add(pages_[static_cast<std::size_t>(tabs_->selected())]);
  for (int i = 0; i < tabs_->count(); ++i) {
    const auto place = static_cast<std::size_t>(i);
    writer.add(pages_[row_.order.empty() ? place : static_cast<std::size_t>(row_.order[place])]);
  }
}

}  // namespace vantry

#pragma once

#include <span>
#include <string_view>

#include "platform/control.h"

namespace vantry {

/// How the value of a criterion is made of its field. A field without a value adds nothing.
enum class CriterionForm {
  None,       ///< the field has no criterion of its own
  List,       ///< the id behind the chosen entry; the first entry means no choice
  Text,       ///< the text, truncated as the operator prefers
  PlainText,  ///< the text as it is
  Titles,     ///< ids of titles or holdings; only where the page has added nothing before
  Day,        ///< a date
  DayOrTime,  ///< a date; with a time in the next field a moment, under that field's number
  Compared    ///< the text of the list before it and a number above 0
};

/// What fills a list.
enum class ListSource {
  None,
  EquipmentTypes,
  GroupTypes,
  RoomTypes,
  Locations,
  RoomsOfLocation,  ///< of the location that is chosen in the list before it
  Staff,
  RoomDetails,
  EquipmentStatuses,
  RoomStatuses,
  MaintenanceDetails,
  Comparisons
};

/// Numbers of the protocol for what is searched.
inline constexpr int kSearchSpan = 8;  ///< the first date of a span; a refusal of both dates bears it
inline constexpr int kSearchHistory = 10;
inline constexpr int kSearchCard = 17;  ///< among patrons
inline constexpr int kSearchTitles = 27;
inline constexpr int kSearchHoldings = 30;

/// Of a criterion that belongs to no option of its page.
inline constexpr int kNoOption = -1;

/// One field of a page, and what it adds to a search.
struct Criterion {
  std::string_view control;
  std::string_view label;
  ControlKind kind = ControlKind::TextBox;
  CriterionForm form = CriterionForm::None;
  int number = 0;
  ListSource source = ListSource::None;
  int option = kNoOption;  ///< the option of the page that has to be chosen
};

/// A page of criteria, one tab of its category. Where it has options, one of them is chosen, and only its
/// fields count.
struct CriteriaPage {
  std::string_view caption;
  std::string_view name;  ///< of its frame
  std::span<const Criterion> criteria;
  std::string_view optionGroup = {};
  std::span<const std::string_view> options = {};
};

/// Where a category is searched, and which layout the results have.
struct SearchScope {
  std::string_view where;
  int location;  ///< by the protocol's numbers
  int results;   ///< number of the layout
};

/// One category of the search window. Its place in the table is its place in the window's list.
struct SearchCategoryRow {
  std::string_view caption;
  int sought;  ///< by the protocol's numbers
  std::span<const SearchScope> scopes;
  std::span<const CriteriaPage> pages;
  /// Places of the pages in the order in which a search by all of them adds them; empty: that of the tabs.
  std::span<const int> order = {};
};

[[nodiscard]] std::span<const SearchCategoryRow> searchCategories();

/// What is wrong with a value of the criterion of this number that the server cannot search for.
[[nodiscard]] std::string_view wrongValue(int number);

}  // namespace vantry

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/fields.h"
#include "platform/tab_pages.h"
#include "search/criteria.h"

namespace vantry {

class App;

/// An entry of a list of criteria, and the id behind it.
struct ListEntry {
  std::string text;
  std::string id;
};

/// The criteria of one category of the search window: a tab strip, and a page of fields behind each tab, made
/// from the category's table.
class CriteriaPages {
 public:
  /// `number` is the category's place in the table.
  CriteriaPages(Form& form, int number);
  CriteriaPages(const CriteriaPages&) = delete;

  Frame fraSearch;
  TabStrip tabSearch;
  /// The rooms of a location. It is asked whenever a location is chosen.
  std::function<std::vector<ListEntry>(const std::string& location)> roomsOf;
  /// The number under which ids of titles are searched.
  int titleNumber = kSearchHoldings;

  /// Places the pages in the frame, with further controls below them.
  void arrange(std::initializer_list<LayoutNode> below);
  /// Fills the lists of this source.
  void fill(ListSource source, const std::vector<ListEntry>& entries);
  /// Empties all criteria; dates and times are set to a moment.
  void reset(const DateTime& now);
  /// Puts the focus into the first field of the page that shows.
  void focus();
  /// Lets Enter in a text field run the search.
  void onEnter(const Event& search);
  /// Finds the first entry that cannot be read on the page that shows, or on all of them. A box tells of it
  /// and its page is shown. True when there is none.
  [[nodiscard]] bool entriesAreReadable(bool allPages) const;
  /// Shows the page of the criterion of this number and puts the focus into its field. The field's name;
  /// empty where no field has the number.
  std::string showField(int number);
  enum class Terms {
    OfPage,  ///< of the page that shows
    OfAllPages,
    Scanned  ///< of the page that shows, whole as the wand has typed them: nothing is truncated
  };
  /// Adds the criteria to the message.
  void addTags(App& app, Terms terms) const;

  /// The field of this name.
  template <class T>
  T& field(std::string_view name) {
    return dynamic_cast<T&>(control(name));
  }

 private:
  struct Field {
    const Criterion& criterion;
    std::unique_ptr<Label> label;  ///< of a field that no option names
    std::unique_ptr<Control> control;
  };
  struct Page {
    const CriteriaPage& row;
    std::unique_ptr<Frame> frame;
    std::vector<std::unique_ptr<OptionButton>> options;
    std::vector<Field> fields;
  };
  class Writer;

  static Page makePage(Frame& parent, const CriteriaPage& row);
  void connect(Page& page);
  static void arrangePage(Page& page);
  static void enableFields(Page& page);
  static int chosenOption(const Page& page);
  [[nodiscard]] bool isOfNumber(const Field& field, int number) const;
  Control& control(std::string_view name);

  const SearchCategoryRow& row_;
  std::vector<Page> pages_;
  std::unique_ptr<TabPages> tabs_;
};

}  // namespace vantry

#pragma once

#include <string>
#include <string_view>

#include "records/search_window.h"
#include "search/frmFind.h"
#include "support/desk.h"

namespace vantry::test {

/// The search window of a desk with a small library.
struct FindTest : Desk {
  void SetUp() override { start(); }
  void start(const std::string& rights = allRightsBut());

  /// The free window, on a category and one of its pages.
  frmFind& open(SearchCategory category, int page = 0);
  /// A picker that is played with; what it brings back.
  std::string pick(std::string_view tag, std::function<void(frmFind&)> play);

  /// Enters what is written as "name=value; name=value": a text, an entry of a list, a date as the server
  /// writes it, a time, or an option of this name.
  static void enter(frmFind& find, std::string_view fields);
  /// Presses Find Now: these tags go out, and nothing is found.
  void findNothing(frmFind& find, const std::string& tags);
  /// The same with this reply.
  void findRecords(frmFind& find, const std::string& tags, std::string_view reply);

  /// The visible headings, and the visible cells of a row, with "|" between them.
  static std::string headings(const frmFind& find) { return rowText(find, 0); }
  static std::string rowText(const frmFind& find, int row);
};

}  // namespace vantry::test

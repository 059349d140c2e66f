#pragma once

#include "frame/makers.h"
#include "lists/reply_list.h"

namespace vantry {

/// Heads the column of a patron's name, which the owner of the list builds of its parts.
inline constexpr std::string_view kPatronColumn = "Patron Name";

/// Of results that have no window of their own.
inline constexpr int kNoRecord = -1;

/// How the results of a search are listed. The first column is the key of the record.
struct ResultLayout {
  ReplyLayout list;
  int record = kNoRecord;  ///< kind of the record that a row opens
};

/// By number, from 1 to 13.
[[nodiscard]] const ResultLayout& resultLayout(int number);

}  // namespace vantry

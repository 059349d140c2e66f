#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantry {

/// To which warnings of the open booking the operator has agreed: an item's id and "I", or a piece's id and
/// "E". A warning is tied to the booking's times.
class WarningList {
 public:
  /// Empties the list; a booking window loads.
  void InitWarningList();
  /// Takes the key in as not agreed to, also where it is in the list already.
  void AddWarningKey(std::string_view key);
  /// The operator has agreed; a key that is not in the list stays unknown.
  void MarkWarningShown(std::string_view key);
  /// A time of the booking has changed: nothing is agreed to any longer.
  void ClearWarningMarks();
  [[nodiscard]] bool IsWarningMarked(std::string_view key) const;

 private:
  struct Row {
    std::string key;
    std::string mark;  ///< "-1" once agreed to, else "0"
  };
  Row* find(std::string_view key);
  std::vector<Row> rows_;
};

/// A booking's start and end as the server writes them.
struct StoredTime {
  std::string start;
  std::string end;
  bool operator==(const StoredTime&) const = default;
};

/// What the booking windows and their dialogs share for the program's life.
struct BookingShared {
  WarningList warnings;
  std::vector<StoredTime> StoredTimes;  ///< the times for which a thing is about to be added
};

}  // namespace vantry

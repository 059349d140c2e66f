#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "server/base/moment.h"

namespace vantry::server {

/// What is searched. The numbers are the protocol's.
enum class FindSubject : int {
  Bookings = 1,
  Equipment = 2,
  Groups = 3,
  Rooms = 4,
  Maintenance = 5,
  Patrons = 6
};

/// How the value of a criterion is written, and which values its SQL takes: `:a`, `:b` and so on.
enum class FindForm {
  Key,           ///< a key
  Keys,          ///< keys separated by commas; one text for `keysIn`
  Text,          ///< folded; from, until
  Code,          ///< as it is; from, until
  Confirmation,  ///< figures; four pairs of from, until
  Day,           ///< a date; its beginning and its end
  Span,          ///< the days from one date, or until another; likewise
  Minute,        ///< a date and time; its minute
  Capacity,      ///< ">=" or "<=" and a number; least, most
  Status,        ///< a key; its SQL depends on whether hands apply the status
};

/// One criterion of the search. Words in its SQL are written out later: "$RANGE(column)" is the condition
/// that the text column lies from `:a` to `:b`, "$KEYS" the selection of the keys in `:a`, "$STATUS" and
/// "$ROOMSTATUS" the key of the status that a record shows, "$FREE" that a room can be had from `:a` to `:b`.
///
/// A way leads to rows of the subject: "TABLES where CONDITION", the tables in the order in which they are
/// read. Together the ways lead to all rows for which the test holds, to some more than once, and to others
/// as well.
using FindWays = std::array<std::string_view, 4>;
struct FindCriterion {
  FindSubject subject;
  int number;  ///< the protocol's
  FindForm form;
  std::string_view test;  ///< on the row `b`, `e`, `r`, `m` or `p` of the subject
  FindWays ways = {};     ///< none: the test finds by itself
  FindWays past = {};     ///< where history is searched as well, if there are others
  bool exact = false;     ///< whether all these ways lead only to rows for which the test holds
};

/// All of them, by subject.
[[nodiscard]] std::span<const FindCriterion> findCriteria();

/// The criterion, or nullptr where the subject has none with that number.
[[nodiscard]] const FindCriterion* findCriterion(FindSubject subject, int number);

using FindValue = std::variant<std::int64_t, std::string>;

/// The values that the text means. Throws TagRefusal with the criterion where it means none: for what cannot
/// be read, and for a text in which there is nothing to search for.
[[nodiscard]] std::vector<FindValue> valuesOf(const FindCriterion& criterion, std::string_view text);

/// The same for the days from the one to the other, either of which may be empty. Throws TagRefusal when the
/// first is later than the last.
[[nodiscard]] std::vector<FindValue> valuesOfSpan(const FindCriterion& criterion, std::string_view first,
                                                  std::string_view last);

}  // namespace vantry::server

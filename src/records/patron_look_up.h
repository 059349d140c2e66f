#pragma once

#include <string>
#include <string_view>

namespace vantry {

class App;
class Ask;

/// A patron as a look-up finds them.
struct Patron {
  int id = 0;
  std::string name;
  int groupId = 0;
  std::string groupName;
};

/// What a patron is sought for.
enum class PatronUse {
  Booking,  ///< one of several with the same barcode counts only where it is active
  Staff
};
/// The patron with a barcode; the id 0 when there is none, or none was chosen among several. What was not
/// found has been told.
[[nodiscard]] Patron FindPatronByBarcode(App& app, const Ask& ask, std::string_view barcode, PatronUse use);
/// The patron who is chosen in the search window that this tag asks for: id and name; the id 0 for nobody.
[[nodiscard]] Patron FindPatronBySearch(App& app, std::string_view tag);

/// "Last, First Middle"; comma and blank only where their parts exist.
[[nodiscard]] std::string PatronName(std::string_view last, std::string_view first, std::string_view middle);

}  // namespace vantry

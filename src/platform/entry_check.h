#pragma once

namespace vantry {

class Container;

/// Finds the first field in the container that the operator can use, behind another tab as well, and whose
/// text is no value that it takes. A box tells of it and the focus is put there. True when there is none.
[[nodiscard]] bool entriesAreReadable(const Container& container);

/// The same, and no such field may be empty either.
[[nodiscard]] bool entriesAreGiven(const Container& container);

}  // namespace vantry

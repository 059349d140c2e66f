#pragma once

namespace vantry {

class Container;

/// Finds the first date or time field in the container that the operator can use and whose text is no date or
/// time. A box tells of it and the focus is put there. True when there is none.
[[nodiscard]] bool momentsAreReadable(const Container& container);

/// The same, and no such field may be empty either.
[[nodiscard]] bool momentsAreGiven(const Container& container);

}  // namespace vantry

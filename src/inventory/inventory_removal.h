#pragma once

#include <string_view>

namespace vantry {

class App;
class Ask;

/// Deletes a record of this kind: asks the server whether it may go, then the operator, and sends the
/// request. A maintenance record may always go. False when the record is still there; failures were reported
/// through `ask`.
[[nodiscard]] bool RemoveInventoryRecord(App& app, const Ask& ask, int kind, std::string_view id);

}  // namespace vantry

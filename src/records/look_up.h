#pragma once

namespace vantry {

class App;

/// Fill `App::lookUp` from its text. They tell the operator what was not found. A caller continues only with
/// an empty `LookupStatus`; all windows are ready then. Tags that a caller has added before narrow the
/// look-up.
void FindEquipmentByBarcode(App& app);
void FindEquipmentByNumber(App& app);

}  // namespace vantry

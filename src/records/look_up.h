#pragma once

namespace vantry {

class App;

/// Fill `App::lookUp` from its text. They tell the operator what was not found; a caller goes on only with an
/// empty `LookupStatus`, and calls `BusyAllForms` again if it goes on. Tags that a caller has added before
/// narrow the look-up.
void FindEquipmentByBarcode(App& app);
void FindEquipmentByNumber(App& app);

}  // namespace vantry

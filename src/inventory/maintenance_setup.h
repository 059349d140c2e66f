#pragma once

namespace vantry {

class App;

/// Asks for the piece of equipment that a new maintenance record is about, until one is found or the operator
/// gives up. The piece is row 0 of the look-up; its status says "CANCEL" without one.
void AskMaintenanceEquipment(App& app);

}  // namespace vantry

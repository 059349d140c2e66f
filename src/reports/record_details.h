#pragma once

#include "inventory/frmEquipment.h"
#include "inventory/frmGroup.h"
#include "inventory/frmMaintenance.h"
#include "inventory/frmRoom.h"
#include "platform/printer.h"

namespace vantry {

// Each prints the record of an open window as its controls show it. Only the notes are asked for.
PrintResult PrintEquipmentDetail(App& app, const frmEquipment& window);
PrintResult PrintGroupDetail(App& app, const frmGroup& window);
PrintResult PrintRoomDetail(App& app, const frmRoom& window);
PrintResult PrintMaintenanceDetail(App& app, const frmMaintenance& window);

}  // namespace vantry

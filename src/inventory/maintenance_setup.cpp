#include "inventory/maintenance_setup.h"

#include "frame/app.h"
#include "platform/text.h"
#include "records/look_up.h"
#include "words/tags.h"

namespace vantry {

static constexpr std::string_view kForMaintenance = "1";

void AskMaintenanceEquipment(App& app) {
  EquipmentLookUp& lookUp = app.lookUp;
  const bool byBarcode = app.preferences.Barcodes;
  const auto* prompt = byBarcode ? "Enter an Equipment Barcode." : "Enter an Equipment Number.";
  do {
    const auto text = app.desktop.inputBox(prompt, "New Maintenance Record Setup", "");
    if (!text || trim(*text).empty()) {
      lookUp.LookupStatus = "CANCEL";
      return;
    }
    lookUp.text = trim(*text);
    app.message.Add(tags::EPT, kForMaintenance);
    if (byBarcode) {
      FindEquipmentByBarcode(app);
    } else {
      FindEquipmentByNumber(app);
    }
  } while (lookUp.LookupStatus == "Not Found");
}

}  // namespace vantry

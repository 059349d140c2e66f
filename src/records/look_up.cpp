#include "records/look_up.h"

#include "frame/app.h"
#include "messaging/ask.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {

static constexpr int kRunning = 2;

namespace {

/// What differs between the two look-ups.
struct LookUpKind {
  bool byNumber;
  std::string_view kind;  ///< value of BARORNO
  std::string_view tag;
  const char* notFound;
};

constexpr LookUpKind kByBarcode{false, "0", tags::BNO, "Barcode Not Found!"};
constexpr LookUpKind kByNumber{true, "1", tags::ENO, "Equipment Number Not Found!"};

}  // namespace

/// Fills the rows and tells how many the server found.
static int readHits(App& app) {
  const TagMessage& message = app.message;
  auto& rows = app.lookUp.LookupRows;
  rows.reserve(static_cast<std::size_t>(message.Count(tags::EID)));
  const int hits = intOf(message.Get(tags::SRCHCNT));
  while (app.message.NextRecord(tags::EID)) {
    rows.push_back({message.Get(tags::EID), message.Get(tags::ENO), message.Get(tags::BNO),
                    message.Get(tags::STY), message.Get(tags::ETY), message.Get(tags::EIU),
                    message.Get(tags::RID)});
  }
  return rows.empty() ? 0 : hits;
}

/// Lets the operator choose; the chosen row becomes row 0.
static void chooseHit(App& app) {
  EquipmentLookUp& lookUp = app.lookUp;
  lookUp.chosenRow = 0;
  app.makers.run("frmMultBarOrNo", app);
  if (!lookUp.LookupStatus.empty()) return;
  const LookUpRow chosen = lookUp.LookupRows.at(static_cast<std::size_t>(lookUp.chosenRow));
  lookUp.LookupRows.assign(1, chosen);
}

static void find(App& app, const LookUpKind& kind) {
  EquipmentLookUp& lookUp = app.lookUp;
  lookUp.LookupStatus.clear();
  lookUp.LookupRows.clear();
  lookUp.byNumber = kind.byNumber;
  lookUp.barOrNumberMode = kRunning;
  const bool found = Ask(app.global, "")("GETIBYB", {{tags::BARORNO, kind.kind}, {kind.tag, lookUp.text}});
  const int hits = found ? readHits(app) : 0;
  if (hits == 0) {
    lookUp.LookupStatus = "Not Found";
    warningBox(app.desktop, kind.notFound);
  } else if (hits > 1) {
    chooseHit(app);
  }
  lookUp.barOrNumberMode = 0;
}

void FindEquipmentByBarcode(App& app) {
  find(app, kByBarcode);
}

void FindEquipmentByNumber(App& app) {
  find(app, kByNumber);
}

}  // namespace vantry

#include "booking/modBooking_policy.h"

#include <algorithm>
#include <array>

#include "booking/frmErrorReport.h"
#include "booking/frmOverride.h"
#include "booking/frmOverrideLibSched.h"
#include "booking/modBooking_ask.h"
#include "booking/modBooking_tags.h"
#include "messaging/return_codes.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {
namespace {

// The walk of failure records, steered by two tables: what each validator is about, and what each does on a
// code.

enum Validator { kItemUsage, kItemLimit, kEquipmentUsage, kEquipmentLimit, kRoomUsage, kRoomTime };
constexpr std::size_t kValidators = 6;

struct ValidatorRow {
  int walked;                 ///< the return code with failures; also the context of the override window
  std::string_view label;     ///< what other return codes are reported for
  std::string_view typeName;  ///< the tag that names the type of thing
  int report;                 ///< the code of the report of conflicts
  std::string_view thing;     ///< the tag of the thing that a warning is about
  std::string_view keyEnd;    ///< what follows its id in the list of warnings
};

constexpr std::array<ValidatorRow, kValidators> kValidatorTable = {{
    {codes::Media, "VITMUSG", tags::MTY, codes::MediaConflict, tags::IM, "I"},
    {codes::Media, "VIUL", tags::MTY, codes::MediaConflict, "", ""},
    {codes::Equipment, "VEQUSG", tags::ETY, codes::EquipmentConflict, tags::EID, "E"},
    {codes::Equipment, "VEUL", tags::ETY, codes::EquipmentConflict, "", ""},
    {codes::RoomUsage, "VITMUSG", tags::MTY, codes::MediaConflict, "", ""},  // the items' label is deliberate
    {codes::RoomUsage, "CRMTM", "", 0, "", ""},
}};

enum Then {
  Ask,     ///< the override window decides
  Period,  ///< the same, with the period in words
  Warn,    ///< the same, unless the operator has agreed to this warning
  Pass,    ///< the next record, without a word
  Report,  ///< the report of conflicts, and stop
  NoItem,  ///< say that there is no item, and stop
  NoPiece  ///< say that there is no equipment, and stop
};

struct CodeRow {
  int code;
  std::array<Then, kValidators> then;
};

// Codes that are not here ask.
constexpr CodeRow kCodes[] = {
    // code  ItemUsage ItemLimit EquipmentUsage EquipmentLimit RoomUsage RoomTime
    {138, {Period, Period, Period, Period, Period, Period}},
    {153, {Ask, Ask, Period, Period, Ask, Ask}},
    {154, {Period, Period, Ask, Ask, Period, Ask}},
    {155, {Ask, Ask, Period, Period, Ask, Ask}},
    {156, {Period, Period, Ask, Ask, Period, Period}},
    {158, {Report, Report, Ask, Ask, Report, Ask}},
    {159, {Ask, Ask, Report, Report, Ask, Ask}},
    {160, {Ask, Ask, Report, Report, Ask, Ask}},
    {161, {Report, Report, Ask, Ask, Report, Ask}},
    {162, {NoItem, NoItem, Ask, Ask, NoItem, Ask}},
    {163, {Ask, Ask, NoPiece, NoPiece, Ask, Ask}},
    {184, {Pass, Ask, Pass, Ask, Pass, Ask}},
    {186, {Report, Ask, Report, Ask, Ask, Ask}},
    {187, {Warn, Ask, Warn, Ask, Ask, Ask}},
    {188, {Ask, Ask, Ask, Ask, Ask, Period}},
};

constexpr std::string_view kNotStored = "Equipment not in a storage room.  Cannot be booked.";
constexpr std::string_view kNoItems = "No media items available in requester's policy";
constexpr std::string_view kNoEquipment = "No equipment of the selected type available in requester's policy";

Then thenOf(int code, Validator validator) {
  const auto found = std::find_if(std::begin(kCodes), std::end(kCodes),
                                  [&](const CodeRow& row) { return row.code == code; });
  return found == std::end(kCodes) ? Ask : found->then[validator];
}

/// One record of the walk; true continues with the next.
bool answered(App& app, Validator validator, std::string_view typeName) {
  const ValidatorRow& about = kValidatorTable[validator];
  OverrideFacts facts;
  facts.OverrideContext = about.walked;
  facts.OverrideCode = intOf(app.message.Get(tags::VUF));
  // Each failure may name its own thing; a reply about one thing names it in its head.
  facts.OverrideName = app.message.Get(about.typeName);
  if (facts.OverrideName.empty()) facts.OverrideName = typeName;
  switch (thenOf(facts.OverrideCode, validator)) {
    case Pass:
      return true;
    case Report:
      ShowErrorReport(app, about.report);
      return false;
    case NoItem:
      criticalBox(app.desktop, std::string(kNoItems));
      return false;
    case NoPiece:
      criticalBox(app.desktop, std::string(kNoEquipment));
      return false;
    case Warn:
      if (app.booking.warnings.IsWarningMarked(app.message.Get(about.thing) + std::string(about.keyEnd)))
        return true;
      break;
    case Period:
      facts.OverridePeriod = PeriodText(app.message.Get(tags::BKPER), app.message.Get(tags::BKINT));
      break;
    case Ask:
      break;
  }
  return AskOverride(app, facts);
}

bool walkFailures(App& app, int rc, Validator validator, std::string_view typeName) {
  const ValidatorRow& about = kValidatorTable[validator];
  if (rc != about.walked) return askForBooking(app).succeeded(rc, about.label);
  while (app.message.NextRecord(tags::VUF)) {
    if (!answered(app, validator, typeName)) return false;
  }
  return true;
}

bool walkFailures(App& app, int rc, Validator validator) {
  return walkFailures(app, rc, validator, app.message.Get(kValidatorTable[validator].typeName));
}

}  // namespace

void TellTaken(App& app, int rc) {
  if (rc == codes::NotInStorage) return criticalBox(app.desktop, std::string(kNotStored));
  if (rc == codes::EquipmentStatus) {
    return criticalBox(app.desktop, "Cannot book equipment.  " + app.message.Get(tags::VD2) +
                                        "\n\rEquipment Status:  " + app.message.Get(tags::VD3));
  }
  const Validator validator = rc == codes::Media ? kItemUsage : kEquipmentUsage;
  if (app.message.Count(tags::CNUM) > 0) return ShowErrorReport(app, kValidatorTable[validator].report);
  while (app.message.NextRecord(tags::VUF)) {
    const Then then = thenOf(intOf(app.message.Get(tags::VUF)), validator);
    if (then == NoItem) return criticalBox(app.desktop, std::string(kNoItems));
    if (then == NoPiece) return criticalBox(app.desktop, std::string(kNoEquipment));
  }
  ShowErrorReport(app, kValidatorTable[validator].report);
}

bool ValidateItemUsage(App& app, int rc) {
  return walkFailures(app, rc, kItemUsage);
}

bool ValidateItemLimit(App& app, int rc) {
  return walkFailures(app, rc, kItemLimit);
}

bool ValidateEquipmentUsage(App& app, int rc, std::string_view ety) {
  if (rc != codes::NotInStorage) return walkFailures(app, rc, kEquipmentUsage, ety);
  criticalBox(app.desktop, std::string(kNotStored));
  return false;
}

bool ValidateEquipmentLimit(App& app, int rc, std::string_view ety) {
  return walkFailures(app, rc, kEquipmentLimit, ety);
}

bool ValidateRoomUsage(App& app, int rc) {
  return walkFailures(app, rc, kRoomUsage);
}

bool ValidateRoomTime(App& app, int rc) {
  return walkFailures(app, rc, kRoomTime);
}

/// The limit that a thing would exceed; true stops.
static bool stopsAtLimit(App& app, const BookingRecord& record, int limit, int count, int code) {
  if (record.AdminBooking != "N" || limit != count) return false;
  OverrideFacts facts;
  facts.OverrideCode = code;
  facts.OverrideName = std::to_string(limit);
  return !AskOverride(app, facts);
}

bool ConfirmItemLimit(App& app, const BookingRecord& record) {
  return stopsAtLimit(app, record, record.ItemLimit, record.ItemCount, codes::ItemLimit);
}

bool ConfirmEquipmentLimit(App& app, const BookingRecord& record) {
  return stopsAtLimit(app, record, record.EquipmentLimit, record.EquipmentCount, codes::EquipmentLimit);
}

void ShowCalendarConflict(App& app) {
  ShowErrorReport(app, codes::CalendarConflict);
}

/// Units of time by their letter.
static std::string_view unitName(std::string_view letter) {
  static constexpr std::pair<std::string_view, std::string_view> units[] = {
      {"M", " minute"}, {"H", " hour"}, {"D", " day"}, {"T", " term"}};
  for (const auto& [key, name] : units) {
    if (key == letter) return name;
  }
  return {};
}

std::string PeriodText(std::string_view period, std::string_view unit) {
  const std::string_view name = unit == "T" ? std::string_view() : unitName(unit);
  if (name.empty()) return std::string(period);
  return std::string(period) + std::string(name) + (val(period) > 1 ? "s" : "");
}

std::string RoomDurationText(std::string_view most, std::string_view unit) {
  // Together with the sentence before it, it has two blanks in a row; this is deliberate.
  if (unit == "U") return " an unlimited time period.";
  return std::string(most) + std::string(unitName(unit)) + (val(most) == 1 ? "." : "s.");
}

}  // namespace vantry

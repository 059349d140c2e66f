#include "server/setup/refusal_words.h"

#include <algorithm>
#include <iterator>

#include "server/base/return_codes.h"

namespace vantry::server {

namespace {

struct ReasonRow {
  int reason;
  const char* words;
};

/// Codes without a name of their own are those of requests/usage_reply.cpp.
constexpr ReasonRow reasons[] = {
    {rc::inProgress, "The booking is in progress"},
    {rc::wrongState, "The booking is over or out"},
    {rc::roomTaken, "The room is taken"},
    {rc::barcodeInactive, "The patron has no active card"},
    {rc::mailHeld, "The patron's mail is held"},
    {rc::overLimit, "The patron is over a limit"},
    {rc::tooMuchEquipment, "Too much equipment"},
    {rc::tooManyItems, "Too many items"},
    {rc::alreadyCharged, "The booking is charged already"},
    {failure::pieceOut, "The equipment is out"},
    {failure::itemOut, "The item is out"},
    {failure::tooEarly, "Too early to charge"},
    {failure::noRoom, "No room for a wish"},
    {failure::noItem, "No item for a wish"},
    {failure::noPiece, "No equipment for a wish"},
    {refusal::foreignLocation, "Kept at a location that is not in the policy"},
    {refusal::foreignSecurity, "Kept at a location that is not in the policy"},
    {rc::patronExpired, "The patron has expired"},
    {rc::noPickup, "The type cannot be picked up"},
    {rc::noDelivery, "The type cannot be delivered"},
    {rc::equipmentStatus, "The equipment has a status"},
    {failure::pieceStatus, "The equipment has a status"},
    {failure::roomStatus, "The room has a status"},
    {refusal::itemStatus, "The item has a status"},
    {failure::itemStatus, "The item has a status"},
    {refusal::equipmentTooLong, "Longer than the equipment may be booked"},
    {refusal::mediaTooLong, "Longer than the media may be booked"},
    {refusal::roomTooLong, "Longer than the room may be booked"},
    {refusal::equipmentNotBookable, "The group may not book the equipment"},
    {refusal::mediaNotBookable, "The group may not book the media"},
    {158, "The item is booked"},
    {159, "The equipment is booked"},
    {160, "Too little equipment for a wish"},
    {161, "Too few items for a wish"},
    {186, "Booked things, and too few for a wish"},
    {162, "Nothing in the policy could fill the wish"},
    {163, "Nothing in the policy could fill the wish"},
    {rc::calendarConflict, "Outside the opening hours"},
    {rc::notInStorage, "The equipment is not in storage"},
    {rc::changedMeanwhile, "The booking was changed meanwhile"},
    {rc::timesOverlap, "The times overlap"},
};

}  // namespace

std::string refusalWords(int reason) {
  const auto* found = std::find_if(std::begin(reasons), std::end(reasons),
                                   [&](const ReasonRow& row) { return row.reason == reason; });
  return found == std::end(reasons) ? "Code " + std::to_string(reason) : found->words;
}

}  // namespace vantry::server

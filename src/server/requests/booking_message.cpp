#include "server/requests/booking_message.h"

#include <algorithm>
#include <cstdlib>
#include <set>

#include "server/base/number_text.h"
#include "server/base/tag_refusal.h"
#include "server/desk/booking_store.h"
#include "server/desk/policy_store.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

constexpr int pickup = 3;

/// A booking every day of a year, and more things than any desk hands out at once.
constexpr std::size_t mostTimes = 366;
constexpr std::size_t mostLines = 500;

Moment momentOf(const TagValue& pair) {
  const std::optional<Moment> moment = parseMoment(pair.value);
  if (!moment) refuseTag(pair.tag);
  return *moment;
}

std::int64_t minutesOf(const Message& message, std::string_view tag) {
  const std::int64_t minutes = message.number(tag);
  if (minutes < 0 || minutes > mostMinutes) refuseTag(tag);
  return minutes;
}

/// A pick-up has a location; the other two have a room, or a wish for one. Each form excludes the others.
void readPlace(const Message& message, BookingDraft& draft) {
  draft.roomId = message.number(tags::RID);
  const bool wishes = message.has(tags::RCOP);
  if (draft.type == pickup) {
    if (draft.roomId != 0) refuseTag(tags::RID);
    if (wishes) refuseTag(tags::RCOP);
    draft.pickupLocationId = message.number(tags::LOC);
    if (draft.pickupLocationId == 0) refuseTag(message.has(tags::RID) ? tags::RID : tags::LOC);
    return;
  }
  if (draft.roomId != 0) return;
  if (!wishes) refuseTag(message.has(tags::RID) ? tags::RID : tags::LOC);
  draft.roomWish = {.typeId = message.number(tags::RTI),
                    .locationId = message.number(tags::LOC),
                    .capacity = message.number(tags::RCA),
                    .atMost = message.number(tags::RCOP) != 0};
  if (draft.roomWish.typeId == 0) refuseTag(tags::RTI);
  if (draft.roomWish.locationId == 0) refuseTag(tags::LOC);
}

std::vector<Period> timesInWriting(const Message& message) {
  std::vector<Period> times;
  for (const TagValue& pair : message.tags()) {
    if (pair.tag == tags::STIME) times.push_back({momentOf(pair), 0});
    if (pair.tag != tags::ETIME_ || times.empty()) continue;
    times.back().until = momentOf(pair);
  }
  if (times.empty() || times.size() > mostTimes) refuseTag(tags::STIME);
  return times;
}

}  // namespace

std::vector<Period> timesOf(const Message& message) {
  const std::vector<Period> times = timesInWriting(message);
  const bool sound =
      std::all_of(times.begin(), times.end(), [](const Period& each) { return each.from <= each.until; });
  if (!sound) refuseTag(tags::ETIME_);
  return times;
}

std::vector<Period> timesSoFar(const Message& message) {
  std::vector<Period> times = timesInWriting(message);
  for (Period& each : times) each.until = std::max(each.from, each.until);
  return times;
}

std::vector<MediaAsk> mediaOf(const Message& message) {
  std::vector<MediaAsk> media;
  for (const TagValue& pair : message.tags()) {
    if (pair.tag == tags::MTID) media.push_back({.mediaTypeId = numberOf(pair.value)});
    if (media.empty()) continue;
    if (pair.tag == tags::BI) media.back().titleId = numberOf(pair.value);
    if (pair.tag == tags::MI) media.back().holdingId = numberOf(pair.value);
    if (pair.tag == tags::IM) media.back().item = numberOf(pair.value);
  }
  if (media.size() > mostLines) refuseTag(tags::MTID);
  return media;
}

std::vector<EquipmentLine> equipmentOf(const Message& message) {
  std::vector<EquipmentLine> lines;
  for (const TagValue& pair : message.tags()) {
    // Windows mark groups by a minus and take it off again; one that was left is no harm.
    if (pair.tag == tags::EID) lines.push_back({.ask = {.piece = std::abs(numberOf(pair.value))}});
    if (pair.tag == tags::ETI) lines.push_back({.ask = {.typeId = numberOf(pair.value)}});
    if (lines.empty()) continue;
    if (pair.tag == tags::EQIR) lines.back().inRoom = pair.value == "Y";
    if (pair.tag == tags::IFL) lines.back().inferred = pair.value == "Y";
  }
  if (lines.size() > mostLines) refuseTag(tags::EID);
  for (const EquipmentLine& line : lines) {
    if (line.ask.piece == 0 && line.ask.typeId == 0) refuseTag(tags::EID);
  }
  return lines;
}

std::vector<EquipmentAsk> bookedEquipmentOf(const Message& message) {
  std::vector<EquipmentAsk> asks;
  std::set<std::int64_t> inferred;
  for (const EquipmentLine& line : equipmentOf(message)) {
    // Two media types that need the same type share it, as they do in the stored booking.
    if (line.inferred && !inferred.insert(line.ask.typeId).second) continue;
    if (!line.inRoom) asks.push_back(line.ask);
  }
  return asks;
}

BookingDraft draftOf(const Message& message) {
  BookingDraft draft;
  draft.times = timesOf(message);
  draft.administrative = message.flag(tags::ADBK);
  draft.patronId = draft.administrative ? 0 : message.number(tags::PID);
  draft.groupId = draft.administrative ? 0 : message.number(tags::PGID);
  if (!draft.administrative && draft.patronId == 0) refuseTag(tags::PID);
  draft.pickupPatronId = message.number(tags::PPID);
  draft.type = static_cast<int>(message.number(tags::BTID));
  if (draft.type < 1 || draft.type > 3) refuseTag(tags::BTID);
  readPlace(message, draft);
  draft.equipment = equipmentOf(message);
  draft.media = mediaOf(message);
  if (draft.equipment.size() + draft.media.size() > mostLines) refuseTag(tags::MTID);
  draft.note = message.text(tags::SCHCOM);
  draft.setupStaffId = message.number(tags::ODE);
  draft.cleanupStaffId = message.number(tags::OPU);
  draft.byWizard = message.flag(tags::WIZ);
  draft.setupMinutes = minutesOf(message, tags::UTIME);
  draft.cleanupMinutes = minutesOf(message, tags::CTIME_);
  return draft;
}

static std::int64_t policyGroupOf(const Message& message) {
  return message.flag(tags::ADBK) ? 0 : message.number(tags::PGID);
}

static std::int64_t policyDeskOf(const Context& context, const Message& message) {
  const std::int64_t booking = message.number(tags::BOOKID);
  const auto stored = booking == 0 ? std::nullopt : findBookingState(context.db, booking);
  return stored ? stored->locationId : context.session.locationId;
}

DeskPolicy policyFor(Context& context, const Message& message) {
  return loadPolicy(context.db, policyDeskOf(context, message), policyGroupOf(message));
}

}  // namespace vantry::server

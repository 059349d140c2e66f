#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "server/desk/usage_check.h"
#include "server/policy/policy_rules.h"
#include "server/policy/policy_times.h"

namespace vantry::server {

/// Equipment as a booking names it.
struct EquipmentLine {
  EquipmentAsk ask;
  bool inRoom = false;    ///< is in the room and needs no booking of its own
  bool inferred = false;  ///< a wish that a media type requires
};

/// A booking as the editor sends it.
struct BookingDraft {
  std::vector<Period> times;
  std::int64_t patronId = 0;
  std::int64_t groupId = 0;
  std::int64_t pickupPatronId = 0;
  bool administrative = false;
  int type = 0;
  std::int64_t roomId = 0;
  std::int64_t pickupLocationId = 0;
  RoomWish roomWish;  ///< its type is 0 where none is wished for
  std::vector<EquipmentLine> equipment;
  std::vector<MediaAsk> media;
  std::string note;
  std::int64_t setupStaffId = 0;
  std::int64_t cleanupStaffId = 0;
  bool byWizard = false;
  std::int64_t setupMinutes = 0;
  std::int64_t cleanupMinutes = 0;
};

}  // namespace vantry::server

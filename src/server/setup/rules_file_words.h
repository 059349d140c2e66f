#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "server/setup/rules_file_entries.h"

namespace vantry::server {

// How a file of rules words what the store holds as numbers.

struct Word {
  int value;
  std::string_view word;
};

inline constexpr std::array effectWords{Word{1, "asks"}, Word{2, "passes"}, Word{3, "forbids"}};
inline constexpr std::array ownerWords{Word{0, "equipment"}, Word{1, "rooms"}};
/// When a note shows by itself. Rooms have numbers of their own for charge and discharge.
inline constexpr std::array equipmentPopupWords{Word{0, "never"}, Word{1, "booking"}, Word{2, "charge"},
                                                Word{3, "discharge"}};
inline constexpr std::array roomPopupWords{Word{0, "never"}, Word{1, "booking"}, Word{7, "charge"},
                                           Word{8, "discharge"}};
inline constexpr std::array calendarWords{Word{0, "deliveries"}, Word{1, "rooms"}, Word{2, "pick-ups"}};
inline constexpr std::array unitWords{Word{'M', "minute"}, Word{'H', "hour"}, Word{'D', "day"},
                                      Word{'T', "term"}};
inline constexpr std::array<std::string_view, 7> weekdayWords{"sunday",   "monday", "tuesday", "wednesday",
                                                              "thursday", "friday", "saturday"};

[[nodiscard]] inline std::span<const Word> popupWords(bool forRooms) {
  return forRooms ? std::span<const Word>(roomPopupWords) : std::span<const Word>(equipmentPopupWords);
}

/// The word for a value; empty for one that has none.
[[nodiscard]] std::string_view wordFor(std::span<const Word> words, int value);
[[nodiscard]] std::optional<int> valueOf(std::span<const Word> words, std::string_view word);

/// "closed", or "08:00-21:00". What is read may close before it opens.
[[nodiscard]] std::string hoursText(const HoursEntry& hours);
[[nodiscard]] std::optional<HoursEntry> readHours(std::string_view text);

/// "unlimited", or "1 day", "90 minutes". A length of nothing is none, and "0 days" is not read.
[[nodiscard]] std::string lengthText(const LengthEntry& length);
[[nodiscard]] std::optional<LengthEntry> readLength(std::string_view text);

/// "2026-11-25", and nothing less or more.
[[nodiscard]] std::optional<Moment> readDate(std::string_view text);

}  // namespace vantry::server

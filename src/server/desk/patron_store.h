#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "server/store/database.h"

namespace vantry::server {

/// A card that a search found, with its patron.
struct FoundCard {
  std::int64_t patronId = 0;
  std::string lastName;
  std::string firstName;
  std::string middleName;
  std::int64_t groupId = 0;
  std::string group;
  std::string barcode;
  std::int64_t statusId = 0;
  std::string status;
};
/// A patron as a search finds them, with the first of their cards, an active one if there is any.
struct FoundPatron {
  FoundCard card;
  std::string socialNumber;
  std::string institutionId;
};
/// A search for cards: those whose barcode is the text, or begins with it where it ends in "?".
struct CardQuestion {
  std::string_view text;
  std::int64_t most = 0;                 ///< are told
  std::chrono::milliseconds longest{0};  ///< for each of the two below
};
/// The cards, by name.
void visitCards(Connection& db, const CardQuestion& question,
                const std::function<void(const FoundPatron&)>& visit);
[[nodiscard]] std::int64_t countCards(Connection& db, const CardQuestion& question);

/// These patrons, by name.
void visitPatronsAmong(Connection& db, std::span<const std::int64_t> ids,
                       const std::function<void(const FoundPatron&)>& visit);

struct PatronCard {
  std::string barcode;
  std::string status;
  std::string group;
  std::int64_t groupId = 0;
};
/// The cards of a patron, active ones first.
[[nodiscard]] std::vector<PatronCard> cardsOf(Connection& db, std::int64_t patronId);

/// Five lines, city, province, postal code and telephone.
using PatronAddress = std::array<std::string, 9>;
/// The address of one of the booking's patrons. All is empty for anybody else, and for a withheld patron once
/// the booking is over.
[[nodiscard]] PatronAddress addressOn(Connection& db, std::int64_t bookingId, std::int64_t patronId);

}  // namespace vantry::server

#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "server/base/moment.h"
#include "server/desk/find_criteria.h"
#include "server/store/database.h"

namespace vantry::server {

struct FindTerm {
  int number = 0;
  std::string_view value;
};

struct FindQuestion {
  FindSubject subject = FindSubject::Bookings;
  int scope = 0;         ///< the protocol's; narrows the subject down
  bool any = false;      ///< one term is enough; otherwise all must hold
  bool history = false;  ///< bookings of days that are past, too
  std::vector<FindTerm> terms;
  std::int64_t deskId = 0;  ///< bookings are those of its library
  Moment now = 0;
  std::int64_t most = 0;  ///< hits that are told
  std::chrono::milliseconds longest{0};
};

/// A search: looks for the term that leaves least and judges what it finds by the others.
///
/// Its statements end with StoreError::Kind::TooLong when they take longer than the question allows, for as
/// long as the search exists.
class FindSearch {
 public:
  /// Throws TagRefusal for a scope or term that the subject does not have, a term that is there twice, and a
  /// value that makes no sense.
  FindSearch(Connection& db, const FindQuestion& question);
  ~FindSearch();
  FindSearch(const FindSearch&) = delete;
  FindSearch& operator=(const FindSearch&) = delete;

  /// The first hits in the order of their list, no more than the question wants.
  [[nodiscard]] std::vector<std::int64_t> page();

  /// Whether the page has told how many there are in all.
  [[nodiscard]] bool isCounted() const;
  /// How many there are in all.
  [[nodiscard]] std::int64_t count();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace vantry::server

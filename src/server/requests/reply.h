#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "server/base/return_codes.h"

namespace vantry::server {

/// The answer to one request. It is written straight into its JSON form, since a day of 10,000 bookings is
/// large. Values that are empty are left out; reading them gives the empty text all the same.
class Reply {
 public:
  Reply() = default;
  explicit Reply(int rc) : rc_(rc) {}

  void setRc(int rc) { rc_ = rc; }
  [[nodiscard]] int rc() const { return rc_; }

  Reply& head(std::string_view tag, std::string_view value);
  Reply& head(std::string_view tag, std::int64_t value);

  /// Begins a record; `set` then adds to it.
  Reply& record();
  Reply& set(std::string_view tag, std::string_view value);
  Reply& set(std::string_view tag, std::int64_t value);

  /// Adds the records of another one.
  void append(const Reply& other);

  [[nodiscard]] std::int64_t recordCount() const { return records_; }

  /// The codes by which records refuse something, one for each record that does.
  [[nodiscard]] std::span<const int> reasons() const { return reasons_; }

  /// {"rc":0,"head":{...},"records":[...]}
  [[nodiscard]] std::string json() const;

 private:
  int rc_ = 0;
  std::int64_t records_ = 0;
  std::vector<int> reasons_;
  std::string head_;
  std::string body_;  ///< the records so far, the last one still open
};

}  // namespace vantry::server

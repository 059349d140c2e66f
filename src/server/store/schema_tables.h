#pragma once

#include <string_view>

namespace vantry::server {

// The first steps of the schema: the tables of a library. A released step never changes.
//
// Moments and days are seconds of the wall clock (see moment.h), money is cents, flags are 0 and 1. Keys that
// point nowhere are NULL, texts without a value are ''.

extern const std::string_view accounts;
extern const std::string_view inventory;
extern const std::string_view patronsAndMedia;
extern const std::string_view policies;
extern const std::string_view bookings;
extern const std::string_view fixedLists;

}  // namespace vantry::server

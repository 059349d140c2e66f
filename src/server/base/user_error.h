#pragma once

#include <stdexcept>

namespace vantry::server {

/// What was asked for cannot be done; `what` is a sentence for whoever asked at the command line.
class UserError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace vantry::server

#pragma once

#include <functional>
#include <string>

namespace vantry::server {

class Query;

/// A statement that selects keys, as a part of other statements, and what binds its values.
struct IdSelect {
  std::string sql;
  std::function<void(Query&)> bind;
};

}  // namespace vantry::server

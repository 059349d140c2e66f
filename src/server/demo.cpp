#include <stdexcept>

#include "server/server.h"

namespace vantry {

bool createDemoDatabase(const std::string&, const DemoOptions&) {
  throw std::runtime_error("The demo library is not written yet.");
}

}  // namespace vantry

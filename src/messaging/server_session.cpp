#include "messaging/server_session.h"

#include <stdexcept>

namespace vantry {

void ServerSession::Initialise(std::string_view /*application*/, std::string_view commandLine) {
  // Every client speaks to the server alike, so the program's name is not used.
  commandLine_ = commandLine;
}

std::string ServerSession::GetSupportWebCaption() const {
  return "Vantry &Support on the Web";
}

std::optional<std::string> ServerSession::seal(std::string_view password) const {
  if (!sealer_) throw std::logic_error("the program was composed without a PasswordSealer");
  return sealer_->seal(password);
}

}  // namespace vantry

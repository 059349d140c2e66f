#include "messaging/server_session.h"

namespace vantry {

void ServerSession::Initialise(std::string_view /*application*/, std::string_view commandLine) {
  // Every client speaks to the server alike, so the program's name goes nowhere.
  commandLine_ = commandLine;
}

std::string ServerSession::GetSupportWebCaption() const {
  return "Vantry &Support on the Web";
}

}  // namespace vantry

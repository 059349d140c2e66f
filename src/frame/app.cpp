#include "frame/app.h"

#include "messaging/return_codes.h"

namespace vantry {

App::App(const Outside& outside, std::string line)
    : desktop(outside.desktop),
      clock(outside.clock),
      settings(outside.settings),
      components(outside.components),
      commandLine(std::move(line)),
      windows(outside.desktop),
      message(outside.transport),
      session(outside.transport),
      tools(outside.desktop),
      global(windows, message, tools),
      connectDialog(windows),
      ini(outside.userFolder),
      helpMap(outside.programFolder),
      bibSearch(windows, tools, global),
      programFolder_(outside.programFolder) {
  global.Abort = [this] { main().Abort(); };
  message.OnGivenUp = [this] { global.ReportRequestError(codes::Lost, {}, {}); };
  message.OnLost = [this](const std::string& reason) { return connectDialog.askRetry(reason); };
  message.OnSessionEnded = [this] {
    return LogonDialog(windows, tools).Run(session, message, session.GetOperatorId());
  };
}

}  // namespace vantry

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "server/http/metrics.h"
#include "server/requests/runner.h"

namespace vantry::server {

/// A request that has arrived, or its head. Lives as long as the connection that read it.
struct WireRequest {
  std::string_view method;
  std::string_view path;
  std::string_view authorization;
  std::string_view requestId;
  std::string_view knownVersions;  ///< If-None-Match
  std::string_view body;
  std::string address;           ///< of the client, also behind a proxy
  bool mayAskDirectory = false;  ///< who makes the reply may wait for the house's directory
};

struct WireReply {
  int status = 200;
  std::string body = {};
  Moment retryAfter = 0;  ///< seconds to wait before the next try; 0 for none
  std::string_view type = "application/json";
  std::string headers = {};     ///< further lines of the head, each behind the end of the one before
  bool needsDirectory = false;  ///< no reply: somebody has to make it who may ask the house's directory
};

/// Who makes the reply: the front itself, where it costs nothing, or a group of workers. Neither those that
/// check passwords nor those that wait for their turn to write keep the ones waiting that read. Those that
/// ask the house's directory get what others have found to need it.
enum class Lane { Front, Requests, Writes, Logons };

/// From a request on the wire to the runner and back. Translates, and decides nothing. Safe for many threads.
class Routes {
 public:
  Routes(RequestRunner& runner, Metrics& metrics) : runner_(runner), metrics_(metrics) {}

  struct Route;
  /// Null where there is nothing at the path.
  [[nodiscard]] static const Route* find(std::string_view method, std::string_view path);
  [[nodiscard]] static Lane laneOf(const Route* route, const WireRequest& request);
  /// What the request is called in logs and figures: its code, or the name of the path; "other" for what is
  /// no request, so that nobody can make up names. It tells nothing of a secret path.
  [[nodiscard]] static std::string_view nameOf(const Route* route, const WireRequest& request);
  [[nodiscard]] static std::size_t largestBodyOf(const Route* route);

  /// Makes the reply; whatever fails becomes one.
  [[nodiscard]] WireReply answer(const Route* route, const WireRequest& request) const;
  /// Why a body that is larger than anybody's is not taken; nothing for one of a known session.
  [[nodiscard]] std::optional<WireReply> refusalOfSender(const WireRequest& head) const;

 private:
  using Answering = WireReply (Routes::*)(const WireRequest&) const;
  [[nodiscard]] WireReply guarded(std::string_view path, const std::function<WireReply()>& work) const;
  WireReply feed(const WireRequest& request) const;
  WireReply health(const WireRequest& request) const;
  WireReply ready(const WireRequest& request) const;
  WireReply metrics(const WireRequest& request) const;
  WireReply login(const WireRequest& request) const;
  WireReply logout(const WireRequest& request) const;
  WireReply password(const WireRequest& request) const;
  WireReply run(const WireRequest& request) const;

  RequestRunner& runner_;
  Metrics& metrics_;
};

/// The reply for an error that was found before any route was asked.
[[nodiscard]] WireReply errorReply(int status);
/// The reply for a request for which nobody has time now.
[[nodiscard]] WireReply busyReply();

}  // namespace vantry::server

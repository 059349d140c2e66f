#include "server/http/routes.h"

#include <algorithm>
#include <array>
#include <exception>
#include <functional>

#include <spdlog/spdlog.h>

#include "server/http/http_limits.h"
#include "server/http/wire.h"
#include "server/requests/reply.h"
#include "words/json_text.h"
#include "words/requests.h"

namespace vantry::server {

namespace {

constexpr std::string_view requestPath = "/v1/request/";
constexpr std::string_view feedPath = "/v1/feeds/";
constexpr std::string_view feedEnding = ".ics";

WireReply refuse(int status, std::string_view sentence) {
  return {.status = status, .body = jsonObject({{"error", sentence}})};
}

WireReply refuseForNow(Moment seconds) {
  WireReply reply = refuse(429, "Too many tries. Wait before the next one.");
  reply.retryAfter = seconds;
  return reply;
}

WireReply refuseSession() {
  return refuse(401, "The session is unknown or has expired.");
}

/// What a call may do that this worker makes the reply to.
RequestRunner::Waiting waitingOf(const WireRequest& request) {
  using Waiting = RequestRunner::Waiting;
  return request.mayAskDirectory ? Waiting::Allowed : Waiting::Forbidden;
}

WireReply passOn() {
  return {.needsDirectory = true};
}

WireReply nothing() {
  return {.status = 204, .body = {}};
}

std::string_view tokenOf(const WireRequest& request) {
  constexpr std::string_view scheme = "Bearer ";
  const std::string_view text = request.authorization;
  return text.starts_with(scheme) ? text.substr(scheme.size()) : std::string_view{};
}

bool isFigure(char each) {
  return each >= '0' && each <= '9';
}

/// Whether what is behind a path is the code of a request.
bool isCode(std::string_view rest) {
  constexpr std::size_t longestCode = 16;
  return !rest.empty() && rest.size() <= longestCode &&
         std::ranges::all_of(rest, [](char each) { return (each >= 'A' && each <= 'Z') || isFigure(each); });
}

/// Whether it has the form of a feed's secret. Anything else is no guess at one.
bool isFeed(std::string_view rest) {
  constexpr std::size_t secretLength = 64;
  if (rest.size() != secretLength + feedEnding.size() || !rest.ends_with(feedEnding)) return false;
  return std::ranges::all_of(rest.substr(0, secretLength),
                             [](char each) { return (each >= 'a' && each <= 'f') || isFigure(each); });
}

std::string_view codeIn(std::string_view path) {
  return path.substr(requestPath.size());
}

/// Whether a list of versions in quotes, as a client knows them, names this one.
bool names(std::string_view versions, std::string_view version) {
  return versions == "*" || versions.find('"' + std::string(version) + '"') != std::string_view::npos;
}

/// "Thu, 26 Nov 2026 12:00:00 GMT".
std::string httpDate(Moment utc) {
  constexpr std::array weekdays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr std::array months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const std::string text = momentText(utc);
  return std::string(weekdays.at(static_cast<std::size_t>(weekdayOf(utc)))) + ", " + text.substr(8, 2) + ' ' +
         months.at(static_cast<std::size_t>(monthOf(utc) - 1)) + ' ' + text.substr(0, 4) + text.substr(10) +
         " GMT";
}

std::string_view sentenceFor(int status) {
  switch (status) {
    case 404:
      return "There is nothing at this path.";
    case 408:
      return "The request did not arrive in time.";
    case 411:
      return "A body needs a Content-Length and travels in one piece.";
    case 413:
      return "The body is too large.";
    case 415:
      return "A body travels as it is, without a Content-Encoding.";
    case 431:
      return "The head of the request is larger than 8 KiB.";
    case 500:
      return "The server failed.";
    default:
      return "The request could not be read.";
  }
}

WireReply refusalOf(const StoreError& error, bool isRequest) {
  using Kind = StoreError::Kind;
  const Kind kind = error.kind();
  const bool mayPass = kind == Kind::Busy || kind == Kind::Unreachable || kind == Kind::Absent ||
                       kind == Kind::Contested || kind == Kind::Moved || kind == Kind::Newer ||
                       kind == Kind::TooLong;
  if (isRequest && !mayPass) return {.status = 200, .body = Reply(rc::storeFailed).json()};
  WireReply reply = refuse(
      503, kind == Kind::ReadOnly ? "The database cannot be written." : "The database cannot be used now.");
  // Nothing was done, so that the client may send it again by itself.
  if (mayPass && kind != Kind::Moved) reply.retryAfter = 1;
  return reply;
}

std::string_view nameOf(StoreError::Kind kind) {
  using Kind = StoreError::Kind;
  switch (kind) {
    case Kind::Busy:
      return "busy";
    case Kind::Unreachable:
      return "unreachable";
    case Kind::ReadOnly:
      return "read only";
    case Kind::Moved:
      return "moved";
    default:
      return "other";
  }
}

}  // namespace

struct Routes::Route {
  std::string_view method;
  std::string_view path;
  std::size_t largestBody;
  Lane lane;
  Answering answer;
  bool (*takes)(std::string_view rest) = nullptr;  ///< what may be behind the path, when something is to be

  [[nodiscard]] bool isRequest() const { return takes == isCode; }
  [[nodiscard]] bool isSecret() const { return takes == isFeed; }
  [[nodiscard]] bool fits(std::string_view asked) const {
    return takes == nullptr ? asked == path : asked.starts_with(path) && takes(asked.substr(path.size()));
  }
};

const Routes::Route* Routes::find(std::string_view method, std::string_view path) {
  static constexpr std::array routes{
      Route{"GET", "/v1/health", 0, Lane::Front, &Routes::health},
      Route{"GET", "/v1/ready", 0, Lane::Logons, &Routes::ready},
      Route{"GET", "/metrics", 0, Lane::Front, &Routes::metrics},
      Route{"POST", "/v1/login", largestBodyOfAnyone, Lane::Logons, &Routes::login},
      Route{"POST", "/v1/logout", largestBodyOfAnyone, Lane::Requests, &Routes::logout},
      Route{"POST", "/v1/password", largestBodyOfAnyone, Lane::Logons, &Routes::password},
      Route{"POST", requestPath, largestBody, Lane::Requests, &Routes::run, isCode},
      Route{"GET", feedPath, 0, Lane::Requests, &Routes::feed, isFeed},
  };
  const std::string_view asked = method == "HEAD" ? "GET" : method;
  const auto* found = std::ranges::find_if(
      routes, [&](const Route& route) { return asked == route.method && route.fits(path); });
  return found == routes.end() ? nullptr : found;
}

Lane Routes::laneOf(const Route* route, const WireRequest& request) {
  if (route == nullptr) return Lane::Front;
  if (!route->isRequest()) return route->lane;
  const std::string_view code = codeIn(request.path);
  if (code == "OPOV") return Lane::Logons;  // a supervisor's password is checked within it
  const RequestRow* row = findRequest(code);
  return row != nullptr && row->writes ? Lane::Writes : route->lane;
}

std::string_view Routes::nameOf(const Route* route, const WireRequest& request) {
  if (route == nullptr) return "other";
  if (route->isSecret()) return "feeds";
  if (!route->isRequest()) return route->path.substr(route->path.rfind('/') + 1);
  const RequestRow* row = findRequest(codeIn(request.path));
  return row == nullptr ? "other" : row->code;
}

std::size_t Routes::largestBodyOf(const Route* route) {
  return route == nullptr ? largestBodyOfAnyone : route->largestBody;
}

WireReply Routes::answer(const Route* route, const WireRequest& request) const {
  if (route == nullptr) return errorReply(404);
  const std::string_view told = route->isSecret() ? route->path : request.path;
  return guarded(told, [&] { return (this->*route->answer)(request); });
}

std::optional<WireReply> Routes::refusalOfSender(const WireRequest& head) const {
  bool known = false;
  WireReply reply = guarded(head.path, [&] {
    known = runner_.knowsSession(tokenOf(head));
    return refuseSession();
  });
  if (known) return std::nullopt;
  return reply;
}

/// Runs the work. Whatever it throws becomes the reply, and a line of the log.
WireReply Routes::guarded(std::string_view path, const std::function<WireReply()>& work) const {
  try {
    return work();
  } catch (const StoreError& error) {
    spdlog::error("{}: {}", path, error.what());
    metrics_.noteStoreError(server::nameOf(error.kind()));
    return refusalOf(error, path.starts_with(requestPath));
  } catch (const std::exception& error) {
    spdlog::error("{}: {}", path, error.what());
  } catch (...) {
    spdlog::error("{}: unknown failure", path);
  }
  return refuse(500, sentenceFor(500));
}

WireReply Routes::ready(const WireRequest& /*request*/) const {
  (void)runner_.knowsSession({});  // asks the store
  return {.status = 200, .body = R"({"ready":true})"};
}

WireReply Routes::metrics(const WireRequest& /*request*/) const {
  return {.status = 200, .body = metrics_.text(), .type = "text/plain; version=0.0.4"};
}

WireReply Routes::health(const WireRequest& /*request*/) const {
  return {.status = 200, .body = R"({"name":"vantry","protocol":1,"key":")" + runner_.sealingKey() + "\"}"};
}

WireReply Routes::login(const WireRequest& request) const {
  const auto body = readTextPair(request.body, "operator", "password");
  if (!body) return refuse(400, "The body needs the texts operator and password.");
  const auto result = runner_.login(body->first, body->second, request.address, waitingOf(request));
  using Kind = RequestRunner::LoginResult::Kind;
  if (result.kind == Kind::NeedsDirectory) return passOn();
  if (result.kind == Kind::Away)
    return refuse(503,
                  "The directory of the house cannot be asked now, so that your password cannot be checked.");
  if (result.kind != Kind::Granted) metrics_.noteRefusedTry();
  if (result.kind == Kind::TooMany) return refuseForNow(result.retryAfter);
  if (result.kind == Kind::Refused) return refuse(401, "The operator or the password is wrong.");
  return {.status = 200, .body = jsonObject({{"session", result.token}, {"operator", result.login}})};
}

WireReply Routes::logout(const WireRequest& request) const {
  return runner_.logout(tokenOf(request)) ? nothing() : refuseSession();
}

WireReply Routes::password(const WireRequest& request) const {
  const auto body = readTextPair(request.body, "old", "new");
  if (!body) return refuse(400, "The body needs the texts old and new.");
  const auto result = runner_.changePassword(tokenOf(request), body->first, body->second, request.address);
  using Kind = RequestRunner::PasswordResult::Kind;
  switch (result.kind) {
    case Kind::Changed:
      return nothing();
    case Kind::NoSession:
      return refuseSession();
    case Kind::WrongOld:
      return refuse(401, "The old password is wrong.");
    case Kind::TooWeak:
      return refuse(400, result.weakness);
    case Kind::NotOurs:
      return refuse(400, "Your password is that of the house's directory, and is changed there.");
    case Kind::TooMany:
      return refuseForNow(result.retryAfter);
  }
  return refuse(500, sentenceFor(500));
}

WireReply Routes::run(const WireRequest& request) const {
  if (request.requestId.empty() || request.requestId.size() > 64) {
    return refuse(400, "A request needs a Request-Id of at most 64 characters.");
  }
  const auto tags = readMessage(request.body);
  if (!tags) {
    return refuse(400, R"(The body is not {"tags":[["TAG","value"]]}, or has more than 2,000 tags.)");
  }
  RequestRunner::Answer result = runner_.run({.token = tokenOf(request),
                                              .code = codeIn(request.path),
                                              .requestId = request.requestId,
                                              .tags = *tags,
                                              .waiting = waitingOf(request)});
  using Kind = RequestRunner::Answer::Kind;
  switch (result.kind) {
    case Kind::Done:
      return {.status = 200, .body = std::move(result.json)};
    case Kind::NoSession:
      return refuseSession();
    case Kind::UnknownCode:
      return refuse(404, "There is no request of this code.");
    case Kind::IdMisused:
      return refuse(400, "The Request-Id was used for another request.");
    case Kind::NeedsDirectory:
      return passOn();
  }
  return refuse(500, sentenceFor(500));
}

WireReply Routes::feed(const WireRequest& request) const {
  std::string_view secret = request.path.substr(feedPath.size());
  secret.remove_suffix(feedEnding.size());
  RequestRunner::FeedAnswer told = runner_.feed(secret, request.address);
  using Kind = RequestRunner::FeedAnswer::Kind;
  if (told.kind == Kind::TooMany) return refuseForNow(told.retryAfter);
  if (told.kind == Kind::Unknown) return errorReply(404);
  WireReply reply{.type = "text/calendar; charset=utf-8"};
  reply.headers = "\r\nETag: \"" + told.version + "\"\r\nLast-Modified: " + httpDate(told.changedAt) +
                  "\r\nCache-Control: private, no-cache";
  if (names(request.knownVersions, told.version)) {
    reply.status = 304;
  } else {
    reply.body = std::move(told.text);
  }
  return reply;
}

WireReply errorReply(int status) {
  return refuse(status, sentenceFor(status));
}

WireReply busyReply() {
  WireReply reply = refuse(503, "The server is busy. Try again in a moment.");
  reply.retryAfter = 1;
  return reply;
}

}  // namespace vantry::server

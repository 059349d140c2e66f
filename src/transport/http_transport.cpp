#include "transport/http_transport.h"

#include "transport/http_line.h"
#include "transport/json_reader.h"
#include "transport/request_body.h"
#include "words/json_text.h"

namespace vantry {
namespace {

constexpr int kProtocol = 1;
constexpr const char* kNotOurs = "At this address answers no Vantry server.";
constexpr const char* kUnreadable = "The server's reply could not be read.";

enum Status {
  Ok = 200,
  LastSuccess = 299,
  BadRequest = 400,
  Unauthorized = 401,
  RequestTimeout = 408,
  TooManyRequests = 429,
  FirstServerError = 500,
  Unavailable = 503
};

/// The server's own sentence about an error, or ours where it gave none.
std::string sentenceOf(std::string& body, std::string fallback) {
  std::string sentence = readText(body, "error");
  return sentence.empty() ? std::move(fallback) : sentence;
}

/// What a status other than 200 means for a request that came over.
DeliveryResult refusalOf(int status, std::string& body) {
  const auto result = [&](Delivery delivery, std::string fallback) {
    return DeliveryResult{delivery, {}, sentenceOf(body, std::move(fallback))};
  };
  switch (status) {
    case Unauthorized:
      return result(Delivery::SessionEnded, "The session has ended.");
    case RequestTimeout:
    case TooManyRequests:
    case Unavailable:
      return result(Delivery::NotDelivered, "The server cannot work now.");
    default:
      break;
  }
  // Behind other server errors, of the server or of what stands before it, the request may have been run.
  if (status >= FirstServerError) return result(Delivery::Unknown, "The server failed.");
  if (status >= BadRequest) return result(Delivery::Rejected, "The server does not take this request.");
  return {Delivery::Rejected, {}, kNotOurs};
}

/// What a status other than 200 means for a log-on.
LogonAnswer logonRefusalOf(int status, std::string& body) {
  const auto answer = [&](LogonResult result, std::string fallback) {
    return LogonAnswer{result, {}, sentenceOf(body, std::move(fallback))};
  };
  switch (status) {
    case BadRequest:
    case Unauthorized:
      return answer(LogonResult::Refused, "The operator or the password is wrong.");
    case TooManyRequests:
      return answer(LogonResult::TooManyTries, "There were too many tries.");
    default:
      break;
  }
  if (status >= FirstServerError) return answer(LogonResult::Unreachable, "The server cannot work now.");
  return {LogonResult::Unreachable, {}, kNotOurs};
}

}  // namespace

HttpTransport::HttpTransport(Options options)
    : line_(std::make_unique<Line>(std::move(options))), reader_(std::make_unique<ReplyReader>()) {}

HttpTransport::~HttpTransport() = default;

bool HttpTransport::secured() const {
  return line_->secured();
}

bool HttpTransport::reach(std::string& reason) {
  auto answer = line_->call("GET", "/v1/health", {}, {}, true);
  if (answer.outcome != Line::Answer::Outcome::Answered) {
    reason = std::move(answer.reason);
    return false;
  }
  if (answer.status == Unavailable) {
    reason = sentenceOf(answer.body, "The server cannot work now.");
    return false;
  }
  const bool ours = answer.status == Ok && readText(answer.body, "name") == "vantry";
  const bool understood = ours && readNumber(answer.body, "protocol") == kProtocol;
  if (!ours) reason = kNotOurs;
  if (ours && !understood) reason = "The server is of another version than this program.";
  return understood;
}

std::string HttpTransport::passwordKey() {
  auto answer = line_->call("GET", "/v1/health", {}, {}, true);
  const bool answered = answer.outcome == Line::Answer::Outcome::Answered && answer.status == Ok;
  return answered ? readText(answer.body, "key") : std::string();
}

LogonAnswer HttpTransport::logon(std::string_view operatorId, std::string_view password) {
  session_.clear();
  // A log-on carries no id that would let it be repeated; over a fresh connection it need not be.
  line_->close();
  auto answer = line_->call("POST", "/v1/login", {},
                            jsonObject({{"operator", operatorId}, {"password", password}}), false);
  if (answer.outcome != Line::Answer::Outcome::Answered)
    return {LogonResult::Unreachable, {}, std::move(answer.reason)};
  if (answer.status != Ok) return logonRefusalOf(answer.status, answer.body);
  session_ = readText(answer.body, "session");
  std::string login = readText(answer.body, "operator");
  if (!session_.empty() && !login.empty()) return {LogonResult::Accepted, std::move(login), {}};
  session_.clear();
  return {LogonResult::Unreachable, {}, kUnreadable};
}

void HttpTransport::logoff() {
  if (session_.empty()) return;
  // Without the server's word the session ends by itself after its time.
  line_->call("POST", "/v1/logout", {{"Authorization", "Bearer " + session_}}, {}, true);
  session_.clear();
}

bool HttpTransport::changePassword(std::string_view old, std::string_view fresh, std::string& reason) {
  line_->close();
  auto answer = line_->call("POST", "/v1/password", {{"Authorization", "Bearer " + session_}},
                            jsonObject({{"old", old}, {"new", fresh}}), false);
  if (answer.outcome != Line::Answer::Outcome::Answered) {
    reason = std::move(answer.reason);
    return false;
  }
  if (answer.status >= Ok && answer.status <= LastSuccess) return true;
  reason = sentenceOf(answer.body, "The server does not take this password.");
  return false;
}

DeliveryResult HttpTransport::send(const Request& request) {
  const Line::Headers headers = {{"Authorization", "Bearer " + session_}, {"Request-Id", request.id}};
  auto answer =
      line_->callWhileBusy("POST", "/v1/request/" + request.code, headers, requestBody(request.tags));
  using Outcome = Line::Answer::Outcome;
  if (answer.outcome != Outcome::Answered) {
    const bool unsent = answer.outcome == Outcome::Unsent;
    return {unsent ? Delivery::NotDelivered : Delivery::Unknown, {}, std::move(answer.reason)};
  }
  if (answer.status != Ok) return refusalOf(answer.status, answer.body);
  DeliveryResult result{Delivery::Answered, {}, {}};
  if (!reader_->read(answer.body, result.reply)) return {Delivery::Unknown, {}, kUnreadable};
  return result;
}

}  // namespace vantry

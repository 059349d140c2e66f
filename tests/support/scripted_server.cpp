#include "support/scripted_server.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "words/requests.h"
#include "words/tags.h"

namespace vantry::test {

struct ScriptedServer::Answer::Step {
  std::string what;  ///< in words, for messages
  Place place;
  std::string code;  ///< of a request; empty for other calls
  std::vector<TagValue> tags;
  bool again = false;
  DeliveryResult result;
  std::function<Reply(const Request&)> compute;
  LogonAnswer logon;
};

namespace {

std::string requestInWords(std::string_view code, const std::vector<TagValue>& tags) {
  std::string words(code);
  if (!tags.empty()) words += ' ' + inWords(tags);
  return words;
}

void failAt(const std::source_location& place, const std::string& message) {
  ADD_FAILURE_AT(place.file_name(), static_cast<int>(place.line())) << message;
}

bool sameTags(const std::vector<TagValue>& expected, const std::vector<TagValue>& came) {
  return std::equal(expected.begin(), expected.end(), came.begin(), came.end(),
                    [](const TagValue& a, const TagValue& b) {
                      return a.tag == b.tag && (a.value == "*" || a.value == b.value);
                    });
}

/// Whether a list of the table holds the tag; a word there may name a form behind a colon.
bool holds(std::string_view list, std::string_view tag) {
  const auto words = wordsOf(list);
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) { return tagOf(word) == tag; });
}

/// The form that a value of the tag has in this list.
std::optional<TagForm> formIn(std::string_view list, std::string_view tag) {
  for (const std::string_view word : wordsOf(list)) {
    if (tagOf(word) == tag && word.size() > tag.size()) return formNamed(word.substr(tag.size() + 1));
  }
  const TagRow* row = findTag(tag);
  return row ? std::optional(row->form) : std::nullopt;
}

/// What the table says against these pairs of a reply; empty when it agrees.
std::string objection(const std::vector<TagValue>& pairs, std::string_view allowed) {
  for (const auto& [tag, value] : pairs) {
    if (tag != "CANTREAD" && !holds(allowed, tag)) return "does not carry " + tag;
    const auto form = formIn(allowed, tag);
    if (form && !hasForm(value, *form)) return "would not send " + tag + '=' + value;
  }
  return {};
}

std::string objection(const TagBlock& block, const RequestRow& row) {
  std::string found = objection(block.head, row.head);
  for (const auto& record : block.records) {
    if (!found.empty()) break;
    found = objection(record, row.records);
    const bool walked = std::any_of(record.begin(), record.end(),
                                    [&](const TagValue& pair) { return holds(row.walk, pair.tag); });
    if (found.empty() && !walked) found = "has no record without " + std::string(row.walk);
  }
  return found;
}

}  // namespace

void ScriptedServer::Answer::set(std::string_view text, int rc) {
  TagBlock block = blockOf(text);
  const RequestRow* row = findRequest(step_.code);
  if (row && row->walk.empty()) {
    for (auto& record : block.records) block.head.insert(block.head.end(), record.begin(), record.end());
    block.records.clear();
  }
  const std::string found = row ? objection(block, *row) : std::string();
  if (!found.empty()) failAt(step_.place, "the reply of " + step_.code + ' ' + found);
  step_.result = {Delivery::Answered, replyOf(block, rc), {}};
}

void ScriptedServer::Answer::replies(std::string_view block) {
  set(block, 0);
}

void ScriptedServer::Answer::replies(Reply reply) {
  step_.result = {Delivery::Answered, std::move(reply), {}};
}

void ScriptedServer::Answer::fails(int rc, std::string_view block) {
  set(block, rc);
}

void ScriptedServer::Answer::computes(std::function<Reply(const Request&)> reply) {
  step_.compute = std::move(reply);
}

void ScriptedServer::Answer::breaks(Delivery delivery, std::string reason) {
  step_.result = {delivery, {}, std::move(reason)};
}

void ScriptedServer::Answer::losesRequest(std::string reason) {
  breaks(Delivery::NotDelivered, std::move(reason));
}

void ScriptedServer::Answer::losesReply(std::string reason) {
  breaks(Delivery::Unknown, std::move(reason));
}

void ScriptedServer::Answer::endsSession() {
  breaks(Delivery::SessionEnded, "The session has ended.");
}

void ScriptedServer::Answer::rejects(std::string reason) {
  breaks(Delivery::Rejected, std::move(reason));
}

ScriptedServer::ScriptedServer() = default;

ScriptedServer::~ScriptedServer() {
  checkAllCame();
}

void ScriptedServer::checkAllCame() {
  for (const Step& step : steps_) failAt(step.place, "never came: " + step.what);
  steps_.clear();
}

ScriptedServer::Step& ScriptedServer::addStep(std::string what, Place place) {
  Step& step = steps_.emplace_back();
  step.what = std::move(what);
  step.place = place;
  step.result.delivery = Delivery::Answered;
  return step;
}

ScriptedServer::Answer ScriptedServer::expect(std::string_view code, std::string_view tags, Place place) {
  auto pairs = pairsOf(tags);
  Step& step = addStep(requestInWords(code, pairs), place);
  step.code = code;
  step.tags = std::move(pairs);
  if (!findRequest(code)) failAt(place, "the protocol has no request " + step.code);
  return Answer(step);
}

ScriptedServer::Answer ScriptedServer::expectAgain(Place place) {
  return expectAgain({}, place);
}

ScriptedServer::Answer ScriptedServer::expectAgain(std::string_view code, Place place) {
  const auto isIt = [&](const auto& one) { return !one.code.empty() && (code.empty() || one.code == code); };
  const auto planned = std::find_if(steps_.rbegin(), steps_.rend(), isIt);
  const auto came = std::find_if(requests_.rbegin(), requests_.rend(), isIt);
  Request before;
  if (planned != steps_.rend()) {
    before = {{}, planned->code, planned->tags};
  } else if (came != requests_.rend()) {
    before = *came;
  } else {
    failAt(place, "nothing that could come again");
  }
  Step& step = addStep(requestInWords(before.code, before.tags) + " (again)", place);
  step.code = before.code;
  step.tags = before.tags;
  step.again = true;
  return Answer(step);
}

ScriptedServer::Answer ScriptedServer::always(std::string_view code, Place place) {
  Step& step = standing_[std::string(code)];
  step = Step{};
  step.code = code;
  step.place = place;
  step.result.delivery = Delivery::Answered;
  if (!findRequest(code)) failAt(place, "the protocol has no request " + step.code);
  return Answer(step);
}

void ScriptedServer::expectLogon(std::string_view operatorId, std::string_view password, LogonResult result,
                                 Place place) {
  const bool accepted = result == LogonResult::Accepted;
  expectLogon(
      operatorId, password,
      {result, std::string(accepted ? operatorId : ""), accepted ? "" : "The server does not answer."},
      place);
}

void ScriptedServer::expectLogon(std::string_view operatorId, std::string_view password, LogonAnswer answer,
                                 Place place) {
  addStep("log-on of " + std::string(operatorId) + " with " + std::string(password), place).logon =
      std::move(answer);
}

void ScriptedServer::expectPasswordChange(std::string_view old, std::string_view fresh, std::string refusal,
                                          Place place) {
  addStep("password change from " + std::string(old) + " to " + std::string(fresh), place).result.reason =
      std::move(refusal);
}

void ScriptedServer::expectUnreachable(std::string reason, Place place) {
  addStep("reaching for the server", place).result.reason = std::move(reason);
}

std::optional<ScriptedServer::Step> ScriptedServer::take(const std::string& what) {
  if (steps_.empty() || steps_.front().what != what) {
    ADD_FAILURE() << "came:     " << what
                  << "\nexpected: " << (steps_.empty() ? "nothing" : steps_.front().what);
    return std::nullopt;
  }
  Step step = std::move(steps_.front());
  steps_.pop_front();
  return step;
}

bool ScriptedServer::reach(std::string& reason) {
  const std::string what = "reaching for the server";
  if (steps_.empty() || steps_.front().what != what) return true;
  reason = take(what)->result.reason;
  return false;
}

LogonAnswer ScriptedServer::logon(std::string_view operatorId, std::string_view password) {
  const auto step = take("log-on of " + std::string(operatorId) + " with " + std::string(password));
  if (!step) return {LogonResult::Refused, {}, "The log-on was not expected."};
  if (step->logon == LogonResult::Accepted) operatorId_ = step->logon.operatorId;
  return step->logon;
}

void ScriptedServer::logoff() {
  operatorId_.clear();
}

bool ScriptedServer::changePassword(std::string_view old, std::string_view fresh, std::string& reason) {
  const auto step = take("password change from " + std::string(old) + " to " + std::string(fresh));
  if (step) reason = step->result.reason;
  return step && reason.empty();
}

void ScriptedServer::checkRequest(const Request& request) const {
  const RequestRow* row = findRequest(request.code);
  if (!row) {
    ADD_FAILURE() << "the protocol has no request " << request.code;
    return;
  }
  const auto fault = checkMessage(*row, request.tags);
  if (!fault) return;
  static constexpr const char* kinds[] = {"is missing", "is not expected there",
                                          "has a value of the wrong form"};
  ADD_FAILURE() << "the server would refuse " << requestInWords(request.code, request.tags) << ": "
                << fault->tag << ' ' << kinds[static_cast<int>(fault->kind)] << "\nits tags: " << row->sent;
}

void ScriptedServer::checkId(const Request& request, bool again) const {
  const bool known = std::any_of(requests_.begin(), requests_.end(), [&](const Request& other) {
    return other.id == request.id && (!again || other.code == request.code);
  });
  if (again && !known) ADD_FAILURE() << request.code << " came again with another id";
  if (!again && known)
    ADD_FAILURE() << request.code << " came with the id of another request: " << request.id;
}

std::optional<ScriptedServer::Step> ScriptedServer::stepFor(const Request& request) {
  const bool expected = !steps_.empty() && steps_.front().code == request.code;
  const auto standing = standing_.find(request.code);
  if (!expected && standing != standing_.end()) return standing->second;
  if (expected && sameTags(steps_.front().tags, request.tags)) return take(steps_.front().what);
  const auto step = take(requestInWords(request.code, request.tags));
  // A request that differs only in its tags stands for the expected one, so that one fault is told once.
  if (!step && expected) steps_.pop_front();
  return step;
}

DeliveryResult ScriptedServer::send(const Request& request) {
  checkRequest(request);
  const auto step = stepFor(request);
  if (step) checkId(request, step->again);
  requests_.push_back(request);
  if (!step) return {Delivery::Answered, replyOf(TagBlock{}, -100), {}};  // a code that no window speaks of
  if (step->compute) return {Delivery::Answered, step->compute(request), {}};
  return step->result;
}

}  // namespace vantry::test

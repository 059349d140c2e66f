#include "words/requests.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "words/pattern.h"
#include "words/request_tables.h"

namespace vantry {
namespace {

std::vector<RequestRow> joinTables() {
  std::vector<RequestRow> rows;
  for (const auto part : {operatorRequests(), inventoryRequests(), bookingRequests(), scheduleRequests()}) {
    rows.insert(rows.end(), part.begin(), part.end());
  }
  return rows;
}

/// Names the tag that keeps the message from fitting. A tag that the request knows but that comes too early
/// stands for the one before it that was left out; one that is merely out of order is named itself.
MessageFault faultOf(const TagPattern& pattern, const TagPattern::Match& match,
                     std::span<const TagValue> tags) {
  const auto rest = tags.subspan(match.reached);
  if (rest.empty()) return {MessageFault::Kind::Missing, std::string(match.required)};
  const bool isLeftOut = !match.required.empty() && pattern.find(rest.front().tag) &&
                         std::ranges::find(rest, match.required, &TagValue::tag) == rest.end();
  if (isLeftOut) return {MessageFault::Kind::Missing, std::string(match.required)};
  return {MessageFault::Kind::Unexpected, rest.front().tag};
}

}  // namespace

std::span<const RequestRow> requestTable() {
  static const std::vector<RequestRow> rows = joinTables();
  return rows;
}

const RequestRow* findRequest(std::string_view code) {
  static const auto index = [] {
    std::unordered_map<std::string_view, const RequestRow*> rows;
    for (const RequestRow& row : requestTable()) rows.emplace(row.code, &row);
    return rows;
  }();
  const auto found = index.find(code);
  return found == index.end() ? nullptr : found->second;
}

std::optional<MessageFault> checkMessage(const RequestRow& row, std::span<const TagValue> tags) {
  const TagPattern pattern(row.sent);
  const auto match = pattern.match(tags);
  if (!match.sound) return faultOf(pattern, match, tags);
  const auto bad = std::ranges::find_if(
      tags, [&](const TagValue& tag) { return !hasForm(tag.value, pattern.find(tag.tag)->form); });
  if (bad == tags.end()) return std::nullopt;
  return MessageFault{MessageFault::Kind::BadValue, bad->tag};
}

std::vector<std::string_view> wordsOf(std::string_view list) {
  std::vector<std::string_view> words;
  while (true) {
    list.remove_prefix(std::min(list.find_first_not_of(' '), list.size()));
    if (list.empty()) return words;
    const auto word = list.substr(0, list.find(' '));
    words.push_back(word);
    list.remove_prefix(word.size());
  }
}

}  // namespace vantry

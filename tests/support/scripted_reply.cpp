#include "support/scripted_reply.h"

#include <stdexcept>

#include "platform/text.h"

namespace vantry::test {
namespace {

bool isCapital(char c) {
  return c >= 'A' && c <= 'Z';
}

bool isTagCharacter(char c) {
  return isCapital(c) || (c >= '0' && c <= '9') || c == '_';
}

/// The length of "TAG=" at the start of the text; 0 where none stands.
std::size_t pairStart(std::string_view text) {
  if (text.empty() || !isCapital(text.front())) return 0;
  std::size_t end = 0;
  while (end < text.size() && isTagCharacter(text[end])) ++end;
  return end < text.size() && text[end] == '=' ? end + 1 : 0;
}

[[noreturn]] void unreadable(std::string_view text, const char* why) {
  throw std::invalid_argument(std::string(why) + " at: " + std::string(text.substr(0, 60)));
}

std::string takeQuoted(std::string_view& text) {
  std::string value;
  for (std::size_t i = 1; i < text.size(); ++i) {
    const bool quote = text[i] == '"';
    if (quote && (i + 1 == text.size() || text[i + 1] != '"')) {
      text.remove_prefix(i + 1);
      return value;
    }
    if (quote) ++i;
    value += text[i];
  }
  unreadable(text, "a quoted value without its end");
}

std::string takePlain(std::string_view& text) {
  std::size_t end = 0;
  while (end < text.size() && text[end] != '|' && text[end] != '\n') {
    if (text[end] == ' ' && pairStart(text.substr(end + 1)) > 0) break;
    ++end;
  }
  const std::string value(trim(text.substr(0, end)));
  text.remove_prefix(end);
  return value;
}

TagValue takePair(std::string_view& text) {
  const std::size_t start = pairStart(text);
  if (start == 0) unreadable(text, "no TAG=value");
  TagValue pair{std::string(text.substr(0, start - 1)), {}};
  text.remove_prefix(start);
  pair.value = text.starts_with('"') ? takeQuoted(text) : takePlain(text);
  return pair;
}

void skipBlanks(std::string_view& text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
}

bool atEndOfSegment(std::string_view text) {
  return text.empty() || text.front() == '|' || text.front() == '\n';
}

}  // namespace

TagBlock blockOf(std::string_view text) {
  TagBlock block;
  while (!text.empty()) {
    skipBlanks(text);
    const bool head = text.starts_with("head:");
    if (head) text.remove_prefix(5);
    TagBlock::Pairs pairs;
    for (skipBlanks(text); !atEndOfSegment(text); skipBlanks(text)) pairs.push_back(takePair(text));
    if (!text.empty()) text.remove_prefix(1);
    if (head) {
      block.head.insert(block.head.end(), pairs.begin(), pairs.end());
    } else if (!pairs.empty()) {
      block.records.push_back(std::move(pairs));
    }
  }
  return block;
}

std::vector<TagValue> pairsOf(std::string_view text) {
  const TagBlock block = blockOf(text);
  if (block.records.size() > 1 || !block.head.empty()) unreadable(text, "more than one segment");
  return block.records.empty() ? std::vector<TagValue>{} : block.records.front();
}

Reply replyOf(const TagBlock& block, int rc) {
  Reply reply;
  reply.rc = rc;
  for (const auto& [tag, value] : block.head) reply.add(tag, value);
  for (const auto& record : block.records) {
    reply.beginRecord();
    for (const auto& [tag, value] : record) reply.add(tag, value);
  }
  return reply;
}

Reply replyOf(std::string_view text, int rc) {
  return replyOf(blockOf(text), rc);
}

std::string inWords(const std::vector<TagValue>& pairs) {
  std::string words;
  for (const auto& [tag, value] : pairs) {
    if (!words.empty()) words += ' ';
    words += tag + '=';
    const bool plain = value.find_first_of("=|\n\"") == std::string::npos && trim(value) == value;
    if (plain) {
      words += value;
      continue;
    }
    words += '"';
    for (const char c : value) words += c == '"' ? std::string("\"\"") : std::string(1, c);
    words += '"';
  }
  return words;
}

}  // namespace vantry::test

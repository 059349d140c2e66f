#include "server/catalogue/marc_record.h"

#include <algorithm>

namespace vantry::server {

namespace {

constexpr std::string_view leaderTag = "LDR";

std::string_view trimmed(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

template <class Take>
void eachSubfield(const MarcField& field, Take take) {
  std::string_view rest = field.text;
  for (std::size_t at = rest.find(marcMark); at != std::string_view::npos; at = rest.find(marcMark)) {
    rest.remove_prefix(at + 1);
    if (rest.empty()) return;
    take(rest.front(), trimmed(rest.substr(1, rest.find(marcMark) - 1)));
  }
}

/// Lines and their parts must stay apart.
std::string onOneLine(std::string_view text) {
  std::string line(text);
  std::ranges::replace_if(
      line, [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
  return line;
}

/// Takes the text up to the mark, and the mark with it.
std::string_view takeUpTo(std::string_view& text, char mark) {
  const std::string_view part = text.substr(0, text.find(mark));
  text.remove_prefix(std::min(part.size() + 1, text.size()));
  return part;
}

}  // namespace

const MarcField* findField(const MarcRecord& record, std::string_view tag) {
  const auto found = std::ranges::find(record.fields, tag, &MarcField::tag);
  return found == record.fields.end() ? nullptr : &*found;
}

std::vector<MarcSubfield> subfieldsOf(const MarcField& field) {
  std::vector<MarcSubfield> all;
  eachSubfield(field, [&](char code, std::string_view value) { all.push_back({code, std::string(value)}); });
  return all;
}

std::string firstSubfield(const MarcField& field, std::string_view codes) {
  for (const char code : codes) {
    std::string text = subfield(field, code);
    if (!text.empty()) return text;
  }
  return {};
}

std::string subfield(const MarcField& field, char code) {
  std::string text;
  eachSubfield(field, [&](char each, std::string_view value) {
    if (each == code && text.empty()) text = value;
  });
  return text;
}

std::string subfields(const MarcField& field, std::string_view codes) {
  std::string text;
  eachSubfield(field, [&](char each, std::string_view value) {
    if (value.empty() || codes.find(each) == std::string_view::npos) return;
    if (!text.empty()) text += ' ';
    text += value;
  });
  return text;
}

std::string controlText(const MarcRecord& record, std::string_view tag) {
  const MarcField* field = findField(record, tag);
  return field == nullptr ? std::string() : std::string(trimmed(field->text));
}

std::string marcSubfield(char code, std::string_view text) {
  return std::string{marcMark, code}.append(text);
}

bool isHoldings(const MarcRecord& record) {
  constexpr std::string_view kinds = "uvxy";
  return record.leader.size() > 6 && kinds.find(record.leader[6]) != std::string_view::npos;
}

std::string storedForm(const MarcRecord& record) {
  std::string text;
  if (!record.leader.empty())
    text.append(leaderTag).append("\t\t").append(onOneLine(record.leader)).append("\n");
  for (const MarcField& field : record.fields) {
    text.append(field.tag).append("\t").append(onOneLine(field.indicators)).append("\t");
    text.append(onOneLine(field.text)).append("\n");
  }
  return text;
}

MarcRecord fromStoredForm(std::string_view text) {
  MarcRecord record;
  while (!text.empty()) {
    std::string_view line = takeUpTo(text, '\n');
    const std::string_view tag = takeUpTo(line, '\t');
    const std::string_view indicators = takeUpTo(line, '\t');
    if (tag == leaderTag) {
      record.leader = line;
    } else if (!tag.empty()) {
      record.fields.push_back({std::string(tag), std::string(indicators), std::string(line)});
    }
  }
  return record;
}

}  // namespace vantry::server

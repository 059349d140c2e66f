#include "server/catalogue/item_fields.h"

#include <algorithm>

namespace vantry::server {

namespace {

constexpr std::size_t fewestFigures = 4;
constexpr std::size_t mostTexts = 1000;
constexpr std::size_t mostTold = 5;

bool isFigure(char c) {
  return c >= '0' && c <= '9';
}

bool looksLikeBarcode(std::string_view text) {
  const auto figures = static_cast<std::size_t>(std::ranges::count_if(text, isFigure));
  const bool plain = std::ranges::all_of(text, [](char c) {
    return isFigure(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' || c == '.' ||
           c == '$';
  });
  return plain && text.size() > fewestFigures && text.size() <= 20 && figures >= fewestFigures;
}

/// Numbers of the title itself are in fields below 100, 880 repeats other fields in another script, and
/// figures as codes link fields with each other.
bool mayTellItems(std::string_view tag, char code) {
  return tag >= "100" && tag != "880" && !isFigure(code);
}

}  // namespace

void ItemFields::look(const MarcRecord& record) {
  std::map<std::pair<std::string, char>, int> here;
  for (const MarcField& field : record.fields) {
    for (const MarcSubfield& each : subfieldsOf(field)) {
      if (!mayTellItems(field.tag, each.code) || !looksLikeBarcode(each.text)) continue;
      Seen& seen = seen_[{field.tag, each.code}];
      ++seen.fields;
      if (seen.texts.size() < mostTexts) seen.texts.insert(each.text);
      if (seen.example.empty()) seen.example = each.text;
      ++here[{field.tag, each.code}];
    }
  }
  for (const auto& [place, count] : here) {
    ++seen_[place].records;
    if (count > 1) seen_[place].isRepeated = true;
  }
}

std::vector<std::string> ItemFields::told() const {
  std::vector<std::pair<int, std::string>> found;
  for (const auto& [place, seen] : seen_) {
    const auto& [tag, code] = place;
    const bool isLocal = tag >= "850";
    const auto looked = static_cast<std::size_t>(seen.fields);
    const bool differ = seen.texts.size() * 10 >= std::min(looked, mostTexts) * 9;
    if (!differ || (!seen.isRepeated && !isLocal)) continue;
    found.emplace_back(-seen.fields, tag + " $" + code + ": " + std::to_string(seen.fields) + " in " +
                                         std::to_string(seen.records) +
                                         (seen.records == 1 ? " record" : " records") + ", such as " +
                                         seen.example);
  }
  std::ranges::sort(found);
  std::vector<std::string> sentences;
  for (const auto& [count, sentence] : found) {
    if (sentences.size() < mostTold) sentences.push_back(sentence);
  }
  return sentences;
}

}  // namespace vantry::server

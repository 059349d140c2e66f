#include "server/catalogue/marc_map.h"

#include <algorithm>

#include "server/base/catalogue_text.h"

namespace vantry::server {

namespace {

constexpr std::string_view leaderField = "LDR";

/// What a test looks at in each field of its tag.
std::vector<std::string> textsFor(const RecordTest& test, const MarcRecord& record) {
  if (test.field == leaderField) return {record.leader};
  std::vector<std::string> texts;
  for (const MarcField& field : record.fields) {
    if (field.tag != test.field) continue;
    const bool isPlain = field.text.find(marcMark) == std::string::npos;
    if (isPlain) {
      texts.push_back(field.text);
      continue;
    }
    for (const MarcSubfield& each : subfieldsOf(field)) {
      if (test.subfields.empty() || test.subfields.find(each.code) != std::string::npos)
        texts.push_back(each.text);
    }
  }
  return texts;
}

bool contains(const RecordTest& test, const std::string& text) {
  if (test.place < 0) return catalogueKey(text).find(catalogueKey(test.text)) != std::string::npos;
  const auto place = static_cast<std::size_t>(test.place);
  return place < text.size() && std::string_view(text).substr(place).starts_with(test.text);
}

bool passes(const RecordTest& test, const MarcRecord& record) {
  const std::vector<std::string> texts = textsFor(test, record);
  switch (test.kind) {
    case RecordTest::Kind::Has:
      return !texts.empty();
    case RecordTest::Kind::HasNot:
      return texts.empty();
    case RecordTest::Kind::Contains:
      break;
  }
  return std::ranges::any_of(texts, [&](const std::string& text) { return contains(test, text); });
}

}  // namespace

MarcMap usualMarcMap() {
  MarcMap map;
  map.practices.push_back({.items = {"876", "877", "878"},
                           .holdings = "852",
                           .holdingsBarcode = "p",
                           .barcode = "p",
                           .location = "bca",
                           .callNumber = "khijm",
                           .copy = "t",
                           .status = "j",
                           .mediaType = {},
                           .issue = "3"});
  map.withdrawn = {"lost", "missing", "withdrawn", "damaged"};
  return map;
}

bool isWanted(const MarcMap& map, const MarcRecord& record) {
  return std::ranges::all_of(map.records, [&](const RecordTest& test) { return passes(test, record); });
}

bool isWithdrawn(const MarcMap& map, std::string_view status) {
  const std::string key = catalogueKey(status) + " ";
  return std::ranges::any_of(map.withdrawn, [&](const std::string& word) {
    const std::string begins = catalogueKey(word);
    return !begins.empty() && key.starts_with(begins + " ");
  });
}

std::string_view nameFor(const std::vector<CodeName>& names, std::string_view code) {
  const std::string key = catalogueKey(code);
  const auto found =
      std::ranges::find_if(names, [&](const CodeName& each) { return catalogueKey(each.code) == key; });
  return found == names.end() ? code : std::string_view(found->name);
}

}  // namespace vantry::server

#include "server/setup/marc_map_file.h"

#include <algorithm>
#include <array>
#include <set>

#include <nlohmann/json.hpp>

#include "server/base/catalogue_text.h"
#include "server/setup/file_text.h"
#include "server/setup/rules_file_value.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

using Json = nlohmann::ordered_json;
using Kind = RecordTest::Kind;

constexpr std::array testWords{Word{static_cast<int>(Kind::Has), "has"},
                               Word{static_cast<int>(Kind::HasNot), "has not"},
                               Word{static_cast<int>(Kind::Contains), "contains"}};

/// The members of a practice that name subfields.
struct Codes {
  std::string_view name;
  std::string ItemPractice::*codes;
};
constexpr std::array codeMembers{Codes{"barcode", &ItemPractice::barcode},
                                 Codes{"holdings_barcode", &ItemPractice::holdingsBarcode},
                                 Codes{"location", &ItemPractice::location},
                                 Codes{"call_number", &ItemPractice::callNumber},
                                 Codes{"copy", &ItemPractice::copy},
                                 Codes{"status", &ItemPractice::status},
                                 Codes{"media_type", &ItemPractice::mediaType},
                                 Codes{"issue", &ItemPractice::issue}};

/// What a code stands for, with the names of its members.
struct NameList {
  std::string_view list;
  std::string_view name;
  std::vector<CodeName> MarcMap::*names;
  const char* sql;
  std::string_view what;
};
constexpr std::array nameLists{
    NameList{"locations", "location", &MarcMap::locations, "select id, name from locations", "location"},
    NameList{"media_types", "media_type", &MarcMap::mediaTypes, "select id, name from media_types",
             "media type"}};

bool isCode(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

std::optional<std::string> readTag(std::string_view text) {
  return text.size() == 3 && std::ranges::all_of(text, isCode) ? std::optional<std::string>(text)
                                                               : std::nullopt;
}

std::optional<std::string> readCodes(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, isCode) ? std::optional<std::string>(text) : std::nullopt;
}

std::string tagOf(const FileNode& node) {
  return node.textAs(readTag, "must be a tag of three characters, as \"852\".");
}

std::string codesOf(const FileNode& node) {
  if (!node.isGiven()) return {};
  return node.textAs(readCodes, "must be codes of subfields in a row, as \"p\" or \"bca\".");
}

ItemPractice readPractice(const FileNode& node) {
  std::vector<std::string_view> known{"items", "holdings"};
  for (const Codes& each : codeMembers) known.push_back(each.name);
  node.expectMembers(known);
  ItemPractice practice;
  for (const FileNode& each : node.member("items").elements()) practice.items.push_back(tagOf(each));
  if (node.member("holdings").isGiven()) practice.holdings = tagOf(node.member("holdings"));
  for (const Codes& each : codeMembers) practice.*each.codes = codesOf(node.member(each.name));
  if (!node.member("barcode").isGiven()) node.member("barcode").refuse("is missing.");
  if (practice.items.empty()) node.member("items").refuse("must name a field.");
  if (practice.holdings.empty() && !practice.holdingsBarcode.empty())
    node.member("holdings_barcode").refuse("has no \"holdings\" that it could be in.");
  return practice;
}

RecordTest readTest(const FileNode& node) {
  node.expectMembers({"field", "subfields", "test", "text", "place"});
  RecordTest test;
  test.field = tagOf(node.member("field"));
  test.subfields = codesOf(node.member("subfields"));
  test.kind = static_cast<Kind>(node.member("test").word(testWords));
  if (test.kind == Kind::Contains) test.text = node.member("text").name();
  if (node.member("place").isGiven()) test.place = static_cast<int>(node.member("place").number());
  return test;
}

std::vector<CodeName> readNames(const FileNode& list, std::string_view name) {
  std::vector<CodeName> names;
  std::set<std::string> codes;
  for (const FileNode& each : list.elements()) {
    each.expectMembers({"code", name});
    names.push_back({each.member("code").name(), each.member(name).name()});
    if (!codes.insert(catalogueKey(names.back().code)).second)
      each.member("code").refuse("was named before.");
  }
  return names;
}

std::set<std::string> keysNamed(Connection& db, const char* sql) {
  std::set<std::string> keys;
  Query query(db, sql);
  for (const NamedRow& row : namedRows(query)) keys.insert(catalogueKey(row.name));
  return keys;
}

void checkNames(Connection& db, const MarcMap& map, FileFaults& faults) {
  for (const NameList& each : nameLists) {
    const std::set<std::string> known = keysNamed(db, each.sql);
    const std::vector<CodeName>& names = map.*each.names;
    for (std::size_t at = 0; at < names.size(); ++at) {
      if (names[at].name.empty() || known.contains(catalogueKey(names[at].name))) continue;
      faults.add(std::string(each.list) + "[" + std::to_string(at) + "]." + std::string(each.name),
                 "there is no " + std::string(each.what) + " \"" + names[at].name + "\".");
    }
  }
}

Json asJson(const ItemPractice& practice) {
  Json json{{"items", practice.items}};
  if (!practice.holdings.empty()) json["holdings"] = practice.holdings;
  for (const Codes& each : codeMembers) {
    if (!(practice.*each.codes).empty()) json[std::string(each.name)] = practice.*each.codes;
  }
  return json;
}

Json asJson(const RecordTest& test) {
  Json json{{"field", test.field}};
  if (!test.subfields.empty()) json["subfields"] = test.subfields;
  json["test"] = wordFor(testWords, static_cast<int>(test.kind));
  if (!test.text.empty()) json["text"] = test.text;
  if (test.place >= 0) json["place"] = test.place;
  return json;
}

template <class Entry>
Json listOf(const std::vector<Entry>& entries) {
  Json list = Json::array();
  for (const Entry& each : entries) list.push_back(asJson(each));
  return list;
}

}  // namespace

MarcMap readMarcMap(std::string_view json, FileFaults& faults) {
  const FileValue value = readFileValue(json, faults);
  const FileNode file(&value, {}, faults);
  file.expectMembers({"practices", "locations", "media_types", "withdrawn", "records"});
  MarcMap map = usualMarcMap();
  if (file.member("practices").isGiven()) map.practices.clear();
  for (const FileNode& each : file.member("practices").elements())
    map.practices.push_back(readPractice(each));
  for (const NameList& each : nameLists) map.*each.names = readNames(file.member(each.list), each.name);
  if (file.member("withdrawn").isGiven()) map.withdrawn.clear();
  for (const FileNode& each : file.member("withdrawn").elements()) map.withdrawn.push_back(each.name());
  for (const FileNode& each : file.member("records").elements()) map.records.push_back(readTest(each));
  return map;
}

std::string marcMapText(const MarcMap& map) {
  Json json{{"practices", listOf(map.practices)}};
  for (const NameList& each : nameLists) {
    Json names = Json::array();
    for (const CodeName& name : map.*each.names)
      names.push_back(Json{{"code", name.code}, {std::string(each.name), name.name}});
    json[std::string(each.list)] = std::move(names);
  }
  json["withdrawn"] = map.withdrawn;
  json["records"] = listOf(map.records);
  return json.dump(2) + "\n";
}

MarcMap readMarcMapFile(Database& database, const std::string& path, FileFaults& faults) {
  const MarcMap map = readMarcMap(wholeFile(path), faults);
  database.read([&](Connection& db) {
    FileFaults withNames = faults;
    checkNames(db, map, withNames);
    faults = withNames;
  });
  return map;
}

}  // namespace vantry::server

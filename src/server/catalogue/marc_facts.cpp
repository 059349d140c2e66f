#include "server/catalogue/marc_facts.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "server/base/catalogue_text.h"
#include "server/base/number_text.h"

namespace vantry::server {

namespace {

bool isFigure(char c) {
  return c >= '0' && c <= '9';
}

/// Cataloguers end parts with the mark that leads the next one.
std::string withoutEndMark(std::string text) {
  while (!text.empty() && std::string_view(" /:;,=").find(text.back()) != std::string_view::npos)
    text.pop_back();
  return text;
}

/// The first four figures in a row that are a year.
std::string yearIn(std::string_view text) {
  for (std::size_t at = 0; at + 4 <= text.size(); ++at) {
    const std::string_view four = text.substr(at, 4);
    if (std::ranges::all_of(four, isFigure) && (four[0] == '1' || four[0] == '2')) return std::string(four);
  }
  return {};
}

/// The first of these fields that has one of the subfields.
struct Source {
  std::string_view tag;
  std::string_view codes;
};
std::string firstOf(const MarcRecord& record, std::span<const Source> sources) {
  for (const Source& source : sources) {
    const MarcField* field = findField(record, source.tag);
    std::string text = field == nullptr ? std::string() : withoutEndMark(subfields(*field, source.codes));
    if (!text.empty()) return text;
  }
  return {};
}

constexpr std::array authorSources{Source{"100", "a"}, Source{"110", "ab"}, Source{"111", "a"},
                                   Source{"700", "a"}, Source{"710", "ab"}};
constexpr std::array dateSources{Source{"260", "c"}, Source{"264", "c"}};
constexpr std::array carrierSources{Source{"338", "a"}, Source{"245", "h"}, Source{"655", "a"},
                                    Source{"300", "a"}};
constexpr std::array extentSources{Source{"300", "abc"}};

std::string publishedIn(const MarcRecord& record) {
  const std::string year = yearIn(firstOf(record, dateSources));
  if (!year.empty()) return year;
  constexpr std::size_t datePlace = 7;
  const std::string coded = controlText(record, "008");
  return coded.size() < datePlace + 4 ? std::string() : yearIn(coded.substr(datePlace, 4));
}

std::string_view kindOfScheme(char scheme) {
  switch (scheme) {
    case '0':
      return "MLC#";
    case '1':
      return "MDEW";
    case '2':
      return "MNLM";
    case '3':
      return "MSUD";
    default:
      return "MOTH";
  }
}

struct NumberSource {
  std::string_view tag;
  std::string_view kind;
};
constexpr std::array numberSources{NumberSource{"050", "MLC#"}, NumberSource{"090", "MLC#"},
                                   NumberSource{"060", "MNLM"}, NumberSource{"082", "MDEW"},
                                   NumberSource{"086", "MSUD"}, NumberSource{"099", "MOTH"}};

/// The shelf's own number, else the one that the title was given.
void setCallNumber(HoldingFacts& holding, const MarcRecord& record, const MarcField& field) {
  holding.callNumber = subfields(field, "khijm");
  holding.callNumberKind = kindOfScheme(field.indicators.empty() ? ' ' : field.indicators[0]);
  for (const NumberSource& source : numberSources) {
    if (!holding.callNumber.empty()) return;
    const MarcField* other = findField(record, source.tag);
    if (other == nullptr) continue;
    holding.callNumber = subfields(*other, "ab");
    holding.callNumberKind = source.kind;
  }
}

/// Only what is gone for good keeps an item from being booked; who has it now is for the desk to know.
std::string lastingStatus(std::string_view text) {
  constexpr std::array gone{"lost", "missing", "withdrawn", "damaged"};
  const std::string key = catalogueKey(text);
  const bool lasting = std::ranges::any_of(gone, [&](const char* word) { return key.starts_with(word); });
  return lasting ? std::string(text) : std::string();
}

int copyNumber(std::string_view text) {
  const std::int64_t number = numberOf(text);
  return number > 0 && number < 10'000 ? static_cast<int>(number) : 1;
}

/// The number by which fields of holdings point at each other: "1.2", or only the "1" of it.
std::string linkOf(const MarcField& field, bool whole) {
  const std::string link = subfield(field, '8');
  return whole ? link : link.substr(0, link.find('.'));
}

/// The issue that an item is, from the field 863 to 865 with the same link.
void setIssue(ItemFacts& item, const MarcRecord& record, const MarcField& field) {
  const std::string link = linkOf(field, true);
  for (const MarcField& issue : record.fields) {
    const bool points =
        issue.tag >= "863" && issue.tag <= "865" && !link.empty() && linkOf(issue, true) == link;
    if (!points) continue;
    item.enumeration = subfields(issue, "abcdef");
    item.chronology = subfields(issue, "ijkl");
  }
  if (item.enumeration.empty()) item.enumeration = subfield(field, '3');
  item.year = yearIn(item.chronology);
}

ItemFacts itemOf(const MarcRecord& record, const MarcField& field) {
  ItemFacts item;
  item.barcode = subfield(field, 'p');
  item.copy = copyNumber(subfield(field, 't'));
  if (field.tag == "852") return item;
  item.status = lastingStatus(subfield(field, 'j'));
  setIssue(item, record, field);
  return item;
}

HoldingFacts holdingOf(const MarcRecord& record, const MarcField& field) {
  HoldingFacts holding;
  for (const char code : {'b', 'c', 'a'}) {
    std::string place = subfield(field, code);
    if (!place.empty()) holding.locations.push_back(std::move(place));
  }
  setCallNumber(holding, record, field);
  return holding;
}

bool isItemField(const MarcField& field) {
  return field.tag >= "876" && field.tag <= "878";
}

/// An item goes to the place that its link names, else to the place that stands before it.
std::size_t placeOf(const std::vector<const MarcField*>& places, std::size_t before, const MarcField& item) {
  const std::string link = linkOf(item, false);
  for (std::size_t at = 0; at < places.size() && !link.empty(); ++at) {
    if (linkOf(*places[at], false) == link) return at;
  }
  return before == 0 ? 0 : before - 1;
}

std::vector<const MarcField*> placesIn(const MarcRecord& record) {
  std::vector<const MarcField*> places;
  for (const MarcField& field : record.fields) {
    if (field.tag == "852") places.push_back(&field);
  }
  return places;
}

}  // namespace

TitleFacts titleFacts(const MarcRecord& record) {
  TitleFacts facts;
  facts.controlNumber = controlText(record, "001");
  if (const MarcField* field = findField(record, "245"))
    facts.title = withoutEndMark(subfields(*field, "abnp"));
  facts.author = firstOf(record, authorSources);
  facts.published = publishedIn(record);
  const std::vector<std::string> carriers = carrierTexts(record);
  if (!carriers.empty()) facts.itemType = carriers.front();
  facts.description = firstOf(record, extentSources);
  return facts;
}

std::vector<std::string> carrierTexts(const MarcRecord& record) {
  std::vector<std::string> texts;
  for (const Source& source : carrierSources) {
    const MarcField* field = findField(record, source.tag);
    std::string text = field == nullptr ? std::string() : withoutEndMark(subfields(*field, source.codes));
    if (!text.empty()) texts.push_back(std::move(text));
  }
  return texts;
}

std::vector<HoldingFacts> holdingsIn(const MarcRecord& record) {
  const std::vector<const MarcField*> places = placesIn(record);
  if (places.empty()) return {};
  std::vector<HoldingFacts> holdings;
  for (const MarcField* place : places) holdings.push_back(holdingOf(record, *place));
  std::size_t before = 0;
  for (const MarcField& field : record.fields) {
    if (field.tag == "852") ++before;
    if (isItemField(field)) holdings[placeOf(places, before, field)].items.push_back(itemOf(record, field));
  }
  for (std::size_t at = 0; at < places.size(); ++at) {
    const bool ownBarcode = holdings[at].items.empty() && !subfield(*places[at], 'p').empty();
    if (ownBarcode) holdings[at].items.push_back(itemOf(record, *places[at]));
  }
  return holdings;
}

}  // namespace vantry::server
